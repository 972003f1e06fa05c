#pragma once

namespace corrieval {

class CBarEx;
class CNoteBase;
class CStaveArea;
struct CRuntimeClass;

// What one view is in the middle of, between mouse presses and commands. None of it is owned:
// the document owns the bars and areas, the galleries own the prototypes, and everything that
// points into the score is dropped before the score is replaced (undo, redo, reload).
struct ViewEditState {
    // The palette entry being placed, or -1. Placing lasts through any number of drops, until a
    // right click.
    int PaletteEntry = -1;
    // The kind of area the next press on a page creates from its band, or null.
    const CRuntimeClass* PendingArea = nullptr;
    // While placing: the prototype following the mouse, drawn in blue, and the bar it is over.
    CNoteBase* Ghost = nullptr;
    CBarEx* GhostTarget = nullptr;
    // The music area whose bars show their value sums while check values is on.
    CStaveArea* CheckValuesArea = nullptr;
    // Set by a click on one bar of an unlocked tune: the repeat commands may act on it.
    bool MayInsertRepeats = false;

    bool Placing() const { return PaletteEntry >= 0; }
    // Drops every pointer into the score, keeping the palette choice.
    void ForgetScore()
    {
        Ghost = nullptr;
        GhostTarget = nullptr;
        CheckValuesArea = nullptr;
        MayInsertRepeats = false;
    }
};

} // namespace corrieval
