#pragma once

#include <QStringList>
#include <QWidget>

class QAction;
class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QToolButton;
class QVBoxLayout;

namespace corrieval::ribbon {

class RibbonGallery;
class RibbonSlider;

// A group of controls with its caption centred underneath. Controls go left to right: a large one
// takes a column of its own, small ones stack three to a column, and after BeginRow they go side by
// side in a row instead. Every control shows an action of the program and triggers it.
class RibbonPanel : public QWidget {
    Q_OBJECT

public:
    explicit RibbonPanel(const QString& caption, QWidget* parent = nullptr);

    QString Caption() const;

    QToolButton* AddLargeButton(QAction* action);
    QToolButton* AddSmallButton(QAction* action);
    void AddSeparator();
    // Clicking triggers the action, whose check mark the box then shows.
    QCheckBox* AddCheckBox(QAction* checkable);
    RibbonGallery* AddGallery(QAction* action, int columns);
    // A change by the user triggers the action; the program reads the value from the slider.
    RibbonSlider* AddSlider(QAction* action, int minimum, int maximum, int value, int width);
    // Finishing an edit triggers the action; `label` goes before the box.
    QLineEdit* AddEdit(QAction* action, const QString& label, int width);
    // Choosing an item triggers the action; `label` goes before the box.
    QComboBox* AddCombo(QAction* action, const QString& label, const QStringList& items, int width);
    QLabel* AddLabel(const QString& text);
    // Starts a row: the small controls that follow go side by side.
    void BeginRow();

private:
    void AddColumn(QWidget* control);
    void AddSmall(QWidget* control);
    QWidget* Labelled(const QString& label, QWidget* control, QAction* action);

    QLabel* m_caption;
    QHBoxLayout* m_columns;
    QVBoxLayout* m_stack = nullptr;
    QVBoxLayout* m_rows = nullptr;
    QHBoxLayout* m_row = nullptr;
};

} // namespace corrieval::ribbon
