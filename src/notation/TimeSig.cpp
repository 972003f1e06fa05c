#include "notation/TimeSig.h"

#include "model/Stave.h"

#include <algorithm>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTimeSig, CScoObj);

namespace {

struct TimeSigRow {
    std::string_view Name;
    std::int32_t Beats;
    std::int32_t Unit;
    char16_t Upper[2];
    char16_t Lower[2];
    bool Symbol;
};

// The font has its numerals one place above ASCII: the digit n is the code n + 49.
constexpr char16_t DigitGlyph(int digit) { return static_cast<char16_t>(digit + 49); }

constexpr TimeSigRow kTable[] = {
    {"None", 0, 4, {0, 0}, {0, 0}, false},
    {"Common", 4, 4, {47, 0}, {53, 0}, true},
    {"Cut Common", 2, 2, {46, 0}, {51, 0}, true},
    {"Two Two", 2, 2, {51, 0}, {51, 0}, false},
    {"Three Two", 3, 2, {52, 0}, {51, 0}, false},
    {"Four Two", 4, 2, {53, 0}, {51, 0}, false},
    {"Two Four", 2, 4, {51, 0}, {53, 0}, false},
    {"Three Four", 3, 4, {52, 0}, {53, 0}, false},
    {"Four Four", 4, 4, {53, 0}, {53, 0}, false},
    {"Five Four", 5, 4, {54, 0}, {53, 0}, false},
    {"Six Four", 6, 4, {55, 0}, {53, 0}, false},
    {"Seven Four", 7, 4, {56, 0}, {53, 0}, false},
    {"Six Eight", 6, 8, {55, 0}, {57, 0}, false},
    {"Nine Eight", 9, 8, {58, 0}, {57, 0}, false},
    {"Twelve Eight", 12, 8, {50, 51}, {57, 0}, false},
    {"Fifteen Eight", 15, 8, {50, 54}, {57, 0}, false},
    {"Eighteen Eight", 18, 8, {50, 57}, {57, 0}, false},
    {"Custom", 0, 0, {0, 0}, {0, 0}, false},
};

void SetNumberGlyphs(std::array<CScoChar, 2>& glyphs, std::int32_t number)
{
    if (number < 10) {
        glyphs[0].SetCode(DigitGlyph(number));
        glyphs[1].SetCode(0);
    } else {
        glyphs[0].SetCode(DigitGlyph(number / 10));
        glyphs[1].SetCode(DigitGlyph(number % 10));
    }
}

bool InTable(std::int32_t type) { return type >= 0 && type <= CTimeSig::Custom; }

} // namespace

CTimeSig::CTimeSig(std::int32_t type) { SetType(type); }

CTimeSig& CTimeSig::operator=(const CTimeSig& other)
{
    // The stave link belongs to the holder, not to the value.
    Type = other.Type;
    Symbol = other.Symbol;
    UpperGlyphs = other.UpperGlyphs;
    LowerGlyphs = other.LowerGlyphs;
    CustomBeats = other.CustomBeats;
    CustomUnit = other.CustomUnit;
    return *this;
}

void CTimeSig::SetType(std::int32_t type)
{
    Type = type;
    Symbol = false;
    if (!InTable(type))
        return;
    if (type == Custom) {
        SetNumberGlyphs(UpperGlyphs, CustomBeats);
        SetNumberGlyphs(LowerGlyphs, CustomUnit);
        return;
    }
    const TimeSigRow& row = kTable[type];
    for (int i = 0; i < 2; ++i) {
        UpperGlyphs[i].SetCode(row.Upper[i]);
        LowerGlyphs[i].SetCode(row.Lower[i]);
    }
    Symbol = row.Symbol;
}

std::int32_t CTimeSig::GetBeats() const
{
    if (Type == Custom)
        return CustomBeats;
    return InTable(Type) ? kTable[Type].Beats : 0;
}

std::int32_t CTimeSig::GetBeatUnit() const
{
    if (Type == Custom)
        return CustomUnit;
    return InTable(Type) ? kTable[Type].Unit : 0;
}

