#include "notation/NoteGroupEx.h"

#include "model/Stave.h"
#include "notation/NoteEx.h"

#include <QPainterPathStroker>
#include <algorithm>
#include <utility>
#include <vector>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CNoteGroupEx, CNoteBase);

namespace {

// Stubs, the half beams of notes whose neighbours have fewer beams, are this share of the head.
constexpr float kStubShare = 0.8f;
// Beams stack this many gaps apart, upwards from the beam line.
constexpr float kBeamStep = 0.7f;
// The stave position of the beam line, below the lowest note.
constexpr int kBeamLinePosition = 17;

int BeamsOf(const CNoteEx* note)
{
    return note != nullptr ? BeamCount(note->Duration) : 0;
}

// Draws the stems and beams of one drawing of a group, collecting the beams as its hit shape.
class Beaming {
public:
    Beaming(Painter& painter, QPainterPath& beams, std::uint32_t argb, float penWidth, float beamLine,
            float unit)
        : m_painter(painter), m_beams(beams), m_stemPen{argb, 2 * penWidth}, m_beamPen{argb, 4 * penWidth},
          m_beamLine(beamLine), m_step(kBeamStep * 2 * unit)
    {
    }

    // The stem stands at the left edge of the head, from its middle down to the beam line.
    void Stem(const CNoteEx& note) const
    {
        const RectF& head = note.HeadRect;
        m_painter.DrawLine(head.X, m_beamLine, head.X, head.Y + head.Height / 2, m_stemPen);
    }

    // The beams that start at note i: full beams to the next note where it has the level too,
    // otherwise stubs, and the extra stub of a cut.
    void Beams(const std::vector<CNoteEx*>& notes, std::size_t i)
    {
        const CNoteEx* note = notes[i];
        const CNoteEx* next = i + 1 < notes.size() ? notes[i + 1] : nullptr;
        const CNoteEx* previous = i > 0 ? notes[i - 1] : nullptr;
        const int own = BeamsOf(note);
        const int after = BeamsOf(next);
        const int before = BeamsOf(previous);
        const float x = note->HeadRect.X;
        const float stub = kStubShare * note->HeadRect.Width;
        // The first beam lies on the beam line, where the stems end.
        float y = m_beamLine - m_beamPen.Width / 2;
        const auto index = static_cast<int>(i);
        for (int level = 0; level < own; ++level, y -= m_step) {
            if (next == nullptr)
                Segment(x - stub, x, y);
            else if (level < after)
                Segment(x, next->HeadRect.X, y);
            // The index, not the level, is compared with the beams before: near the start of a
            // group this leaves out a stub where the previous note's full beam already ends.
            else if (previous != nullptr && index <= before - 1)
                continue;
            else if (before > after)
                Segment(x - stub, x, y);
            else
                Segment(x, x + stub, y);
        }
        // A cut shows as one stub more above the beams, and lasts as a note of one beam more.
        if (note->DotCut == CNoteEx::Cut) {
            if (next == nullptr || (index % 2 == 1 && next->DotCut != CNoteEx::Dotted))
                Segment(x - stub, x, y);
            else
                Segment(x, x + stub, y);
        }
    }

private:
    void Segment(float from, float to, float y)
    {
        m_beams.moveTo(from, y);
        m_beams.lineTo(to, y);
        m_painter.DrawLine(from, y, to, y, m_beamPen);
    }

    Painter& m_painter;
    QPainterPath& m_beams;
    Pen m_stemPen;
    Pen m_beamPen;
    float m_beamLine;
    float m_step;
};

} // namespace

RectF CNoteGroupEx::GetBounds() const
{
    if (ChildCount() == 0)
        return {};
    RectF bounds = ChildAt(0)->GetBounds();
    for (const auto& child : Children())
        bounds = bounds.United(child->GetBounds());
    return bounds;
}

bool CNoteGroupEx::HitTestNote(float x, float y) const
{
    if (!BeamPath.isEmpty()) {
        // Beams are lines with no inside of their own: a point hits one within its pen.
        QPainterPathStroker stroker;
        stroker.setWidth(4 * GetPenWidth());
        stroker.setCapStyle(Qt::FlatCap);
        if (stroker.createStroke(BeamPath).contains(QPointF(x, y)))
            return true;
    }
    return NoteAtPoint(x, y) != nullptr;
}

bool CNoteGroupEx::IsWithin(float x, float y, float width, float height) const
{
    return PathWithin(BeamPath, {x, y, width, height});
}

std::unique_ptr<CNoteBase> CNoteGroupEx::Clone() const
{
    return std::make_unique<CNoteGroupEx>();
}

