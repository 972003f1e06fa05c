#include "notation/RepeatTiming.h"

#include "model/BarEx.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "notation/NoteEx.h"
#include "notation/TextOutline.h"

#include <algorithm>
#include <cmath>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CRepeatTiming, CScoObj);

namespace {
constexpr float kGrabDistance = 0.03f;
constexpr float kSmallestLegGap = 0.2f; // between two legs on one row
constexpr std::uint32_t kPlainColour = 0xFF000000;
constexpr std::uint32_t kSelectedColour = 0xFF0000FF;

const CStave* StaveOf(const CBarEx& bar)
{
    return dynamic_cast<const CStave*>(bar.Parent());
}

// Positions are kept as fractions of a row's content width, so that they follow the layout.
float FractionOf(float x, const RectF& row)
{
    return row.Width > 0 ? (x - row.X) / row.Width : 0;
}
float XOf(float fraction, const RectF& row)
{
    return row.X + fraction * row.Width;
}

RectF ToRect(const QRectF& r)
{
    return {static_cast<float>(r.x()), static_cast<float>(r.y()), static_cast<float>(r.width()),
            static_cast<float>(r.height())};
}

// An open stretch of a row: a note standing exactly on either end is outside.
struct Stretch {
    float From = 0;
    float To = 0;
    bool Holds(float x) const { return From < x && x < To; }
};

// What of one row lies in the first-time and in the second-time section.
struct RowSections {
    Stretch First;
    Stretch Second;
};
} // namespace

CRepeatTiming::CRepeatTiming(CStaveArea* area, const CBarEx& bar, bool wholeLine, std::int32_t staveOffset,
                             float rightEdge)
    : Area(area)
{
    const CStave* stave = StaveOf(bar);
    if (stave == nullptr)
        return;
    const RectF row = stave->ContentBox();
    StartStave = RowOf(bar) - staveOffset;
    if (wholeLine) {
        // Older tunes mark whole lines: the second time is the line after the first-time line,
        // or after the two lines that a first time starting part-way along runs over.
        MiddlePosition = 0;
        EndPosition = 1.0f;
        const bool partLine = rightEdge > 0;
        StartPosition = partLine ? FractionOf(rightEdge, row) : 0;
        MiddleStave = EndStave = StartStave + (partLine ? 2 : 1);
        return;
    }
    StartPosition = FractionOf(bar.ContentBox().X, row);
    const CBarEx* next = CStaveArea::NextBar(bar);
    if (next == nullptr) {
        // The insert command wants a following bar; without one both sections end with this bar.
        MiddlePosition = EndPosition = FractionOf(bar.ContentBox().Right(), row);
        MiddleStave = EndStave = StartStave;
        return;
    }
    MiddlePosition = FractionOf(next->ContentBox().X, row);
    EndPosition = FractionOf(next->ContentBox().Right(), row);
    MiddleStave = EndStave = RowOf(*next) - staveOffset;
}

std::int32_t CRepeatTiming::RowOf(const CBarEx& bar) const
{
    const CGraphObjContainer* stave = bar.Parent();
    if (Area == nullptr || stave == nullptr || stave->Parent() == nullptr)
        return -1;
    return Area->IndexOfChild(stave->Parent());
}

CStave* CRepeatTiming::ResolveStave(std::int32_t index) const
{
    if (Area == nullptr || index < 0 || static_cast<std::size_t>(index) >= Area->ChildCount())
        return nullptr;
    const auto* group = dynamic_cast<const CStaveGroup*>(Area->ChildAt(static_cast<std::size_t>(index)));
    if (group == nullptr || group->ChildCount() == 0)
        return nullptr;
    return dynamic_cast<CStave*>(group->ChildAt(0));
}

int CRepeatTiming::LegAt(float x, float y) const
{
    const QPainterPath* legs[] = {&StartLegPath, &MiddleLegPath, &EndLegPath};
    for (int i = 0; i < 3; ++i) {
        const QRectF b = legs[i]->boundingRect();
        if (std::abs(x - static_cast<float>(b.left())) < kGrabDistance && y > b.top() && y < b.bottom())
            return i + 1;
    }
    return NoLeg;
}

