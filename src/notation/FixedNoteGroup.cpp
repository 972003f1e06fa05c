#include "notation/FixedNoteGroup.h"

#include "notation/MovementCatalogue.h"
#include "notation/NoteEx.h"

#include <QPainterPathStroker>
#include <algorithm>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CFixedNoteGroup, CNoteBase);

namespace {

constexpr std::uint32_t kToolbarPenColour = 0xFF202080;

void AddLine(QPainterPath& path, float x1, float y1, float x2, float y2)
{
    path.moveTo(x1, y1);
    path.lineTo(x2, y2);
}

} // namespace

void CFixedNoteGroup::BuildNotes(const QString& chars, const QString& positions, std::int32_t repeatKind,
                                 std::int32_t repeatId)
{
    const qsizetype count = chars.size();
    const bool matched = count == positions.size();
    for (qsizetype i = 0; i < count; ++i) {
        std::unique_ptr<CNoteEx> note = CNoteEx::NoteFromChar(chars[i].unicode());
        const NotePitch pitch = matched ? positions[i].digitValue() + HighestPitch : HighestPitch;
        note->GraceHead = positions.size() != 1;
        note->Stemmed = positions.size() == 1;
        note->Duration = 256;
        note->Pitch = std::clamp(pitch, HighestPitch, LowestPitch);
        note->UpdateChars();
        note->RepeatKind = repeatKind;
        note->RepeatId = repeatKind > 0 ? repeatId : 0;
        AddChild(std::move(note), true);
    }
    ApplyWeights();
}

void CFixedNoteGroup::ApplyWeights()
{
    const std::vector<float>* weights = MovementWeights(Name);
    if (weights == nullptr)
        return;
    const std::size_t count = std::min(weights->size(), ChildCount());
    for (std::size_t k = 0; k < count; ++k) {
        if (auto* note = dynamic_cast<CNoteEx*>(ChildAt(k)))
            note->Weight = (*weights)[k];
    }
}

bool CFixedNoteGroup::HitTestNote(float x, float y) const
{
    const QPointF point(x, y);
    if (HeadPath.contains(point))
        return true;
    // The lines have no inside of their own: a point hits them within the widest pen, the beams'.
    QPainterPathStroker stroker;
    stroker.setWidth(3 * GetPenWidth());
    return stroker.createStroke(StemPath).contains(point);
}

bool CFixedNoteGroup::IsWithin(float x, float y, float width, float height) const
{
    return PathWithin(StemPath, {x, y, width, height});
}

std::unique_ptr<CNoteBase> CFixedNoteGroup::Clone() const
{
    return std::make_unique<CFixedNoteGroup>(*this);
}

float CFixedNoteGroup::GetDefaultWidth() const
{
    const float count = static_cast<float>(GetNoteCount());
    const float width = Bounds().Width * 0.125f * count;
    return width < 0.0001f ? Bounds().Height * 0.125f * count : width;
}

RepeatLink CFixedNoteGroup::GetRepeatLink() const
{
    const auto* first = ChildCount() > 0 ? dynamic_cast<const CNoteEx*>(ChildAt(0)) : nullptr;
    return first != nullptr ? RepeatLink{first->RepeatKind, first->RepeatId} : RepeatLink{};
}

void CFixedNoteGroup::SetRepeatLink(std::int32_t kind, std::int32_t id)
{
    if (auto* first = ChildCount() > 0 ? dynamic_cast<CNoteEx*>(ChildAt(0)) : nullptr) {
        first->RepeatKind = kind;
        first->RepeatId = id;
    }
}

