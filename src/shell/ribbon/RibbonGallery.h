#pragma once

#include "shell/ribbon/RibbonButton.h"

#include <QIcon>
#include <QList>

class QGridLayout;
class QMenu;

namespace corrieval::ribbon {

// A large button whose drop-down is a grid of icons in named groups. The item chosen last shows
// on the button's face. The items are the program's, not actions: a choice is told by ItemChosen.
class RibbonGallery : public RibbonButton {
    Q_OBJECT

public:
    RibbonGallery(QAction* action, int columns, QWidget* parent = nullptr);

    void Clear();
    // Starts a group of items under the heading `name`.
    void AddGroup(const QString& name);
    // Adds an item; its tool tip and accessible name are `name`.
    void AddItem(const QIcon& icon, const QString& name);
    // Adds an item showing ribbon icon `iconName`, redrawn when the palette changes.
    void AddRibbonItem(const QString& iconName, const QString& name);
    // Adds an item showing `picture` inked in the palette's text colour, again when it changes.
    void AddInkItem(const QIcon& picture, const QString& name);
    int Count() const { return static_cast<int>(m_items.size()); }

    // Shows item `index` on the face; an index out of range leaves the face as it is.
    void SetFace(int index);
    int Face() const { return m_face; }
    // Lit with the checked look while the view is placing this gallery's item; a checkable
    // action lights it while checked.
    void SetLit(bool on);
    bool IsLit() const { return m_lit; }

    // Redraws the items that show ribbon icons, and the popup, in `palette`.
    void FollowPalette(const QPalette& palette);

signals:
    void ItemChosen(int index);

protected:
    void ActionChanged() override;

private:
    struct Item {
        QIcon Icon;
        QString IconName; // a ribbon icon, redrawn in each palette
        QIcon Picture;    // or a picture, inked in each palette
        QToolButton* Button;
    };

    void Choose(int index);
    void ShowFace();

    int m_columns;
    QMenu* m_popup;
    QWidget* m_grid;
    QGridLayout* m_layout;
    int m_nextRow = 0;
    int m_nextColumn = 0;
    QList<Item> m_items;
    int m_face = -1;
    bool m_lit = false;
};

} // namespace corrieval::ribbon