bool CRepeatTiming::LineAt(float x, float y) const
{
    const QRectF b = LinePath.boundingRect();
    return std::abs(y - static_cast<float>(b.top())) < kGrabDistance && x > b.left() && x < b.right();
}

int CRepeatTiming::TextAt(float x, float y) const
{
    if (ToRect(FirstTextPath.boundingRect()).Contains(x, y))
        return 1;
    if (ToRect(SecondTextPath.boundingRect()).Contains(x, y))
        return 2;
    return 0;
}

bool CRepeatTiming::HitAt(float x, float y) const
{
    return LegAt(x, y) != NoLeg || LineAt(x, y) || TextAt(x, y) != 0;
}

void CRepeatTiming::MoveLeg(int leg, const CBarEx& bar, float x)
{
    const std::int32_t row = RowOf(bar);
    const CStave* stave = StaveOf(bar);
    if (row < 0 || stave == nullptr)
        return;
    const RectF box = stave->ContentBox();
    switch (leg) {
    case StartLeg:
        StartStave = std::min(row, MiddleStave);
        if (StartStave == MiddleStave)
            x = std::min(x, XOf(MiddlePosition, box) - kSmallestLegGap);
        StartPosition = FractionOf(x, box);
        break;
    case MiddleLeg:
        MiddleStave = std::max(StartStave, std::min(row, EndStave));
        if (MiddleStave == StartStave)
            x = std::max(x, XOf(StartPosition, box) + kSmallestLegGap);
        if (MiddleStave == EndStave)
            x = std::min(x, XOf(EndPosition, box) - kSmallestLegGap);
        MiddlePosition = FractionOf(x, box);
        break;
    case EndLeg:
        EndStave = std::max(row, MiddleStave);
        if (EndStave == MiddleStave)
            x = std::max(x, XOf(MiddlePosition, box) + kSmallestLegGap);
        EndPosition = FractionOf(x, box);
        break;
    default:
        return;
    }
    InvalidateSelf();
}

void CRepeatTiming::Stamp(const WrittenNotes& notes) const
{
    // The sections of one row, measured on that row's own stave.
    const auto sectionsOf = [this](std::int32_t row, const CStave& stave) {
        const RectF box = stave.ContentBox();
        const float startX = XOf(StartPosition, box);
        const float middleX = XOf(MiddlePosition, box);
        const float secondEnd = row == EndStave ? XOf(EndPosition, box) : box.Right();
        RowSections s;
        if (row == StartStave) {
            if (row == MiddleStave) {
                s.First = {startX, middleX};
                s.Second = {middleX, secondEnd};
            } else {
                s.First = {startX, box.Right()};
            }
        } else if (row < MiddleStave) {
            s.First = {0, box.Right()};
        } else if (row == MiddleStave) {
            s.First = {0, middleX};
            s.Second = {middleX, secondEnd};
        } else {
            s.Second = {0, secondEnd};
        }
        return s;
    };

    for (int part = 0; part < WrittenNotes::PartCount; ++part) {
        std::int32_t currentRow = -1;
        RowSections sections;
        notes.VisitPart(part, [&](const PlayedNote& played) {
            if (played.Note == nullptr || played.Bar == nullptr)
                return true;
            const std::int32_t row = RowOf(*played.Bar);
            if (row < 0 || row < StartStave)
                return true; // another area, or before the marker
            if (row > EndStave)
                return false; // the rest of the part lies beyond the marker
            const CStave* stave = StaveOf(*played.Bar);
            if (stave == nullptr)
                return true;
            if (row != currentRow) {
                currentRow = row;
                sections = sectionsOf(row, *stave);
            }
            const float left = played.Note->ContentBox().X;
            if (sections.First.Holds(left)) {
                played.Note->RepeatKind = 1;
                played.Note->RepeatId = RepeatId;
            } else if (sections.Second.Holds(left)) {
                played.Note->RepeatKind = 2;
                played.Note->RepeatId = RepeatId;
            }
            return true;
        });
    }
}

