#include "notation/TextArea.h"

#include <cstdlib>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTextArea, CPageArea);

namespace {
constexpr std::int32_t kBoldWeight = 700;
constexpr std::int32_t kNormalWeight = 400;
constexpr float kInchesPerHeightUnit = 0.01f;
} // namespace

CTextArea::CTextArea()
{
    SetMargins(FreeAreaMargin);
    constexpr std::uint8_t clearTypeQuality = 6;
    Font.SetFaceName(QStringLiteral("DejaVu Sans"));
    Font.SetWeight(kNormalWeight);
    Font.SetHeight(-20);
    Font.SetQuality(clearTypeQuality);
}

CTextArea::CTextArea(const CTextArea& other)
    : CPageArea(other), Font(other.Font), Colour(other.Colour), Text(other.Text), Alignment(other.Alignment)
{
    SetMargins(FreeAreaMargin);
    SetBounds(other.Bounds());
}

std::unique_ptr<CPageArea> CTextArea::Clone() const
{
    return std::unique_ptr<CPageArea>(new CTextArea(*this));
}

TextFont CTextArea::DrawingFont() const
{
    TextFont font;
    font.Family = Font.FaceName();
    font.Height = static_cast<float>(std::abs(static_cast<long long>(Font.Height()))) * kInchesPerHeightUnit;
    // Only a weight of exactly 700 is bold, as the platform's style bits have it.
    font.Weight = Font.Weight() == kBoldWeight ? kBoldWeight : kNormalWeight;
    font.Italic = Font.Italic();
    font.Underline = Font.Underline();
    font.StrikeOut = Font.StrikeOut();
    return font;
}

TextAlign CTextArea::HorizontalAlignment() const
{
    switch (Alignment) {
    case Centre:
        return TextAlign::Centre;
    case Right:
        return TextAlign::Far;
    default:
        return TextAlign::Near;
    }
}

std::uint32_t CTextArea::TextArgb() const
{
    const std::uint32_t red = Colour & 0xFF;
    const std::uint32_t green = (Colour >> 8) & 0xFF;
    const std::uint32_t blue = (Colour >> 16) & 0xFF;
    return 0xFF000000u | (red << 16) | (green << 8) | blue;
}

void CTextArea::AfterBoundsChange(const RectF&)
{
    InvalidateSelf();
}

void CTextArea::Draw(Painter& painter, OutputMode mode)
{
    CPageArea::Draw(painter, mode);
    if (EditorShown && mode == OutputMode::Screen)
        return;
    // Scores written on Windows end their lines with a carriage return and a line feed; the line
    // feed alone breaks the line here.
    const QString lines = QString(Text).remove(QLatin1Char('\r'));
    painter.DrawText(lines, DrawingFont(), ContentBox(), HorizontalAlignment(), TextAlign::Near, TextArgb());
}

} // namespace corrieval
