#pragma once

#include <cstdint>
#include <functional>

namespace corrieval {

class CCorrievalDoc;
class CPageArea;
class CScoObj;
struct PageSetup;

// What the score model may ask of the view that is active in the desktop app. The model reaches a
// view only through ActiveView(), which is null when there is no window (command-line tool, tests,
// batch conversion); every caller skips its view work then.
class ScoreView {
public:
    virtual ~ScoreView() = default;

    virtual void AddToSelection(CScoObj& object) = 0;
    virtual void RemoveFromSelection(CScoObj& object) = 0;
    virtual void InvalidateObject(const CScoObj& object) = 0;
    // The pages changed size or number: recompute the scroll extent and re-apply the zoom.
    virtual void PagesLaidOut() = 0;
    // An imported tune is in place: show "`tempo` bpm" in the tempo box and bring the zoom label
    // up to date.
    virtual void TuneImported(std::int32_t tempo) = 0;
    // Shows the page set-up dialog filled from `setup`; true and `setup` updated on OK.
    virtual bool EditPageSetup(PageSetup& setup) = 0;
    virtual float Zoom() const = 0;
    // The document the view shows.
    virtual CCorrievalDoc* Document() const = 0;
    // False while the view prints or previews: frames and bar fills are for the screen only.
    virtual bool PrintIdle() const = 0;
    // The area that holds the view's selection or insertion point, drawn with a blue frame.
    virtual const CPageArea* EnclosingArea() const = 0;
};

ScoreView* ActiveView();

// The desktop shell installs this once; it answers the view of the active child window, or null.
void SetActiveViewProvider(std::function<ScoreView*()> provider);

} // namespace corrieval