void CRepeatTiming::ClearStamps(const WrittenNotes& notes) const
{
    for (int part = 0; part < WrittenNotes::PartCount; ++part) {
        notes.VisitPart(part, [this](const PlayedNote& played) {
            if (played.Note != nullptr && played.Note->RepeatId == RepeatId)
                played.Note->RepeatKind = 0;
            return true;
        });
    }
}

void CRepeatTiming::Restamp(const WrittenNotes& notes) const
{
    ClearStamps(notes);
    Stamp(notes);
}

void CRepeatTiming::Draw(Painter& painter, OutputMode)
{
    for (QPainterPath* path :
         {&StartLegPath, &MiddleLegPath, &EndLegPath, &LinePath, &FirstTextPath, &SecondTextPath})
        *path = QPainterPath();
    const CStave* start = ResolveStave(StartStave);
    const CStave* middle = ResolveStave(MiddleStave);
    const CStave* end = ResolveStave(EndStave);
    if (start == nullptr || middle == nullptr || end == nullptr)
        return;

    const CStave::Grid grid = start->Positions();
    const float height = 2 * (grid[2] - grid[0]); // four stave units
    // The top of a leg; legs stand on the top of their stave's rectangle.
    const auto legTop = [height](const CStave& stave, float fraction) {
        return QPointF(XOf(fraction, stave.ContentBox()), stave.GetBounds().Y - height);
    };
    const auto addLeg = [height](QPainterPath& path, const QPointF& top) {
        path.moveTo(top);
        path.lineTo(top.x(), top.y() + height);
    };
    const QPointF startTop = legTop(*start, StartPosition);
    const QPointF middleTop = legTop(*middle, MiddlePosition);
    const QPointF endTop = legTop(*end, EndPosition);
    addLeg(StartLegPath, startTop);
    addLeg(MiddleLegPath, middleTop);
    addLeg(EndLegPath, endTop);

    if (StartStave == EndStave) {
        LinePath.moveTo(startTop);
        LinePath.lineTo(endTop);
    } else {
        // Over several systems the line runs to the end of each row and starts again at the
        // beginning of the next.
        LinePath.moveTo(startTop);
        LinePath.lineTo(start->ContentBox().Right(), startTop.y());
        const CStave* lastBetween = nullptr;
        for (std::int32_t i = StartStave + 1; i < EndStave; ++i) {
            const CStave* between = ResolveStave(i);
            if (between == nullptr)
                continue;
            const RectF row = between->ContentBox();
            const float y = between->GetBounds().Y - height;
            LinePath.moveTo(row.X, y);
            LinePath.lineTo(row.Right(), y);
            lastBetween = between;
        }
        if (lastBetween != nullptr)
            addLeg(MiddleLegPath,
                   QPointF(lastBetween->ContentBox().Right(), lastBetween->GetBounds().Y - height));
        LinePath.moveTo(end->ContentBox().X, endTop.y());
        LinePath.lineTo(endTop);
    }

    FirstTextPath =
        SansSerifOutline(FirstMarker, height).Path.translated(startTop.x() + height / 2, startTop.y());
    SecondTextPath =
        SansSerifOutline(SecondMarker, height).Path.translated(middleTop.x() + height / 2, middleTop.y());

    const std::uint32_t colour = Selected() ? kSelectedColour : kPlainColour;
    painter.SetSmoothing(true);
    painter.FillPath(FirstTextPath, Brush::Solid(colour));
    painter.FillPath(SecondTextPath, Brush::Solid(colour));
    painter.SetSmoothing(false);
    const Pen pen{colour, GetPenWidth()};
    for (const QPainterPath* path : {&LinePath, &StartLegPath, &MiddleLegPath, &EndLegPath})
        painter.StrokePath(*path, pen);
}

} // namespace corrieval
