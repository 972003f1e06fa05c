#pragma once

#include <QWidget>

class QSlider;
class QToolButton;

namespace corrieval::ribbon {

// A slider between a minus and a plus button that step it by one, as the tempo and the zoom use.
class RibbonSlider : public QWidget {
    Q_OBJECT

public:
    RibbonSlider(int minimum, int maximum, int value, int width, QWidget* parent = nullptr);

    // Moves the slider without emitting ValueChanged: the program sets what it already knows.
    void SetValue(int value);
    int Value() const;

signals:
    // The user moved the slider or pressed a button.
    void ValueChanged(int value);

private:
    void Step(int by);

    QToolButton* m_minus;
    QSlider* m_slider;
    QToolButton* m_plus;
};

} // namespace corrieval::ribbon