void CFixedNoteGroup::LayOut(const Layout& layout, QPainterPath& thin, QPainterPath& beams)
{
    HeadPath = QPainterPath();
    HeadPath.setFillRule(Qt::WindingFill);
    StemPath = QPainterPath();
    const std::size_t count = ChildCount();
    const float u = layout.Height / 19;
    const float lw = GetPenWidth();
    for (std::size_t i = 0; i < count; ++i) {
        auto* note = dynamic_cast<CNoteEx*>(ChildAt(i));
        if (note == nullptr)
            continue;
        const float cellLeft = layout.Left + static_cast<float>(i) * layout.Cell;
        note->SetBounds(cellLeft, layout.Top, layout.Cell, layout.Height);
        // The note's own outline is only ever built here, so it starts afresh with each drawing.
        note->HeadPath = QPainterPath();
        note->HeadPath.setFillRule(Qt::WindingFill);
        const float cw = note->AddGraceHead(HeadPath, layout.Large);
        HeadPath.closeSubpath();
        const float headLeft = cellLeft + layout.Cell / 2 - cw / 2;
        const float middle = static_cast<float>(note->Pitch - 1) * u + layout.Top + u;

        if (note->Pitch == HighestPitch)
            AddLine(thin, headLeft + cw / 2 - cw, middle, headLeft + cw / 2 + cw, middle);
        // Gracenote stems go up from the right of the head; a single gracenote's glyph has its own.
        const float stem = headLeft + cw;
        if (count > 1)
            AddLine(thin, stem, layout.BeamTop, stem, middle);
        for (int level = 0; level < BeamCount(note->Duration); ++level) {
            const float y = layout.BeamTop + static_cast<float>(level) * layout.BeamStep;
            if (i + 1 < count)
                AddLine(beams, stem - lw, y, stem + layout.Cell + lw, y);
            else
                AddLine(beams, stem - 0.8f * cw, y, stem + lw, y);
        }
    }
    StemPath.addPath(thin);
    StemPath.addPath(beams);
}

float CFixedNoteGroup::NoteCell() const
{
    return ChildCount() == 0 ? 0.0f : 2 * (ContentBox().Width / static_cast<float>(ChildCount())) / 3;
}

float CFixedNoteGroup::NoteLeft(std::size_t index) const
{
    return ContentBox().X + static_cast<float>(index) * NoteCell();
}

void CFixedNoteGroup::Draw(Painter& painter, OutputMode)
{
    const RectF box = ContentBox();
    if (ChildCount() == 0) {
        HeadPath = StemPath = QPainterPath();
        return;
    }
    const float u = box.Height / 19;
    const float cell = NoteCell();
    QPainterPath thin;
    QPainterPath beams;
    LayOut({box.X, box.Y, box.Height, cell, box.Y + box.Height / 40, u / 1.75f, false}, thin, beams);

    const float lw = GetPenWidth();
    painter.SetSmoothing(true);
    painter.StrokePath(thin, Pen{Colour(), 2 * lw});
    painter.StrokePath(beams, Pen{Colour(), 3 * lw});
    painter.FillPath(HeadPath, Brush::Solid(Colour()));
    painter.SetSmoothing(false);
}

void CFixedNoteGroup::DrawToolbarImage(Painter& painter, float x, float y, float width, float height,
                                       bool drawStave)
{
    const std::size_t count = ChildCount();
    if (count == 0)
        return;
    const float h = height * 1.4f;
    const float u = h / 19;
    const float cell = 2 * (width * 1.4f / static_cast<float>(count)) / 3;
    QPainterPath thin;
    QPainterPath beams;
    LayOut({x, y, h, cell, y, u / 1.3f, true}, thin, beams);
    // The stave lines were stroked along with the next note's stem, so a movement of one note,
    // which has no next note, shows none.
    if (drawStave && count > 1) {
        for (int k = 5; k <= 13; k += 2)
            AddLine(thin, x, static_cast<float>(k) * u + y, x + width, static_cast<float>(k) * u + y);
    }

    const float lw = ToolbarPenWidth(height);
    painter.SetSmoothing(true);
    painter.StrokePath(thin, Pen{kToolbarPenColour, lw});
    painter.StrokePath(beams, Pen{kToolbarPenColour, 3 * lw});
    painter.FillPath(HeadPath, Brush::Solid(Colour()));
    painter.SetSmoothing(false);
}

} // namespace corrieval
