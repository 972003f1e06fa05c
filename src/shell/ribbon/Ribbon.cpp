#include "shell/ribbon/Ribbon.h"

#include "shell/ribbon/RibbonButton.h"
#include "shell/ribbon/RibbonGallery.h"
#include "shell/ribbon/RibbonIcons.h"
#include "shell/ribbon/RibbonPanel.h"
#include "shell/ribbon/RibbonStyleSheet.h"

#include <QAction>
#include <QActionEvent>
#include <QButtonGroup>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QMenu>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace corrieval::ribbon {

namespace {

QFrame* MakeLine(QWidget* parent)
{
    auto* line = new QFrame(parent);
    line->setObjectName(QStringLiteral("ribbonSeparator"));
    line->setFixedWidth(1);
    return line;
}

// Every action under `menu`, submenus included.
void CollectMenuActions(const QMenu* menu, QList<QAction*>& actions)
{
    for (QAction* action : menu->actions()) {
        actions.append(action);
        if (action->menu())
            CollectMenuActions(action->menu(), actions);
    }
}

} // namespace

RibbonCategory::RibbonCategory(const QString& caption, QWidget* parent)
    : QWidget(parent), m_caption(caption), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(4, 2, 4, 2);
    m_layout->setSpacing(0);
    m_layout->addStretch();
}

RibbonPanel* RibbonCategory::AddPanel(const QString& caption)
{
    auto* panel = new RibbonPanel(caption, this);
    const int end = m_layout->count() - 1;
    m_layout->insertWidget(end, panel);
    m_layout->insertWidget(end + 1, MakeLine(this));
    return panel;
}

Ribbon::Ribbon(QWidget* parent)
    : QWidget(parent), m_applicationButton(new QToolButton(this)), m_applicationMenu(new QMenu(this)),
      m_quickAccess(new QHBoxLayout), m_tabs(new QHBoxLayout), m_tabRowEnd(new QHBoxLayout),
      m_tabGroup(new QButtonGroup(this)), m_categories(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("ribbon"));
    auto* tabRow = new QWidget(this);
    tabRow->setObjectName(QStringLiteral("ribbonTabRow"));
    tabRow->setAttribute(Qt::WA_StyledBackground);
    auto* row = new QHBoxLayout(tabRow);
    row->setContentsMargins(0, 0, 6, 0);
    row->setSpacing(2);

    m_applicationButton->setObjectName(QStringLiteral("ribbonApplicationButton"));
    // Alt+F opens it, as the File menu does in every desktop program.
    m_applicationButton->setText(tr("&File"));
    m_applicationButton->setToolTip(tr("File"));
    m_applicationButton->setMenu(m_applicationMenu);
    m_applicationButton->setPopupMode(QToolButton::InstantPopup);
    m_applicationButton->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    m_applicationMenu->setAttribute(Qt::WA_WindowPropagation);
    WatchMenu(m_applicationMenu);
    row->addWidget(m_applicationButton);
    m_quickAccess->setSpacing(0);
    m_quickAccess->setContentsMargins(4, 0, 4, 0);
    row->addLayout(m_quickAccess);
    m_tabs->setSpacing(0);
    row->addLayout(m_tabs);
    row->addStretch();
    m_tabRowEnd->setSpacing(2);
    row->addLayout(m_tabRowEnd);

    m_categories->setObjectName(QStringLiteral("ribbonBody"));
    m_categories->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tabRow);
    layout->addWidget(m_categories);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    connect(m_tabGroup, &QButtonGroup::idClicked, this, &Ribbon::SetCurrentCategory);
    FollowPalette();
}

void Ribbon::AddQuickAccess(QAction* action)
{
    ApplyRibbonIcon(action, palette());
    m_quickAccess->addWidget(new RibbonButton(action, RibbonButton::Kind::IconOnly, this));
}

void Ribbon::AddTabRowButton(QAction* action)
{
    ApplyRibbonIcon(action, palette());
    m_tabRowEnd->addWidget(new RibbonButton(action, RibbonButton::Kind::Small, this));
}

RibbonCategory* Ribbon::AddCategory(const QString& caption)
{
    auto* category = new RibbonCategory(caption, m_categories);
    const int index = m_categories->addWidget(category);
    auto* tab = new QToolButton(this);
    tab->setObjectName(QStringLiteral("ribbonTab"));
    tab->setText(caption);
    tab->setCheckable(true);
    tab->setFocusPolicy(Qt::NoFocus);
    tab->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    m_tabGroup->addButton(tab, index);
    m_tabs->addWidget(tab);
    if (index == 0)
        SetCurrentCategory(0);
    return category;
}

int Ribbon::CategoryCount() const
{
    return m_categories->count();
}

RibbonCategory* Ribbon::Category(int index) const
{
    return qobject_cast<RibbonCategory*>(m_categories->widget(index));
}

void Ribbon::SetCurrentCategory(int index)
{
    if (index < 0 || index >= CategoryCount())
        return;
    m_tabGroup->button(index)->setChecked(true);
    if (index == m_categories->currentIndex())
        return;
    m_categories->setCurrentIndex(index);
    emit CurrentCategoryChanged(index);
}

int Ribbon::CurrentCategory() const
{
    return m_categories->currentIndex();
}

void Ribbon::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !m_following)
        FollowPalette();
}

bool Ribbon::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ActionAdded) {
        QAction* action = static_cast<QActionEvent*>(event)->action();
        ApplyRibbonIcon(action, palette());
        if (action->menu())
            WatchMenu(action->menu());
    }
    return QWidget::eventFilter(watched, event);
}

void Ribbon::WatchMenu(QMenu* menu)
{
    menu->installEventFilter(this);
    for (QAction* action : menu->actions())
        ApplyRibbonIcon(action, palette());
}

void Ribbon::FollowPalette()
{
    m_following = true;
    const QPalette colours = palette();
    setStyleSheet(RibbonStyleSheet(colours));
    m_applicationMenu->setPalette(colours);

    QList<QAction*> actions;
    for (const RibbonButton* button : findChildren<RibbonButton*>()) {
        actions.append(button->defaultAction());
        if (button->menu())
            CollectMenuActions(button->menu(), actions);
    }
    CollectMenuActions(m_applicationMenu, actions);
    for (QAction* action : actions)
        ApplyRibbonIcon(action, colours);
    for (RibbonGallery* gallery : findChildren<RibbonGallery*>())
        gallery->FollowPalette(colours);
    m_following = false;
}

} // namespace corrieval::ribbon
