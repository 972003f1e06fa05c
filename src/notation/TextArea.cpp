#include "notation/TextArea.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTextArea, CPageArea);

CTextArea::CTextArea()
{
    SetMargins(FreeAreaMargin);
    constexpr std::int32_t normalWeight = 400;
    constexpr std::uint8_t clearTypeQuality = 6;
    Font.SetFaceName(QStringLiteral("DejaVu Sans"));
    Font.SetWeight(normalWeight);
    Font.SetHeight(-20);
    Font.SetQuality(clearTypeQuality);
}

} // namespace corrieval
