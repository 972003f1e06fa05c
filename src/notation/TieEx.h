#pragma once

#include "model/ScoObj.h"

#include <QPainterPath>

#include <cstdint>
#include <vector>

namespace corrieval {

class CCorrievalDoc;
class CNoteEx;
class CStave;

// A tie or triplet slur over two or more notes. Ties belong to the document, not to a bar,
// because one may run over bars, staves and pages; notes name their tie by Id in the file.
// A tie is drawn by its first note, within that note's stave only.
class CTieEx : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    // Joins a note; a note keeps the first tie it ever joined. The figure follows the count:
    // 2 and 3 notes show 2 and 3, from four on one less than the count.
    void AddNote(CNoteEx* note);
    // Takes the note out of the tie; the caller clears the note's Tie. The document owns its ties
    // through its list, so a tie that is left without notes cannot simply delete itself: it takes
    // itself out of `owner`'s list, which deletes it. Returns true when no notes are left; the
    // caller must then not touch the tie again.
    bool RemoveNote(CNoteEx* note, CCorrievalDoc& owner);

    // Over the notes on the first note's stave, with the full height of that stave, so that the
    // curve above the notes is inside.
    RectF GetBounds() const override;
    // The outline of the figure as last drawn; empty for a plain tie of two notes. A click there
    // edits the figure.
    RectF FigureBounds() const;
    // The curve over the notes on the first note's stave, with the figure for more than two
    // notes. Notes that have moved to another stave leave the tie here: a tie is never drawn
    // across staves.
    void Draw(Painter& painter, OutputMode mode) override;

    std::vector<CNoteEx*> Notes; // not owned, in the order of joining
    std::int32_t TieValue = 2;
    std::int32_t Id = 0;
    QPainterPath TextPath;

private:
    void Detach(CNoteEx* note);
    // The notes that are not on `stave` leave the tie, and the last one with them when only one
    // would stay.
    void LeaveOtherStaves(const CStave& stave);
    // Deletes this tie if the document holds it.
    void DeleteFrom(CCorrievalDoc& owner);
};

} // namespace corrieval
