#pragma once

#include "formats/archive/Archive.h"
#include "model/Object.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class CPipeDoc;

// The records of an older Glenmarch tune, as they lie in a ".glm" file and as the BWW and BMW
// import builds them. They carry a tune from a read to its conversion into a score and have no
// link to the score model. Coordinates are whole thousandths of an inch on the older program's
// page; a note's pitch is an older stave position, 19 (Low G) to 27 (High A).

// One note or movement of an older bar.
class CNote : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    static constexpr std::int32_t CurrentVersion = 2;
    static constexpr std::int32_t LowestPosition = 16;
    static constexpr std::int32_t HighestPosition = 27;
    // An older stave position becomes a NotePitch as this less the position.
    static constexpr std::int32_t PitchBase = 30;
    // The code of a single gracenote; codes below it are melody notes, those above movements.
    static constexpr std::int32_t GracenoteCode = 30;

    CNote() = default;
    // A note made by the import. A movement code puts the note at the position where its
    // movement is written, whatever `position` says; a note read from a file keeps its own.
    CNote(std::int32_t id, std::int32_t index, std::int32_t position, std::int32_t code, std::int32_t x);

    // The older stave position that a movement code fixes, or `fallback` for a code that fixes none.
    static std::int32_t PositionForCode(std::int32_t code, std::int32_t fallback);

    std::int32_t Id = 0;    // unique in the tune: groups and ties refer to it
    std::int32_t Index = 1; // place in the bar, from 1
    std::int32_t Pitch = 24;
    std::int32_t Code = 2; // a MovementTypeCode: 0 semibreve to 4 semiquaver, gracenotes, movements
    std::int32_t X = 0;    // within the bar
    std::int32_t Dot = 0;  // 0 none, else dotted
    std::int32_t Version = CurrentVersion;
    std::array<std::int32_t, 3> Extras{}; // the older program's own, unused here
    double Scale = 1.0;                   // stored from version 2 on
    bool Visible = true;                  // not stored; a hidden note is not converted
    // Not stored: the first-or-second-time section a BWW tune writes the note in (CBarConfig's
    // Ending values). Glenmarch files mark their endings through parts and bar kinds instead.
    std::uint8_t Ending = 0;
    // Not stored: a BWW tune's pause sign over the note holds it this many times its length.
    float Hold = 1.0f;
};

// One beam: the ids of its notes and the extremes of their pitches and places.
class CNoteGroup : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    static constexpr std::int32_t MaxNotes = 30;

    bool Contains(std::int32_t noteId) const;
    // Takes the note in and widens the extremes to it.
    void Add(const CNote& note);

    std::int32_t HighestPitch = -32767;
    std::int32_t LowestPitch = 32767;
    std::int32_t RightmostX = -32767;
    std::int32_t LeftmostX = 32767;
    std::int32_t Id = 0;
    std::int32_t PreviousId = 0;
    std::int32_t State = 1;
    std::int32_t Reserved = 0;
    std::array<std::int32_t, 4> Extras{}; // the older program's own, unused here
    std::vector<std::int32_t> NoteIds;    // in order
};

