#include "notation/NoteEx.h"

#include "model/ActiveView.h"
#include "model/BarEx.h"
#include "model/BarLookup.h"
#include "notation/TieEx.h"

#include <algorithm>
#include <utility>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CNoteEx, CNoteBase);

namespace {

struct DurationGlyph {
    NoteDuration Duration;
    char16_t Glyph;
};
// Each note value has one glyph with its stem and flags.
constexpr DurationGlyph kGlyphs[] = {{1, 36},   {2, 37},   {4, 38},   {8, 39},   {16, 40},
                                     {32, 41},  {64, 43},  {128, 74}, {256, 75}, {512, 120}};

// Codes of the abbreviation marks that stand above the note rather than below its bar.
bool AbbreviationAbove(std::uint32_t code) { return code == 0xA0 || code == 0xA1 || code == 0xA2 || code == 0x178; }


} // namespace

CNoteEx::CNoteEx(NoteDuration duration) : Duration(duration) { UpdateChars(); }

std::unique_ptr<CNoteEx> CNoteEx::ForAbbreviation(std::uint32_t code)
{
    auto note = std::make_unique<CNoteEx>(4);
    note->AbbreviationCode = code;
    note->UpdateChars();
    return note;
}

std::unique_ptr<CNoteEx> CNoteEx::NoteFromChar(char16_t glyph)
{
    // The bare small head stands for a demisemiquaver here, not for a gracenote.
    const char16_t lookup = glyph == GraceHeadGlyph ? 41 : glyph;
    auto it = std::find_if(std::begin(kGlyphs), std::end(kGlyphs), [lookup](const DurationGlyph& g) { return g.Glyph == lookup; });
    return std::make_unique<CNoteEx>(it != std::end(kGlyphs) ? it->Duration : 4);
}

CNoteEx::CNoteEx(const CNoteEx& other)
    : CNoteBase(other), RepeatKind(other.RepeatKind), RepeatId(other.RepeatId), Pitch(other.Pitch),
      Duration(other.Duration), AbbreviationCode(other.AbbreviationCode), Weight(other.Weight),
      DotCut(other.DotCut)
{
    HeadChar.SetCode(other.HeadChar.Code);
    AbbreviationChar.SetCode(other.AbbreviationChar.Code);
    SetMargins(0);
}

void CNoteEx::UpdateChars()
{
    if (GraceHead) {
        HeadChar.SetCode(GraceHeadGlyph);
    } else if (!Stemmed) {
        HeadChar.SetCode(MelodyHeadGlyph);
    } else {
        auto it = std::find_if(std::begin(kGlyphs), std::end(kGlyphs),
                               [this](const DurationGlyph& g) { return g.Duration == Duration; });
        if (it != std::end(kGlyphs))
            HeadChar.SetCode(it->Glyph);
    }
    AbbreviationChar.SetCode(static_cast<char16_t>(AbbreviationCode & 0xFFFF));
}

void CNoteEx::SetDotCut(std::int32_t dotCut)
{
    DotCut = dotCut;
    InvalidateSelf();
}

bool CNoteEx::HitTestNote(float x, float y) const { return HeadPath.contains(QPointF(x, y)); }

bool CNoteEx::IsWithin(float x, float y, float width, float height) const
{
    return HeadRect.WithinOrTouching({x, y, width, height});
}

std::unique_ptr<CNoteBase> CNoteEx::Clone() const { return std::make_unique<CNoteEx>(*this); }

