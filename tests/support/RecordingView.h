#pragma once

#include "model/ActiveView.h"
#include "model/CorrievalDoc.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace corrieval::testing {

// A view that records what the model asks of it, installed as the active view while it lives.
class RecordingView : public ScoreView {
public:
    RecordingView()
    {
        SetActiveViewProvider([this] { return this; });
    }
    ~RecordingView() override { SetActiveViewProvider(nullptr); }

    void AddToSelection(CScoObj& object) override { Selection.push_back(&object); }
    void RemoveFromSelection(CScoObj& object) override { std::erase(Selection, &object); }
    void InvalidateObject(const CScoObj& object) override { Invalidated.push_back(&object); }
    void PagesLaidOut() override { ++Layouts; }
    bool EditPageSetup(PageSetup& setup) override
    {
        ++PageSetupPrompts;
        if (Answer)
            setup = *Answer;
        return Answer.has_value();
    }
    void TuneImported(std::int32_t tempo) override { ImportedTempo = tempo; }
    float Zoom() const override { return ViewZoom; }
    CCorrievalDoc* Document() const override { return Doc; }
    bool PrintIdle() const override { return Idle; }
    const CPageArea* EnclosingArea() const override { return Enclosing; }

    std::vector<CScoObj*> Selection;
    std::vector<const CScoObj*> Invalidated;
    int Layouts = 0;
    int PageSetupPrompts = 0;
    std::optional<std::int32_t> ImportedTempo;
    std::optional<PageSetup> Answer;
    float ViewZoom = 1.5f;
    CCorrievalDoc* Doc = nullptr;
    bool Idle = true;
    const CPageArea* Enclosing = nullptr;
};

} // namespace corrieval::testing
