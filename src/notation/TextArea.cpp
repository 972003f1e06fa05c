#include "notation/TextArea.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTextArea, CPageArea);
CORRIEVAL_IMPLEMENT_CLASS(CImageArea, CPageArea);

namespace {
constexpr float kFreeAreaMargin = 0.03f;

void SetAllMargins(CScoObj& obj, float m)
{
    obj.LeftMargin = obj.RightMargin = obj.TopMargin = obj.BottomMargin = m;
}
} // namespace

CTextArea::CTextArea()
{
    SetAllMargins(*this, kFreeAreaMargin);
    constexpr std::int32_t normalWeight = 400;
    constexpr std::uint8_t clearTypeQuality = 6;
    Font.SetFaceName(QStringLiteral("DejaVu Sans"));
    Font.SetWeight(normalWeight);
    Font.SetHeight(-20);
    Font.SetQuality(clearTypeQuality);
}

CImageArea::CImageArea()
{
    SetAllMargins(*this, kFreeAreaMargin);
    MinimumHeight = 0.2f;
}

} // namespace corrieval
