#pragma once

#include "notation/NoteBase.h"
#include "notation/ScoChar.h"

#include <QString>

#include <cstdint>

namespace corrieval {

class CTieEx;
class CTimeSig;

// Stave position of a note, 3 (High A) to 11 (Low G).
using NotePitch = std::int32_t;
// Note value as a denominator of a semibreve (1 to 32); 64, 128 and 256 are gracenotes.
using NoteDuration = std::int32_t;

// A single melody note or gracenote.
class CNoteEx : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum DotCutKind : std::int32_t { Plain = 0, Dotted = 1, Cut = 2 };

    // The note's share of a bar under the time signature, before dots and cuts: a full bar is
    // 7680 / beat unit ticks whatever the beats. Gracenotes take time from their neighbours.
    std::uint32_t NoteTicks(const CTimeSig& timeSig) const;

    bool HitTestNote(float x, float y) const override;
    bool IsWithin(float x, float y, float width, float height) const override;

    std::int32_t RepeatKind = 0; // 0 none, 1 first-time section, 2 second-time section
    std::int32_t RepeatId = 0;   // the marker that last stamped the note
    CScoChar HeadChar;
    CScoChar AbbreviationChar;
    NotePitch Pitch = 9;
    RectF HeadRect; // the head as last drawn
    bool Stemmed = true;
    bool GraceHead = false;
    NoteDuration Duration = 4;
    std::uint32_t AbbreviationCode = 0;
    CTieEx* Tie = nullptr; // not owned; the document owns ties
    float Weight = 1.0f;
    std::int32_t DotCut = Plain;
};

// Notes beamed together under one stem line.
class CNoteGroupEx : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    bool IsMusicHolder() const override { return true; }
    bool HitTestNote(float x, float y) const override;
    bool IsWithin(float x, float y, float width, float height) const override;
};

// A named movement: its gracenotes in playing order.
class CFixedNoteGroup : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    bool HitTestNote(float x, float y) const override;
    bool IsWithin(float x, float y, float width, float height) const override;

    QString Name; // display name of the movement; empty when read from a file
};

} // namespace corrieval
