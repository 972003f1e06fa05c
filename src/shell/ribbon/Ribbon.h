#pragma once

#include <QWidget>

class QButtonGroup;
class QHBoxLayout;
class QMenu;
class QStackedWidget;
class QToolButton;

namespace corrieval::ribbon {

class RibbonPanel;

// One tab of the ribbon: its panels side by side, a thin line after each.
class RibbonCategory : public QWidget {
    Q_OBJECT

public:
    explicit RibbonCategory(const QString& caption, QWidget* parent = nullptr);

    // The caption as the tab shows it, mnemonic included ("&Play").
    QString Caption() const { return m_caption; }
    RibbonPanel* AddPanel(const QString& caption);

private:
    QString m_caption;
    QHBoxLayout* m_layout;
};

// The ribbon: a flat tab row (the application button, the quick access buttons, a tab per
// category and buttons at its right end) over the current category's panels. It shows the
// program's actions and owns none of them. It draws itself in its palette and follows it: a change
// of palette restyles the ribbon and redraws the icons of every action it shows.
class Ribbon : public QWidget {
    Q_OBJECT

public:
    explicit Ribbon(QWidget* parent = nullptr);

    // The menu of the "File" button at the left of the tab row; the program fills it.
    QMenu* ApplicationMenu() const { return m_applicationMenu; }
    // A small icon-only button on the tab row, before the tabs.
    void AddQuickAccess(QAction* action);
    // A button at the right end of the tab row; an action with a menu opens it.
    void AddTabRowButton(QAction* action);

    RibbonCategory* AddCategory(const QString& caption);
    int CategoryCount() const;
    RibbonCategory* Category(int index) const;
    void SetCurrentCategory(int index);
    int CurrentCategory() const;

signals:
    void CurrentCategoryChanged(int index);

protected:
    void changeEvent(QEvent* event) override;
    // Gives each action put into the application menu, or a submenu of it, its icon.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FollowPalette();
    void WatchMenu(QMenu* menu);

    QToolButton* m_applicationButton;
    QMenu* m_applicationMenu;
    QHBoxLayout* m_quickAccess;
    QHBoxLayout* m_tabs;
    QHBoxLayout* m_tabRowEnd;
    QButtonGroup* m_tabGroup;
    QStackedWidget* m_categories;
    // Set while the style sheet is applied, which may itself touch palettes.
    bool m_following = false;
};

} // namespace corrieval::ribbon
