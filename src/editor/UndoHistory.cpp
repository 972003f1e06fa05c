#include "editor/UndoHistory.h"

#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <QUndoCommand>

namespace corrieval {

// One change: the document's bytes before and after it. The stack calls redo() when the step is
// pushed; the change has been made by then, so that first call does nothing.
class UndoHistory::Step : public QUndoCommand {
public:
    Step(UndoHistory& history, const QString& label, QByteArray before, QByteArray after)
        : QUndoCommand(label), m_history(history), m_before(std::move(before)), m_after(std::move(after))
    {
    }

    void undo() override { m_history.Restore(m_before); }
    void redo() override
    {
        if (m_done)
            m_history.Restore(m_after);
        m_done = true;
    }

private:
    UndoHistory& m_history;
    QByteArray m_before;
    QByteArray m_after;
    bool m_done = false;
};

UndoHistory::UndoHistory(CCorrievalDoc& doc, int depth, QObject* parent)
    : QObject(parent), m_doc(doc)
{
    m_stack.setUndoLimit(depth);
    // A tune that was never saved in this state (an import, a recovered file) stays modified
    // even when every change has been undone.
    if (doc.IsModified())
        m_stack.resetClean();
    const auto followClean = [this] { m_doc.SetModifiedFlag(!m_stack.isClean()); };
    connect(&m_stack, &QUndoStack::indexChanged, this, followClean);
    connect(&m_stack, &QUndoStack::cleanChanged, this, followClean);
}

UndoHistory::~UndoHistory() = default;

QByteArray UndoHistory::Snapshot()
{
    QByteArray bytes = StoreScore(m_doc, m_doc.PathName());
    // Unchanged since the last step: share its bytes rather than hold a second copy.
    if (bytes == m_current)
        return m_current;
    return bytes;
}

void UndoHistory::BeginChange(const QString& label)
{
    if (m_nesting++ > 0)
        return;
    m_label = label;
    m_before = Snapshot();
}

bool UndoHistory::EndChange()
{
    if (m_nesting == 0 || --m_nesting > 0)
        return false;
    QByteArray after = Snapshot();
    QByteArray before = std::exchange(m_before, {});
    if (after == before)
        return false;
    m_current = after;
    m_stack.push(new Step(*this, m_label, std::move(before), std::move(after)));
    return true;
}

void UndoHistory::Restore(const QByteArray& bytes)
{
    auto earlier = ReadScore(bytes, m_doc.PathName());
    emit aboutToRestore();
    m_doc.SwapContent(*earlier);
    // `earlier` now holds the state being left, and takes it down with it.
    earlier.reset();
    m_current = bytes;
    emit restored();
}

QString UndoHistory::UndoLabel() const
{
    return CanUndo() ? tr("Undo %1").arg(m_stack.undoText()) : QString();
}

QString UndoHistory::RedoLabel() const
{
    return CanRedo() ? tr("Redo %1").arg(m_stack.redoText()) : QString();
}

} // namespace corrieval
