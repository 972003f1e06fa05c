#include "shell/ribbon/LookPalette.h"

#include "editor/CommandIds.h"

#include <QStyle>
#include <QStyleFactory>
#include <memory>
#include <utility>

namespace corrieval::ribbon {

namespace {

struct LookColours {
    const char* Window;
    const char* Base;
    const char* AlternateBase;
    const char* Text;
    const char* Button;
    const char* Highlight;
    const char* HighlightedText;
    const char* DisabledText;
    const char* Mid;
};

QPalette MakePalette(const LookColours& c)
{
    QPalette palette;
    const QColor window(c.Window), base(c.Base), text(c.Text), button(c.Button), mid(c.Mid);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(c.AlternateBase));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, mid);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(c.Highlight));
    palette.setColor(QPalette::HighlightedText, QColor(c.HighlightedText));
    palette.setColor(QPalette::Link, QColor(c.Highlight));
    palette.setColor(QPalette::Light, button.lighter(125));
    palette.setColor(QPalette::Midlight, button.lighter(110));
    palette.setColor(QPalette::Mid, mid);
    palette.setColor(QPalette::Dark, button.darker(150));
    palette.setColor(QPalette::Shadow, QColor(0, 0, 0, 120));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(c.DisabledText));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, mid);
    return palette;
}

// Window, base, alternate base, text, button, highlight, highlighted text, disabled text, mid.
const std::pair<int, LookColours> kLooks[] = {
    {command::StyleBlue,
     {"#eef2f7", "#ffffff", "#f5f8fc", "#1c2633", "#f4f7fb", "#2f6fc2", "#ffffff", "#a3adb9", "#6f7c8c"}},
    {command::StyleBlack,
     {"#2a2c30", "#1d1f22", "#26282c", "#e4e6ea", "#34373c", "#5b9be6", "#0d1118", "#6c7078", "#9a9fa8"}},
    {command::StyleSilver,
     {"#e8e9eb", "#fbfbfc", "#f1f2f3", "#222428", "#f0f1f2", "#5d6b7c", "#ffffff", "#a6a9ae", "#73777e"}},
    {command::StyleAqua,
     {"#ecf4f4", "#ffffff", "#f3f9f9", "#17292b", "#f3f8f8", "#11838a", "#ffffff", "#9eb0b1", "#66797b"}},
};

} // namespace

QPalette LookPalette(int lookId)
{
    for (const auto& [id, colours] : kLooks) {
        if (id == lookId)
            return MakePalette(colours);
    }
    return std::unique_ptr<QStyle>(QStyleFactory::create(QStringLiteral("Fusion")))->standardPalette();
}

} // namespace corrieval::ribbon