void CNoteEx::Draw(Painter& painter, OutputMode mode)
{
    HeadPath = QPainterPath();
    HeadPath.setFillRule(Qt::WindingFill);
    LedgerPath = QPainterPath();
    const RectF box = ContentBox();
    const float gap = 2 * box.Height / 19;
    const float lineWidth = GetPenWidth();

    HeadRect = {box.X, static_cast<float>(Pitch) * gap * 0.5f + box.Y - gap * 0.25f, box.Width, gap};
    const float glyphWidth = HeadChar.AddToPath(HeadPath, HeadRect);
    HeadPath.closeSubpath();
    const float centre = HeadRect.X + HeadRect.Width / 2;
    HeadRect.X = centre - glyphWidth / 2;
    HeadRect.Width = glyphWidth;

    if (Pitch == HighestPitch) {
        // A small note's ledger line sits lopsided, towards its stem.
        const float y = HeadRect.Y + HeadRect.Height * 0.25f;
        const float right = Duration == 64 || Duration == 256 ? 0.25f : 0.75f;
        LedgerPath.moveTo(centre - 0.75f * glyphWidth, y);
        LedgerPath.lineTo(centre + right * glyphWidth, y);
        LedgerPath.closeSubpath();
    }
    if (DotCut == Dotted) {
        // A note on a line has its dot in the space above.
        const float dot = HeadRect.Width * 0.25f;
        const float left = HeadRect.X + HeadRect.Width + dot;
        const bool onLine = Pitch % 2 != 0;
        const float top = onLine ? HeadRect.Y - dot * 0.5f - HeadRect.Height * 0.25f
                                 : HeadRect.Y + HeadRect.Height * 0.5f - dot * 0.5f - HeadRect.Height * 0.25f;
        HeadPath.addEllipse(left, top, dot, dot);
        HeadPath.closeSubpath();
    }

    painter.SetSmoothing(false);
    painter.StrokePath(LedgerPath, Pen{Colour(), lineWidth});
    painter.SetSmoothing(true);
    painter.FillPath(HeadPath, Brush::Solid(Colour()));
    painter.SetSmoothing(false);

    // A tie is drawn once, by its first note.
    if (Tie != nullptr && !Tie->Notes.empty() && Tie->Notes.front() == this)
        Tie->DrawIfVisible(painter, mode);

    if (AbbreviationCode != 0 && Parent() != nullptr) {
        float height = Parent()->BottomMargin * 0.125f;
        if (height < 0.0001f)
            height = 0.0242f;
        const float y = AbbreviationAbove(AbbreviationCode) ? box.Y : Parent()->Bounds().Bottom();
        AbbreviationChar.DrawGlyph(painter, {box.X, y, box.Width, height}, Colour());
    }
}

void CNoteEx::DrawToolbarImage(Painter& painter, float x, float y, float width, float height)
{
    const float headFactor = Duration == 1 || Duration == 64 ? 0.8f : 0.5f;
    HeadPath = QPainterPath();
    HeadPath.setFillRule(Qt::WindingFill);
    LedgerPath = QPainterPath();
    const float gap = height / 19 * 3;
    CScoChar glyph = HeadChar;
    glyph.Flip = Pitch > 9;
    const RectF box{x, static_cast<float>(Pitch - 1) * gap * 0.5f + (y - (height - height * headFactor)), width, gap};
    const float glyphWidth = glyph.AddToPath(HeadPath, box);
    if (Pitch == HighestPitch) {
        const float centre = box.X + box.Width / 2;
        const float middle = box.Y + box.Height / 2;
        LedgerPath.moveTo(centre - glyphWidth, middle);
        LedgerPath.lineTo(centre + glyphWidth, middle);
    }
    painter.SetSmoothing(false);
    painter.StrokePath(LedgerPath, Pen{Colour(), ToolbarPenWidth(height)});
    painter.SetSmoothing(true);
    painter.FillPath(HeadPath, Brush::Solid(Colour()));
    painter.SetSmoothing(false);
}

float CNoteEx::AddGraceHead(QPainterPath& groupPath, bool large)
{
    const RectF own = ContentBox();
    const float gap = 2 * own.Height / 19;
    RectF box{own.X, static_cast<float>(Pitch - 2) * gap * 0.5f + own.Y, own.Width, gap};
    if (Duration == 64 || Duration == 256) {
        if (large)
            box = {box.X - own.Width * 0.125f, box.Y, own.Width * 1.2f, gap * 1.3f};
        else
            box = {box.X + own.Width * 0.125f, box.Y + gap * 0.4f, own.Width * 0.75f, gap * 0.75f};
    }
    HeadRect = box;
    HeadChar.AddToPath(HeadPath, box);
    return HeadChar.AddToPath(groupPath, box);
}

void CNoteEx::SaveState()
{
    m_savedBounds = Bounds();
    m_savedParent = Parent();
}

void CNoteEx::RestoreState()
{
    SetBounds(m_savedBounds);
    if (m_savedParent != nullptr)
        SetParent(m_savedParent);
}

PointF CNoteEx::DragTo(float x, float y)
{
    // A tie would stretch: a tied note stays.
    return Tie != nullptr ? PointF{} : CNoteBase::DragTo(x, y);
}

bool CNoteEx::MoveBy(float dx, float dy)
{
    const RectF b = Bounds();
    SetBounds(b.X + dx, b.Y + dy, b.Width, b.Height);
    const RectF moved = Bounds();
    CBarEx* bar = BarUnderPoint(moved.X + moved.Width / 2, moved.Y + moved.Height / 2);
    // Without a bar under it the note stays with its old parent, which owns it until the drag
    // ends and puts it back.
    if (bar != nullptr && Parent() != bar)
        SetParent(bar);
    const bool inside = bar != nullptr && bar->ContainsItem(*this);
    SetColour(inside ? SelectedColour : 0x64FF0000);
    return inside;
}

} // namespace corrieval