// One bar of an older tune, placed by line and column, with its notes and beams.
class CBar : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum Kind : std::int32_t { Plain = 1, SecondTimeFollows = 2, EndOfRepeat = 3 };
    // The line a BWW tune draws at either end of a bar.
    enum class Edge : std::uint8_t { Plain, Heavy, Repeat };
    static constexpr std::int32_t CurrentVersion = 2;

    CBar();

    // Import: a note of `code` at the page point (x, y), its pitch from the nearest stave
    // position. Null after the message "Can't Add a new note to this bar!" for a bar that takes
    // no notes.
    CNote* AddNote(std::int32_t code, std::int32_t x, std::int32_t y, CPipeDoc& doc);
    // Import: a new, empty beam in this bar.
    CNoteGroup* NewGroup(CPipeDoc& doc);
    // Import: puts the note, made at the page point (x, y), under the beam. Refused (false) when
    // the beam is full or the point lies outside the bar.
    bool AddToGroup(CNoteGroup& group, const CNote& note, std::int32_t x, std::int32_t y) const;
    // Import: moves the notes, or the beams, of `other` into this bar, behind its own. Used to
    // fold a second-time bar into the first-time bar of its column.
    void MergeNotesFrom(CBar& other);
    void MergeGroupsFrom(CBar& other);

    // The beam that holds the note, if any.
    const CNoteGroup* GroupOf(std::int32_t noteId) const;
    bool HoldsNote(std::int32_t noteId) const;
    // Works the stave line gap out afresh from the height, as loading does.
    void RecomputeStaveGap(double factor);

    std::int32_t Left = 0;
    std::int32_t Top = 0; // the middle of the stave
    std::int32_t Width = 1000;
    std::int32_t Height = 500;
    double StaveGap = 0;                            // half of it is one pitch step
    std::array<std::int32_t, 3> Settings{3, 4, 10}; // the older program's own, unused here
    std::int32_t BarKind = Plain;
    std::int32_t Line = 0;
    std::int32_t Column = 1;
    std::int32_t HasNotes = 1; // 0 for a bar that is skipped
    std::int32_t Version = CurrentVersion;
    std::array<std::int32_t, 3> MoreSettings{}; // the older program's own, unused here
    double Scale = 1.0;                         // stored from version 2 on
    // Not stored: the bar lines a BWW tune writes; a Glenmarch tune draws plain ones.
    Edge StartEdge = Edge::Plain;
    Edge EndEdge = Edge::Plain;
    // Not stored: a BWW bar that opens one of the tune's own stave lines.
    bool StartsLine = false;
    std::vector<std::unique_ptr<CNote>> Notes;
    std::vector<std::unique_ptr<CNoteGroup>> Groups;
};

// A part of an older tune: a run of lines, with its upbeat and first and second time endings.
class CPart : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum Anacrusis : std::int32_t { Upbeat = 0, NoUpbeat = 2 };
    enum Ending : std::int32_t { NoEnding = 0, FirstTime = 1, FirstAndSecondTime = 2 };

    std::int32_t Number = 1;
    std::int32_t FirstReserved = 0;  // version 1: non-zero for an upbeat
    std::int32_t SecondReserved = 0; // the older layout's count of the part's lines
    std::int32_t ThirdField = 0;     // version 1: non-zero for an ending
    std::int32_t BarCount = 0;
    std::int32_t Version = 2;
    std::int32_t AnacrusisState = NoUpbeat;
    std::int32_t EndingKind = NoEnding;
    std::int32_t FirstTimeBar = 0; // the id of the note where the first time starts
    // Not stored: where the bar that holds the first-time note stands, 0 when none.
    std::int32_t FirstTimeLine = 0;
    std::int32_t FirstTimeColumn = 0;
};

// A tie of two notes, or a triplet of three, by note id.
class CTie : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    std::int32_t First = 0;
    std::int32_t Second = 0;
    std::int32_t Third = 0;                // 0 for a tie of two
    std::array<std::int32_t, 5> Drawing{}; // the older program's curve, unused here

    // The id that ends the tie: the third, or the second of a tie of two.
    std::int32_t Last() const { return Third != 0 ? Third : Second; }
    bool Holds(std::int32_t noteId) const;
};

// A list of records in the archive's direction: written from the list, or read and appended.
template <class T> void SyncRecordList(CArchive& ar, std::vector<std::unique_ptr<T>>& list)
{
    if (ar.IsStoring())
        ar.WriteList(list);
    else
        ar.ReadOwnedList(list);
}

// The classes a Glenmarch stream may name, with their records. Loading reads what the older
// program wrote; storing writes the same fields in the same order, which the program itself never
// needs (it reads these files only) but tests use to make files.
const ArchiveClassTable& GlenmarchClasses();

} // namespace corrieval
