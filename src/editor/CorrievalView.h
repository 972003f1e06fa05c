#pragma once

#include "editor/CommandTarget.h"
#include "editor/EditState.h"
#include "editor/ScoSelection.h"
#include "editor/UndoHistory.h"
#include "editor/ViewTransform.h"
#include "model/ActiveView.h"
#include "model/Painter.h"

#include <QAbstractScrollArea>
#include <QImage>

class QPrinter;
class QPrintPreviewDialog;

#include <memory>
#include <vector>

namespace corrieval {

class CCorrievalDoc;
class EditCommands;
class TextAreaEditor;
class ViewMouse;
class CTunePage;
class ViewHost;

// Shows one tune as a column of pages on a grey desk, and is the target of the editing commands.
// It owns the zoom and the map between its pixels and the document's inches; everything it is
// told about positions it turns into inches before the model hears of them. It paints through a
// back buffer of the dirty rectangle only, and prints and previews page by page.
//
// Space is the frame's play and stop shortcut: the view never takes it.
class CCorrievalView : public QAbstractScrollArea, public ScoreView, public CommandTarget {
    Q_OBJECT

public:
    CCorrievalView(CCorrievalDoc& doc, ViewHost& host, QWidget* parent = nullptr);
    ~CCorrievalView() override;

    // ScoreView
    void AddToSelection(CScoObj& object) override;
    void RemoveFromSelection(CScoObj& object) override;
    // Repaints the object's bounds grown by 0.1 inch on each side, and nothing else.
    void InvalidateObject(const CScoObj& object) override;
    void PagesLaidOut() override;
    void TuneImported(std::int32_t tempo) override;
    bool EditPageSetup(PageSetup& setup) override;
    float Zoom() const override { return m_zoom; }
    CCorrievalDoc* Document() const override { return &m_doc; }
    bool PrintIdle() const override { return m_printIdle; }
    const CPageArea* EnclosingArea() const override { return m_selection.EnclosingArea(); }

    // CommandTarget: print, quick print and print preview here, the editing commands through
    // EditCommands.
    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;

    // The frame calls this when the view's window becomes active. The first time, it applies the
    // zoom saved with the tune or, when "Load tunes zoomed to page width" is on, fits the width;
    // a view painted before it was activated does this at its first paint.
    void OnActivateView();

    // Zoom in percent, 50 to 300; a negative value zooms to the page width from now on.
    void SetZoom(int percent);
    void FitToWidth();
    // The zoom as the status bar shows it: a whole percentage, truncated.
    int ZoomPercent() const;
    bool ZoomsToWidth() const { return m_zoomToWidth; }
    // Holds the zoom where it is, or lets it follow the width again, without a repaint: for a
    // dialog whose changes must not refit the zoom while it is open.
    void SetZoomsToWidth(bool on) { m_zoomToWidth = on; }

    // Recomputes the document's extent, the zoom when it follows the width, and the scroll
    // ranges, then repaints `changed` alone or, without it, everything.
    void OnUpdate(const CScoObj* changed = nullptr);
    // Scrolls vertically so that `y` inches stays clear of the bottom fifth of the window, as the
    // play position and its highlight move on.
    void KeepInView(float y);

    // The present map between the viewport's pixels and the document.
    ViewTransform Transform() const;
    // The first page whose rectangle less its margins holds `point` (in inches), or null.
    CTunePage* PageAt(PointF point) const;
    // The first page the window shows any of, or null.
    CTunePage* FirstPageInView() const;
    CScoSelection& Selection() { return m_selection; }
    ViewEditState& EditState() { return m_edit; }
    UndoHistory& History() { return m_history; }
    TextAreaEditor& TextEditor() { return *m_textEditor; }
    ViewHost& Host() const { return m_host; }
    // What the player plays from when a selection is made.
    const std::vector<CScoObj*>& SelectedItems() const { return m_selection.Items(); }

    // Draws the desk and the pages under `clip` (viewport pixels) into the back buffer, its top
    // left corner at the buffer's, and returns the buffer.
    const QImage& PaintBackBuffer(const QRect& clip);

    // The print commands. Without any printer, printing goes to a PDF file the user names.
    void Print();
    void QuickPrint();
    void PrintPreview();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool RunOwnCommand(int id);
    void UpdateScrollRanges();
    void ApplyStoredZoom();
    void ZoomChanged();
    void DropSelection();
    void RunImport(const QString& path);
    void PrintTo(QPrinter& printer, OutputMode mode);
    // Points `printer` at a PDF file when the machine has no printer; false when the user
    // declined to name one.
    bool ChoosePdfWhenNoPrinter(QPrinter& printer);
    // The tune's title as a PDF in the user's documents folder.
    QString SuggestedPdfPath() const;

    CCorrievalDoc& m_doc;
    ViewHost& m_host;
    CScoSelection m_selection;
    ViewEditState m_edit;
    UndoHistory m_history;
    std::unique_ptr<EditCommands> m_commands;
    std::unique_ptr<ViewMouse> m_mouse;
    std::unique_ptr<TextAreaEditor> m_textEditor;
    float m_zoom = 1.0f;
    bool m_zoomToWidth = false;
    float m_documentWidth = 0;  // inches: the widest page
    float m_documentHeight = 0; // inches: all pages stacked
    bool m_firstActivation = true;
    bool m_firstPaint = true;
    bool m_printIdle = true;
    QPrintPreviewDialog* m_preview = nullptr; // while a preview is open
    QImage m_backBuffer;
};

} // namespace corrieval
