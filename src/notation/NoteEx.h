#pragma once

#include "notation/NoteBase.h"
#include "notation/ScoChar.h"

#include <QPainterPath>
#include <QString>
#include <cstdint>
#include <memory>

namespace corrieval {

class CTieEx;
class CTimeSig;

// Stave position of a note, 3 (High A) to 11 (Low G).
using NotePitch = std::int32_t;
// Note value as a denominator of a semibreve (1 to 32); 64, 128 and 256 are gracenotes.
using NoteDuration = std::int32_t;

inline constexpr NotePitch HighestPitch = 3;
inline constexpr NotePitch LowestPitch = 11;

// Gracenotes: they borrow their time from the notes around them.
inline bool IsSmallDuration(NoteDuration d)
{
    return d == 64 || d == 128 || d == 256;
}

// The beams or flags a value carries: three for the gracenotes of a movement.
inline int BeamCount(NoteDuration d)
{
    switch (d) {
    case 8:
        return 1;
    case 16:
        return 2;
    case 32:
    case 256:
        return 3;
    default:
        return 0;
    }
}

// A single melody note or gracenote. A note holds no stem direction: its glyph carries stem and
// flags, stems going down towards the beam line and gracenote stems up.
class CNoteEx : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum DotCutKind : std::int32_t { Plain = 0, Dotted = 1, Cut = 2 };
    static constexpr char16_t GraceHeadGlyph = 33;
    static constexpr char16_t MelodyHeadGlyph = 34;

    // For reading files: the fields are read next.
    CNoteEx() = default;
    explicit CNoteEx(NoteDuration duration);
    // A note standing for an abbreviation mark in a legend.
    static std::unique_ptr<CNoteEx> ForAbbreviation(std::uint32_t code);
    // The note a glyph of the font stands for; an unknown glyph gives a crotchet.
    static std::unique_ptr<CNoteEx> NoteFromChar(char16_t glyph);
    // A copy is always a plain stemmed note without a tie, whatever it was copied from.
    CNoteEx(const CNoteEx& other);

    // The one place that turns duration, Stemmed and GraceHead into glyph codes. Call it after
    // changing any of them.
    void UpdateChars();
    // The note's share of a bar under the time signature, before dots and cuts: a full bar is
    // 7680 / beat unit ticks whatever the beats. Gracenotes take time from their neighbours.
    std::uint32_t NoteTicks(const CTimeSig& timeSig) const;
    void SetDotCut(std::int32_t dotCut);

    bool HitTestNote(float x, float y) const override;
    bool IsWithin(float x, float y, float width, float height) const override;
    std::unique_ptr<CNoteBase> Clone() const override;
    void Draw(Painter& painter, OutputMode mode) override;
    // Draws the note large in a button-sized box, heads above the middle turned.
    void DrawToolbarImage(Painter& painter, float x, float y, float width, float height);
    // Adds the head in the cell of a movement, to its own path and to the movement's, and
    // returns the glyph width.
    float AddGraceHead(QPainterPath& groupPath, bool large);

    // Remembers the rectangle and parent before a drag, and puts them back when it is refused.
    void SaveState();
    void RestoreState();
    // As for any item, except that a tied note stays.
    PointF DragTo(float x, float y) override;
    // Moves another selected note along with the drag; true when it lands inside a bar.
    bool MoveBy(float dx, float dy) override;

    std::int32_t RepeatKind = 0; // 0 none, 1 first-time section, 2 second-time section
    std::int32_t RepeatId = 0;   // the marker that last stamped the note
    CScoChar HeadChar;
    CScoChar AbbreviationChar;
    NotePitch Pitch = 9;
    QPainterPath HeadPath;   // head, stem, flags and dot as drawn: filled, and the hit shape
    QPainterPath LedgerPath; // stroked
    RectF HeadRect;          // the head as last drawn; ties, beams and rubber bands read it
    bool Stemmed = true;     // false inside a beamed group, whose stems the group draws
    bool GraceHead = false;  // the bare small head of a movement
    NoteDuration Duration = 4;
    std::uint32_t AbbreviationCode = 0;
    CTieEx* Tie = nullptr; // not owned; the document owns ties
    float Weight = 1.0f;
    std::int32_t DotCut = Plain;

private:
    RectF m_savedBounds;
    CGraphObjContainer* m_savedParent = nullptr;
};

} // namespace corrieval
