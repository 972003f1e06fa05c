#pragma once

#include "editor/CommandTarget.h"
#include "shell/FileDialogs.h"

#include <QMdiSubWindow>

#include <functional>
#include <memory>

namespace corrieval {

class CCorrievalDoc;
class CCorrievalView;
class CTuneSequence;
class ViewHost;

// One tab of the main window: a tune, its view and what it plays. It owns the document's
// commands (Save, Save As, Close, Page Setup, SKP export) and asks before a modified tune
// is closed.
class CChildFrame : public QMdiSubWindow, public CommandTarget {
    Q_OBJECT

public:
    CChildFrame(std::unique_ptr<CCorrievalDoc> doc, ViewHost& host, FolderMemory& folders,
                std::function<void(CChildFrame&)> aboutToClose, QWidget* parent = nullptr);
    ~CChildFrame() override;

    CCorrievalDoc& Document() const { return *m_doc; }
    CCorrievalView& View() const { return *m_view; }
    CTuneSequence& Sequence() const { return *m_sequence; }

    // Saves to the tune's file, or asks for one when it has none; false when not saved.
    bool Save();
    bool SaveAs();
    // Asks whether to save a modified tune: true when it may close.
    bool MaybeSave();
    // The tab's caption: the tune's title with the modified mark.
    void RefreshTitle();

    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;

signals:
    // The tune was written to this file.
    void Saved(const QString& path);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    bool SaveTo(const QString& path);
    void ExportPlayerFile();

    std::unique_ptr<CCorrievalDoc> m_doc;
    std::unique_ptr<CTuneSequence> m_sequence;
    CCorrievalView* m_view; // owned by this window as its widget
    FolderMemory& m_folders;
    // Told once the tune is sure to close: play, which reads lists built from it, lets go first.
    std::function<void(CChildFrame&)> m_aboutToClose;
};

} // namespace corrieval
