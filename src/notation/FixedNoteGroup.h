#pragma once

#include "notation/NoteBase.h"

#include <QPainterPath>
#include <QString>

#include <cstdint>
#include <memory>
#include <utility>

namespace corrieval {

// The repeat section a note or movement plays in (see CRepeatTiming).
struct RepeatLink {
    std::int32_t Kind = 0; // 0 none, 1 first-time section, 2 second-time section
    std::int32_t Id = 0;
};

// A named movement: its gracenotes in playing order, placed, moved and deleted as one thing. The
// pitches come from the movement's definition and never change; only the weights and repeat
// fields of the notes may be edited. The group draws its notes itself, heads in cells side by
// side with stems up to three beams at the top of the music box.
class CFixedNoteGroup : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    CFixedNoteGroup() = default;
    explicit CFixedNoteGroup(QString name) : Name(std::move(name)) {}
    // Copies of the notes, the name, plain colour, no margins, no parent.
    CFixedNoteGroup(const CFixedNoteGroup& other) = default;

    // Adds a gracenote for each character of `chars`, at the pitch of the matching digit of
    // `positions` (0 High A to 8 Low G). When the counts differ every note falls on High A. A
    // single digit makes a stemmed gracenote; more make bare heads under the group's beams.
    void BuildNotes(const QString& chars, const QString& positions, std::int32_t repeatKind,
                    std::int32_t repeatId);
    // Gives the notes the playing weights of the movement of this name; notes beyond the weights,
    // and all notes of a name the catalogue lacks, keep theirs.
    void ApplyWeights();

    // On a head, or on a stem, ledger line or beam as last drawn.
    bool HitTestNote(float x, float y) const override;
    // The stems and beams as last drawn lie wholly inside; the edges may touch.
    bool IsWithin(float x, float y, float width, float height) const override;
    std::unique_ptr<CNoteBase> Clone() const override;
    float GetDefaultWidth() const override;
    void Draw(Painter& painter, OutputMode mode) override;
    // The movement for a gallery button, 1.4 times the box so that the heads fill it; with
    // `drawStave` the stave lines behind it, for a movement of more than one note.
    void DrawToolbarImage(Painter& painter, float x, float y, float width, float height, bool drawStave);

    int GetNoteCount() const { return static_cast<int>(ChildCount()); }
    // The repeat section is that of the first note, which is the one playback reads.
    RepeatLink GetRepeatLink() const;
    void SetRepeatLink(std::int32_t kind, std::int32_t id);

    // The left edge of the cell of gracenote `index` on the page, where drawing puts it. Playback
    // orders a bar's notes by it, so the order never waits for a page to be drawn.
    float NoteLeft(std::size_t index) const;

    QString Name;          // display name of the movement; empty when read from a file
    QPainterPath HeadPath; // the heads as drawn: filled
    QPainterPath StemPath; // stems, ledger lines and beams as drawn: stroked

private:
    // The width of each gracenote's cell on the page: two thirds of an even share of the box, so
    // the last gracenote stands clear of the note the movement leads to.
    float NoteCell() const;

    // What Draw and DrawToolbarImage share: the notes laid out in cells, heads added to HeadPath
    // and lines to StemPath and the two given paths.
    struct Layout {
        float Left;
        float Top;
        float Height;   // of the music box: the stave unit is a nineteenth of it
        float Cell;     // width of each note's cell
        float BeamTop;  // where the stems end and the first beam lies
        float BeamStep; // between beams
        bool Large;     // heads for a gallery button
    };
    void LayOut(const Layout& layout, QPainterPath& thin, QPainterPath& beams);
};

} // namespace corrieval
