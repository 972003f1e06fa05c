#include "notation/Text.h"

#include <algorithm>
#include <cmath>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CText, CObject);

CText::CText()
{
    RebuildFont();
}

void CText::RebuildFont()
{
    constexpr std::int32_t boldWeight = 700;
    constexpr std::int32_t normalWeight = 400;
    // The older program sized the font in hundredths of a point, scaled; a height beyond the
    // field's range is clamped rather than wrapped.
    const double height = std::clamp(-PointSize * 100.0 * Scale, -2.0e9, 2.0e9);
    Font = LogFont{};
    Font.SetHeight(std::isfinite(height) ? static_cast<std::int32_t>(std::lround(height)) : 0);
    Font.SetFaceName(Face);
    Font.SetWeight((Style & Bold) != 0 ? boldWeight : normalWeight);
    Font.SetItalic((Style & Italic) != 0);
    Font.SetUnderline((Style & Underline) != 0);
}

} // namespace corrieval