void CNoteGroupEx::SetColour(std::uint32_t argb)
{
    for (const auto& child : Children()) {
        if (auto* item = dynamic_cast<CNoteBase*>(child.get()))
            item->SetColour(argb);
    }
    CNoteBase::SetColour(argb);
}

void CNoteGroupEx::AutoOrganise()
{
    const std::size_t count = ChildCount();
    // One note already spans the group.
    if (count < 2)
        return;
    const RectF extent = GetBounds();
    float widths = 0;
    for (const auto& child : Children())
        widths += child->GetBounds().Width;
    const float gap = (extent.Width - widths) / static_cast<float>(count - 1);
    float x = extent.X;
    for (const auto& child : Children()) {
        child->InvalidateSelf();
        const RectF r = child->GetBounds();
        child->SetBounds(x, r.Y, r.Width, r.Height);
        x += r.Width + gap;
    }
    InvalidateSelf();
}

void CNoteGroupEx::BeforeBoundsChange(const RectF& newBounds)
{
    const RectF old = GetBounds();
    for (const auto& child : Children()) {
        const RectF r = child->GetBounds();
        // Notes all at one x have no fractions to keep: they keep their distance from the edge.
        const float x = old.Width > 0 ? (r.X - old.X) / old.Width * newBounds.Width + newBounds.X
                                      : r.X - old.X + newBounds.X;
        child->SetBounds(x, newBounds.Y, r.Width, newBounds.Height);
    }
}

void CNoteGroupEx::OnChildAdded(CScoObj* object, bool shorten)
{
    auto* note = dynamic_cast<CNoteEx*>(object);
    if (note == nullptr)
        return;
    if (shorten)
        ShortenNote(*note);
    note->Stemmed = false;
    note->UpdateChars();
}

void CNoteGroupEx::OnChildRemoved(CScoObj* object)
{
    if (auto* note = dynamic_cast<CNoteEx*>(object)) {
        note->SetSelected(false);
        if (note->DotCut == CNoteEx::Cut)
            note->SetDotCut(CNoteEx::Plain);
        note->Stemmed = true;
        note->UpdateChars();
        note->InvalidateSelf();
    }
    InvalidateSelf();
}

void CNoteGroupEx::Draw(Painter& painter, OutputMode mode)
{
    // The beam line is a place on a stave: a group outside one has nothing to draw to.
    const CStave* stave = FindAncestor<CStave>();
    if (stave == nullptr)
        return;
    // The notes fix their head rectangles, which the stems and beams are placed by.
    CGraphObjContainer::Draw(painter, mode);

    const std::vector<CNoteEx*> notes = Notes();
    const float unit = stave->ContentBox().Height / 19;
    const float beamLine = stave->ContentBox().Y + stave->Positions()[kBeamLinePosition];
    BeamPath = QPainterPath();
    painter.SetSmoothing(true);
    Beaming beaming(painter, BeamPath, Colour(), GetPenWidth(), beamLine, unit);
    for (const CNoteEx* note : notes)
        beaming.Stem(*note);
    for (std::size_t i = 0; i < notes.size(); ++i)
        beaming.Beams(notes, i);
    painter.SetSmoothing(false);
}

std::vector<CNoteEx*> CNoteGroupEx::Notes() const
{
    std::vector<CNoteEx*> notes;
    for (const auto& child : Children()) {
        if (auto* note = dynamic_cast<CNoteEx*>(child.get()))
            notes.push_back(note);
    }
    return notes;
}

CNoteEx* CNoteGroupEx::NoteAtPoint(float x, float y) const
{
    for (CNoteEx* note : Notes()) {
        if (note->HitTestNote(x, y))
            return note;
    }
    return nullptr;
}

void CNoteGroupEx::ShortenNote(CNoteEx& note)
{
    if (note.Duration == 4 || note.Duration == 8 || note.Duration == 16) {
        note.Duration *= 2;
        note.UpdateChars();
    }
    InvalidateSelf();
}

void CNoteGroupEx::LengthenNote(CNoteEx& note)
{
    switch (note.Duration) {
    case 8:
        note.Duration = 4;
        note.UpdateChars();
        Release(note);
        // A single note is no group.
        if (ChildCount() == 1) {
            if (auto* last = dynamic_cast<CNoteEx*>(ChildAt(0)))
                Release(*last);
        }
        break;
    case 16:
    case 32:
        note.Duration /= 2;
        note.UpdateChars();
        break;
    default:
        break;
    }
    InvalidateSelf();
}

void CNoteGroupEx::Release(CNoteEx& note)
{
    CGraphObjContainer* bar = Parent();
    if (bar == nullptr || note.Parent() != this)
        return;
    bar->AddChild(RemoveChild(&note, false), true);
}

} // namespace corrieval
