#include "formats/bww/BwwPartWriter.h"

#include "formats/glenmarch/PipeDoc.h"

#include <array>
#include <cmath>
#include <memory>

namespace corrieval::bww {

namespace {

constexpr std::int32_t kBarsPerLine = 4;
// The first bar of a line keeps this room (thousandths of an inch) for its clef and signature.
constexpr std::int32_t kLineStartRoom = 600;
// A score has no pause sign: the note under one is played twice its length instead.
constexpr float kPauseHold = 2.0f;

struct Place {
    std::int32_t Line;
    std::int32_t Column;
};

// Where CPipeDoc::LayOutPart put the bar of `row`.
Place PlaceOfRow(std::int32_t firstLine, std::int32_t row, bool upbeat)
{
    if (upbeat && row == 0)
        return {firstLine, 1};
    const std::int32_t k = upbeat ? row - 1 : row;
    return {firstLine + k / kBarsPerLine, k % kBarsPerLine + (upbeat ? 2 : 1)};
}

// The page y of an older stave position in a bar: the lowest position two and a half gaps below
// the middle of the stave, each higher one half a gap above the one before.
std::int32_t YOfPitch(const CBar& bar, std::int32_t pitch)
{
    const double gap = bar.StaveGap;
    const double offset = std::trunc(gap * 2.5 + 0.5) - (pitch - CNote::LowestPosition) * gap * 0.5;
    return bar.Top + static_cast<std::int32_t>(offset);
}

// Ties and triplets as the grid marks them: a tied slot waits for the next note, three tied slots
// in a row make a triplet.
class TieMaker {
public:
    explicit TieMaker(CPipeDoc& doc) : m_doc(doc) {}

    void Note(std::int32_t id, bool tied)
    {
        if (m_state == 0 && tied)
            m_state = 1;
        else if (m_state == 1 && tied)
            m_state = 2;
        else if (m_state == 1) {
            Make(m_previous, id, 0);
            m_state = 0;
        } else if (m_state == 2) {
            if (tied)
                Make(m_beforePrevious, m_previous, id);
            m_state = 0;
        }
        m_beforePrevious = m_previous;
        m_previous = id;
    }

    // A melody note of a triplet: each three make one.
    void TripletNote(std::int32_t id)
    {
        m_triplet[m_tripletSize++] = id;
        if (m_tripletSize < m_triplet.size())
            return;
        Make(m_triplet[0], m_triplet[1], m_triplet[2]);
        m_tripletSize = 0;
    }

private:
    void Make(std::int32_t first, std::int32_t second, std::int32_t third)
    {
        if (first == 0)
            return;
        auto tie = std::make_unique<CTie>();
        tie->First = first;
        tie->Second = second;
        tie->Third = third;
        m_doc.Ties.push_back(std::move(tie));
    }

    CPipeDoc& m_doc;
    std::int32_t m_state = 0;
    std::int32_t m_previous = 0;
    std::int32_t m_beforePrevious = 0;
    std::array<std::int32_t, 3> m_triplet{};
    std::size_t m_tripletSize = 0;
};

void WriteRow(CPipeDoc& doc, CBar& bar, std::span<const NoteGrid::Slot> notes, std::int32_t leftRoom,
              TieMaker& ties)
{
    const std::int32_t spacing = (bar.Width - leftRoom) / (static_cast<std::int32_t>(notes.size()) + 1);
    CNoteGroup* beam = nullptr;
    std::int32_t x = spacing;
    for (const NoteGrid::Slot& slot : notes) {
        const std::int32_t px = bar.Left + x + leftRoom;
        const std::int32_t py = YOfPitch(bar, slot.Pitch);
        x += spacing;
        CNote* note = bar.AddNote(slot.Code, px, py, doc);
        if (note == nullptr)
            continue;
        if (slot.Dotted)
            note->Dot = 1;
        note->Ending = slot.Ending;
        if (slot.Paused)
            note->Hold = kPauseHold;
        if (slot.Beamed) {
            if (beam == nullptr)
                beam = bar.NewGroup(doc);
            bar.AddToGroup(*beam, *note, px, py);
            if (!slot.BeamGoesOn)
                beam = nullptr;
        }
        if (slot.Triplet)
            ties.TripletNote(note->Id);
        ties.Note(note->Id, slot.Tied);
    }
}

} // namespace

void WritePart(CPipeDoc& doc, const NoteGrid& grid, const PartShape& shape)
{
    const auto rows = static_cast<std::int32_t>(grid.RowCount());
    if (rows == 0)
        return;
    auto part = std::make_unique<CPart>();
    part->Version = 2;
    part->Number = shape.Number;
    part->BarCount = rows;
    part->AnacrusisState = shape.Anacrusis;
    part->EndingKind = shape.FirstTime ? CPart::FirstTime : CPart::NoEnding;
    doc.Parts.push_back(std::move(part));
    const std::int32_t firstLine = doc.LastLine() + 1;
    doc.LayOutPart(shape.Number);

    const bool upbeat = shape.Anacrusis == CPart::Upbeat;
    TieMaker ties(doc);
    for (std::int32_t row = 0; row < rows; ++row) {
        const Place place = PlaceOfRow(firstLine, row, upbeat);
        CBar* bar = doc.BarAt(place.Line, place.Column);
        if (bar == nullptr)
            continue;
        const std::int32_t leftRoom = row % kBarsPerLine == 0 && place.Column == 1 ? kLineStartRoom : 0;
        const auto index = static_cast<std::size_t>(row);
        bar->StartEdge = grid.RowEdges(index).Start;
        bar->EndEdge = grid.RowEdges(index).End;
        // A part always opens a line, whether or not the tune wrote it so.
        bar->StartsLine = row == 0 || grid.StartsLine(index);
        WriteRow(doc, *bar, grid.Row(index), leftRoom, ties);
    }
}

} // namespace corrieval::bww
