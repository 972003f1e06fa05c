#include "shell/ribbon/RibbonGallery.h"

#include "shell/ribbon/RibbonIcons.h"

#include <QAction>
#include <QCursor>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QStyle>
#include <QTimer>
#include <QWidgetAction>

namespace corrieval::ribbon {

namespace {

constexpr int kItemIcon = 32;

} // namespace

RibbonGallery::RibbonGallery(QAction* action, int columns, QWidget* parent)
    : RibbonButton(action, Kind::Large, parent), m_columns(qMax(1, columns)), m_popup(new QMenu(this)),
      m_grid(new QWidget(m_popup)), m_layout(new QGridLayout(m_grid))
{
    m_popup->setAttribute(Qt::WA_WindowPropagation);
    m_layout->setContentsMargins(4, 4, 4, 4);
    m_layout->setSpacing(2);
    auto* holder = new QWidgetAction(m_popup);
    holder->setDefaultWidget(m_grid);
    m_popup->addAction(holder);
    setMenu(m_popup);
    setPopupMode(QToolButton::InstantPopup);
    // The popup holds the mouse while it is open, so the button never hears the pointer leave
    // and would keep its hover look; it is told once the popup has gone.
    connect(m_popup, &QMenu::aboutToHide, this, [this] {
        QTimer::singleShot(0, this, [this] {
            if (!rect().contains(mapFromGlobal(QCursor::pos()))) {
                setAttribute(Qt::WA_UnderMouse, false);
                update();
            }
        });
    });
}

void RibbonGallery::Clear()
{
    const QObjectList children = m_grid->children();
    for (QObject* child : children) {
        if (child->isWidgetType())
            delete child;
    }
    m_items.clear();
    m_nextRow = m_nextColumn = 0;
    m_face = -1;
    ShowFace();
}

void RibbonGallery::AddGroup(const QString& name)
{
    if (m_nextColumn > 0)
        ++m_nextRow;
    auto* heading = new QLabel(name, m_grid);
    heading->setObjectName(QStringLiteral("ribbonGalleryGroup"));
    m_layout->addWidget(heading, m_nextRow++, 0, 1, m_columns);
    m_nextColumn = 0;
}

void RibbonGallery::AddItem(const QIcon& icon, const QString& name)
{
    const int index = Count();
    auto* button = new QToolButton(m_grid);
    button->setIcon(icon);
    button->setIconSize({kItemIcon, kItemIcon});
    button->setAutoRaise(true);
    button->setCheckable(true);
    button->setToolTip(name);
    button->setAccessibleName(name);
    connect(button, &QToolButton::clicked, this, [this, index] { Choose(index); });
    m_layout->addWidget(button, m_nextRow, m_nextColumn);
    if (++m_nextColumn == m_columns) {
        m_nextColumn = 0;
        ++m_nextRow;
    }
    m_items.append({icon, {}, {}, button});
}

void RibbonGallery::AddRibbonItem(const QString& iconName, const QString& name)
{
    AddItem(RibbonIcon(iconName, palette()), name);
    m_items.last().IconName = iconName;
}

void RibbonGallery::AddInkItem(const QIcon& picture, const QString& name)
{
    AddItem(InkIcon(picture, palette()), name);
    m_items.last().Picture = picture;
}

void RibbonGallery::SetFace(int index)
{
    if (index < 0 || index >= Count())
        return;
    m_face = index;
    for (int i = 0; i < Count(); ++i)
        m_items[i].Button->setChecked(i == index);
    ShowFace();
}

void RibbonGallery::SetLit(bool on)
{
    if (m_lit == on)
        return;
    m_lit = on;
    // The look of the lit state comes from the style sheet, which reads this property.
    setProperty("lit", on);
    style()->unpolish(this);
    style()->polish(this);
    update();
}

void RibbonGallery::FollowPalette(const QPalette& palette)
{
    m_popup->setPalette(palette);
    for (Item& item : m_items) {
        if (!item.IconName.isEmpty())
            item.Icon = RibbonIcon(item.IconName, palette);
        else if (!item.Picture.isNull())
            item.Icon = InkIcon(item.Picture, palette);
        else
            continue;
        item.Button->setIcon(item.Icon);
    }
    ShowFace();
}

void RibbonGallery::ActionChanged()
{
    SetLit(defaultAction()->isChecked());
    ShowFace();
}

void RibbonGallery::Choose(int index)
{
    SetFace(index);
    m_popup->close();
    emit ItemChosen(index);
}

void RibbonGallery::ShowFace()
{
    if (m_face >= 0)
        setIcon(m_items[m_face].Icon);
    else if (defaultAction())
        setIcon(defaultAction()->icon());
}

} // namespace corrieval::ribbon
