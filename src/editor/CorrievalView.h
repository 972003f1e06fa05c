#pragma once

#include "editor/CommandTarget.h"
#include "model/ActiveView.h"

#include <QAbstractScrollArea>

#include <vector>

namespace corrieval {

class CCorrievalDoc;
class ViewHost;

// Shows one tune as a column of pages on a grey desk, and is the target of the editing commands.
class CCorrievalView : public QAbstractScrollArea, public ScoreView, public CommandTarget {
    Q_OBJECT

public:
    CCorrievalView(CCorrievalDoc& doc, ViewHost& host, QWidget* parent = nullptr);

    // ScoreView
    void AddToSelection(CScoObj& object) override;
    void RemoveFromSelection(CScoObj& object) override;
    void InvalidateObject(const CScoObj& object) override;
    void PagesLaidOut() override;
    void TuneImported(std::int32_t tempo) override;
    bool EditPageSetup(PageSetup& setup) override;
    float Zoom() const override { return m_zoom; }
    CCorrievalDoc* Document() const override { return &m_doc; }
    bool PrintIdle() const override { return true; }
    const CPageArea* EnclosingArea() const override { return nullptr; }

    void SetZoom(int percent);
    void FitToWidth();
    int ZoomPercent() const;
    void KeepInView(float yInches);
    const std::vector<CScoObj*>& SelectedItems() const { return m_selected; }

    // CommandTarget
    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;

private:
    CCorrievalDoc& m_doc;
    ViewHost& m_host;
    float m_zoom = 1.0f;
    std::vector<CScoObj*> m_selected;
};

} // namespace corrieval
