#pragma once

#include <QStatusBar>

class QLabel;
class QToolButton;

namespace corrieval {

namespace ribbon {
class RibbonSlider;
}

// The status bar: the link to the guide, the instrument, the zoom as a number that opens a
// chooser, and the zoom slider from 50 to 300 %.
class CFrameStatusBar : public QStatusBar {
    Q_OBJECT

public:
    static constexpr int MinZoom = 50;
    static constexpr int MaxZoom = 300;
    // What the chooser offers besides the page width.
    static constexpr int ZoomSteps[] = {50, 75, 100, 150, 200, 300};

    explicit CFrameStatusBar(QWidget* parent = nullptr);

    // Shows the zoom of the active view without telling anyone.
    void ShowZoom(int percent);
    // The instrument's name; `problem` says why its recordings did not load, empty when they did.
    void ShowInstrument(const QString& name, const QString& problem);

    QToolButton* ZoomPane() const { return m_zoomPane; }

signals:
    // The user chose a zoom: a percentage, or -1 for the page's width.
    void ZoomChosen(int percent);
    void LinkActivated();

private:
    QLabel* m_link;
    QLabel* m_instrument;
    QToolButton* m_zoomPane;
    ribbon::RibbonSlider* m_zoomSlider;
};

} // namespace corrieval
