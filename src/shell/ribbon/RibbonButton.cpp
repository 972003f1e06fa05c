#include "shell/ribbon/RibbonButton.h"

#include "shell/ribbon/ActionMirror.h"

#include <QAction>
#include <QActionEvent>
#include <QMenu>

namespace corrieval::ribbon {

namespace {

constexpr int kLargeIcon = 32;
constexpr int kSmallIcon = 16;
// Captions longer than this go over two lines on a large button.
constexpr int kLongCaption = 8;

// Breaks `caption` at the space nearest its middle.
QString TwoLines(const QString& caption)
{
    if (caption.size() <= kLongCaption)
        return caption;
    qsizetype best = -1;
    for (qsizetype i = caption.indexOf(QLatin1Char(' ')); i >= 0;
         i = caption.indexOf(QLatin1Char(' '), i + 1)) {
        if (best < 0 || qAbs(caption.size() / 2 - i) < qAbs(caption.size() / 2 - best))
            best = i;
    }
    if (best < 0)
        return caption;
    return caption.left(best) + QLatin1Char('\n') + caption.mid(best + 1);
}

} // namespace

RibbonButton::RibbonButton(QAction* action, Kind kind, QWidget* parent) : QToolButton(parent), m_kind(kind)
{
    switch (kind) {
    case Kind::Large:
        setIconSize({kLargeIcon, kLargeIcon});
        setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
        break;
    case Kind::Small:
        setIconSize({kSmallIcon, kSmallIcon});
        setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        break;
    case Kind::IconOnly:
        setIconSize({kSmallIcon, kSmallIcon});
        setToolButtonStyle(Qt::ToolButtonIconOnly);
        break;
    }
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus);
    setDefaultAction(action);
    // A button with a menu of its own opens it at once; a split button would be a second target.
    if (action->menu())
        setPopupMode(QToolButton::InstantPopup);
    ShowCaption();
}

void RibbonButton::actionEvent(QActionEvent* event)
{
    QToolButton::actionEvent(event);
    if (event->type() == QEvent::ActionChanged && event->action() == defaultAction()) {
        ShowCaption();
        ActionChanged();
    }
}

void RibbonButton::ActionChanged() {}

void RibbonButton::ShowCaption()
{
    const QString caption = CaptionOf(defaultAction());
    setText(m_kind == Kind::Large ? TwoLines(caption) : caption);
    setAccessibleName(caption.isEmpty() ? defaultAction()->toolTip() : caption);
}

} // namespace corrieval::ribbon
