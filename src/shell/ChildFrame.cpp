#include "shell/ChildFrame.h"

#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "editor/TextAreaEditor.h"
#include "formats/archive/ArchiveError.h"
#include "formats/score/PlayerExport.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "playback/TuneSequence.h"
#include "shell/FileDialogs.h"
#include "shell/WaitCursor.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>

namespace corrieval {

namespace {
const QString kScoreFilter = QStringLiteral("Corrieval Files (*.skb)|*.skb|");

} // namespace

CChildFrame::CChildFrame(std::unique_ptr<CCorrievalDoc> doc, ViewHost& host, FolderMemory& folders,
                         std::function<void(CChildFrame&)> aboutToClose, QWidget* parent)
    : QMdiSubWindow(parent),
      m_doc(std::move(doc)),
      m_sequence(std::make_unique<CTuneSequence>(m_doc.get())),
      m_view(new CCorrievalView(*m_doc, host, this)),
      m_folders(folders),
      m_aboutToClose(std::move(aboutToClose))
{
    setWidget(m_view);
    setAttribute(Qt::WA_DeleteOnClose);
    RefreshTitle();
}

CChildFrame::~CChildFrame()
{
    // The view goes first: it points into the document.
    delete m_view;
}

void CChildFrame::RefreshTitle()
{
    setWindowTitle(m_doc->Title() + QStringLiteral("[*]"));
    setWindowModified(m_doc->IsModified());
    if (!m_doc->PathName().isEmpty())
        setToolTip(m_doc->PathName());
}

bool CChildFrame::SaveTo(const QString& path)
{
    // Typing in an open text area is already in the tune; as a step of its own it is part of the
    // state saved, so that closing the box afterwards changes nothing.
    m_view->TextEditor().Commit();
    try {
        const WaitCursor wait;
        // The zoom the tune was left at opens with it next time; a negative one follows the width.
        m_doc->LoadedZoom = m_view->ZoomsToWidth() ? -1.0f : m_view->Zoom();
        SaveScore(*m_doc, path);
    } catch (const FileError& e) {
        ShowMessage(QStringLiteral("Could not save %1:\n%2").arg(QDir::toNativeSeparators(path), e.Reason()),
                    MessageKind::Warning);
        return false;
    } catch (const ArchiveError& e) {
        ShowMessage(QStringLiteral("Could not save %1:\n%2").arg(QDir::toNativeSeparators(path),
                                                                 e.Describe()),
                    MessageKind::Warning);
        return false;
    }
    m_doc->SetPathName(path);
    m_doc->SetModifiedFlag(false);
    // Undoing or redoing back to this state leaves the tune unmodified again.
    m_view->History().MarkSaved();
    RefreshTitle();
    emit Saved(path);
    return true;
}

bool CChildFrame::Save()
{
    if (m_doc->PathName().isEmpty())
        return SaveAs();
    return SaveTo(m_doc->PathName());
}

bool CChildFrame::SaveAs()
{
    QString name = m_doc->PathName().isEmpty() ? m_doc->Title() : QFileInfo(m_doc->PathName()).fileName();
    if (!name.endsWith(QLatin1String(".skb"), Qt::CaseInsensitive))
        name += QStringLiteral(".skb");
    const QString path = AskSavePath(this, m_folders, QStringLiteral("UserSKB"), QStringLiteral("Save As"), name,
                                     kScoreFilter, QStringLiteral(".skb"));
    return !path.isEmpty() && SaveTo(path);
}

bool CChildFrame::MaybeSave()
{
    if (!m_doc->IsModified())
        return true;
    switch (ShowMessage(QStringLiteral("Save changes to %1?").arg(m_doc->Title()), MessageKind::YesNoCancel)) {
    case MessageAnswer::Yes: return Save();
    case MessageAnswer::No: return true;
    default: return false;
    }
}

void CChildFrame::closeEvent(QCloseEvent* event)
{
    if (!MaybeSave()) {
        event->ignore();
        return;
    }
    m_aboutToClose(*this);
    QMdiSubWindow::closeEvent(event);
}

void CChildFrame::ExportPlayerFile()
{
    const QString path = AskSavePath(this, m_folders, QStringLiteral("UserEXP"), QStringLiteral("Export SKP"),
                                     QFileInfo(m_doc->Title()).completeBaseName() + QStringLiteral(".skp"),
                                     QString::fromLatin1(PlayerFileFilter), QStringLiteral(".skp"));
    if (path.isEmpty())
        return;
    const WaitCursor wait;
    corrieval::ExportPlayerFile(*m_doc, path);
}

bool CChildFrame::RunCommand(int id)
{
    switch (id) {
    case command::FileSave: Save(); return true;
    case command::FileSaveAs: SaveAs(); return true;
    case command::FileClose: close(); return true;
    case command::PageSetup: m_doc->EditPageSetup(); return true;
    case command::ExportSkp: ExportPlayerFile(); return true;
    default: return false;
    }
}

bool CChildFrame::UpdateCommand(int id, CommandState& state)
{
    switch (id) {
    case command::FileSave:
    case command::FileSaveAs:
    case command::FileClose:
    case command::PageSetup:
        state.enabled = true;
        return true;
    case command::ExportSkp:
        state.enabled = m_doc->HasMusic();
        return true;
    default:
        return false;
    }
}

} // namespace corrieval
