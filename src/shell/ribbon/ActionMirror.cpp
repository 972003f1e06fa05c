#include "shell/ribbon/ActionMirror.h"

#include <QAction>
#include <QWidget>

namespace corrieval::ribbon {

QString CaptionOf(const QAction* action)
{
    const QString text = action->text().section(QLatin1Char('\n'), 0, 0);
    QString caption;
    caption.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        // "&&" stands for a literal ampersand, a single "&" marks the mnemonic.
        if (text[i] == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        caption += text[i];
    }
    return caption;
}

void MirrorAction(QWidget* widget, QAction* action, std::function<void()> alsoOnChange)
{
    auto update = [widget, action, alsoOnChange = std::move(alsoOnChange)] {
        widget->setEnabled(action->isEnabled());
        widget->setToolTip(action->toolTip());
        widget->setAccessibleName(CaptionOf(action));
        if (alsoOnChange)
            alsoOnChange();
    };
    update();
    QObject::connect(action, &QAction::changed, widget, update);
}

} // namespace corrieval::ribbon
