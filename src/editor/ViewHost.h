#pragma once

#include <QPoint>
#include <QString>

namespace corrieval {

class CCorrievalView;
class CNoteBase;

// The entries one movement gallery offers, as indexes over all four galleries, and the one it
// shows on its face: the entry chosen there last, or the one it starts with.
struct PaletteRange {
    int First = 0;
    int Count = 0;
    int Chosen = -1;

    bool Holds(int entry) const { return entry >= First && entry < First + Count; }
};

// What a score view needs of the window that holds it: the main frame in the program, a small
// stand-in in tests. The view never reaches for the frame in any other way.
class ViewHost {
public:
    virtual ~ViewHost() = default;

    // The file that a Glenmarch or BWW import command chose, handed to the next new view to paint;
    // emptied by this call, so an import runs once.
    virtual QString TakePendingImport() = 0;
    // "Load tunes zoomed to page width" is on.
    virtual bool AutoZoom() const = 0;
    // The view's zoom changed: the status bar shows it.
    virtual void ZoomChanged(const CCorrievalView& view, float zoom) = 0;
    // An import into `view` is in place: the transport shows its tempo and follows its notes.
    virtual void TuneImported(CCorrievalView& view, int tempo) = 0;
    // The prototype of a palette entry (an index over the four galleries), or null: the ghost
    // that follows the mouse while placing, of which a clone enters the score.
    virtual CNoteBase* PalettePrototype(int entry) const = 0;
    // The entries of the gallery of command `galleryId` (one of command::PaletteGalleries).
    virtual PaletteRange PaletteEntries(int galleryId) const = 0;
    // A click chose one bar: while the tune plays, play starts again from the selection and the
    // answer is true; false when nothing plays.
    virtual bool RestartPlay() = 0;
    // The editing commands as a menu at `globalPos`, in the state the ribbon shows them.
    virtual void ShowContextMenu(const QPoint& globalPos) = 0;
};

} // namespace corrieval