namespace {
constexpr std::uint32_t kBlack = 0xFF000000;

// The music font's digits touch their neighbours; two of them are set this part of a gap apart.
constexpr float kDigitSpacing = 0.3f;

float LineWidth(const std::array<CScoChar, 2>& glyphs, float height)
{
    if (glyphs[1].Code == 0)
        return glyphs[0].Advance(height);
    return glyphs[0].Advance(height) + kDigitSpacing * height + glyphs[1].Advance(height);
}

// How far right both lines move so that a line of two digits starts where one digit would and
// the other line stays centred on it: the key signature before them keeps its room. Zero when
// both lines are single digits.
float PairShift(const std::array<CScoChar, 2>& upper, const std::array<CScoChar, 2>& lower, float height)
{
    if (upper[1].Code == 0 && lower[1].Code == 0)
        return 0;
    const float single = std::min(upper[0].Advance(height), lower[0].Advance(height));
    return (std::max(LineWidth(upper, height), LineWidth(lower, height)) - single) / 2;
}

// One line of digits centred on `centre`, glyph by glyph at their own widths (at a fixed step the
// pair of 12/8 runs into one shape); for a symbol, whatever the caller draws instead.
void DrawNumber(Painter& painter, const std::array<CScoChar, 2>& glyphs, bool symbol, float top, float height,
                float centre)
{
    if (symbol && glyphs[1].Code == 0)
        return;
    float left = centre - LineWidth(glyphs, height) / 2;
    for (const CScoChar& glyph : glyphs) {
        if (glyph.Code == 0)
            break;
        const float advance = glyph.Advance(height);
        glyph.DrawGlyph(painter, {left, top, advance, height}, kBlack);
        left += advance + kDigitSpacing * height;
    }
}
} // namespace

void CTimeSig::Draw(Painter& painter, OutputMode)
{
    if (Type < 1)
        return;
    const RectF b = Bounds();
    const float w = b.Width;
    if (Stave != nullptr) {
        const float u = Stave->ContentBox().Height / 19;
        const float g = 2 * u / 1.8f;
        const float centre = b.X + w * 0.25f + PairShift(UpperGlyphs, LowerGlyphs, g);
        DrawNumber(painter, LowerGlyphs, Symbol, b.Y + 11.5f * u, g, centre);
        DrawNumber(painter, UpperGlyphs, Symbol, b.Y + 7.5f * u, g, centre);
        if (Symbol && UpperGlyphs[1].Code == 0)
            UpperGlyphs[0].DrawGlyph(painter, {b.X + w / 3 - w * 0.25f, b.Y + 7.5f * u + g / 2.5f, w, g * 1.2f}, kBlack);
        return;
    }
    const float h8 = b.Height * 0.125f;
    const float centre = b.X + w / 2 + PairShift(UpperGlyphs, LowerGlyphs, h8);
    DrawNumber(painter, LowerGlyphs, Symbol, b.Y + 6 * h8, h8, centre);
    DrawNumber(painter, UpperGlyphs, Symbol, b.Y + 2 * h8, h8, centre);
    if (Symbol && UpperGlyphs[1].Code == 0)
        UpperGlyphs[0].DrawGlyph(painter, {b.X + w / 2.5f, b.Y + 3 * h8, w / 6, h8}, kBlack);
}

std::string_view CTimeSig::TypeName(std::int32_t type) { return InTable(type) ? kTable[type].Name : "?"; }

std::int32_t CTimeSig::TimeSigFromChar(char16_t c)
{
    switch (c) {
    case 32: return 0;
    case 33: return 3;
    case 34: return 6;
    case 35: return 7;
    case 36: return 8;
    case 37: return 9;
    case 38: return 12;
    case 39: return 13;
    case 40: return 14;
    case 41: return 10;
    case 42: return 11;
    case 43: return 4;
    case 44: return 5;
    case 45: return 2;
    case 58: return 15;
    case 59: return 16;
    default: return 1;
    }
}

} // namespace corrieval
