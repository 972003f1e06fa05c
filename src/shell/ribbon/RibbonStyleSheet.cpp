#include "shell/ribbon/RibbonStyleSheet.h"

#include <QColor>
#include <QPalette>

namespace corrieval::ribbon {

namespace {

// `from` moved `amount` (0 to 1) of the way to `to`.
QColor Blend(const QColor& from, const QColor& to, double amount)
{
    return QColor::fromRgbF(static_cast<float>(from.redF() + (to.redF() - from.redF()) * amount),
                            static_cast<float>(from.greenF() + (to.greenF() - from.greenF()) * amount),
                            static_cast<float>(from.blueF() + (to.blueF() - from.blueF()) * amount));
}

QString Css(const QColor& colour)
{
    return colour.name(QColor::HexRgb);
}

QString Css(const QColor& colour, int alpha)
{
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(alpha);
}

} // namespace

QString RibbonStyleSheet(const QPalette& palette)
{
    const QColor window = palette.color(QPalette::Window);
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::WindowText);
    const QColor accent = palette.color(QPalette::Highlight);
    const QColor onAccent = palette.color(QPalette::HighlightedText);
    // The panels sit on a shade between the window and the document's white (or black).
    const QColor body = Blend(window, base, 0.6);
    const QColor line = Blend(body, text, 0.16);
    const QColor caption = Blend(body, text, 0.62);

    return QStringLiteral(R"(
#ribbonTabRow { background: %1; }
#ribbonBody { background: %2; border-top: 1px solid %3; border-bottom: 1px solid %3; }
QFrame#ribbonSeparator { background: %3; border: none; margin: 6px 0px; }
QLabel#ribbonPanelCaption { color: %4; }
QLabel#ribbonGalleryGroup { color: %4; background: %1; padding: 3px 6px; }

QToolButton { background: transparent; color: %5; border: 1px solid transparent; border-radius: 4px; padding: 2px 4px; }
QToolButton:hover { background: %6; border-color: %7; }
QToolButton:pressed, QToolButton:checked, QToolButton[lit="true"] { background: %8; border-color: %9; }
QToolButton:disabled { color: %10; }
QToolButton::menu-indicator { image: none; width: 0px; }

QToolButton#ribbonApplicationButton { background: %9; color: %11; border: none; border-radius: 0px; padding: 4px 18px; margin-right: 4px; }
QToolButton#ribbonApplicationButton:hover, QToolButton#ribbonApplicationButton:pressed { background: %12; }

QToolButton#ribbonTab { background: transparent; color: %5; border: none; border-radius: 0px; border-bottom: 3px solid transparent; padding: 5px 12px 3px 12px; }
QToolButton#ribbonTab:hover { color: %9; border-bottom-color: %7; }
QToolButton#ribbonTab:checked { color: %9; border-bottom-color: %9; }
)")
        .arg(Css(window), Css(body), Css(line), Css(caption), Css(text), Css(accent, 34), Css(accent, 90),
             Css(accent, 64), Css(accent), Css(palette.color(QPalette::Disabled, QPalette::ButtonText)),
             Css(onAccent), Css(accent.lighter(112)));
}

} // namespace corrieval::ribbon
