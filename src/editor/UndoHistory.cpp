#include "editor/UndoHistory.h"

#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <QUndoCommand>

namespace corrieval {

namespace {
// Score files pack to about a tenth; the fastest level already gets most of that.
constexpr int kPackLevel = 1;
} // namespace

// One change: the document's bytes before and after it, packed. The stack calls redo() when the step is
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

UndoHistory::UndoHistory(CCorrievalDoc& doc, int depth, QObject* parent) : QObject(parent), m_doc(doc)
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
    return StoreScore(m_doc, m_doc.PathName());
}

QByteArray UndoHistory::Packed(const QByteArray& bytes) const
{
    // Unchanged since the last step: share its bytes rather than hold a second copy.
    if (bytes == m_current)
        return m_currentPacked;
    return qCompress(bytes, kPackLevel);
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
    const QByteArray before = std::exchange(m_before, {});
    QByteArray after = Snapshot();
    if (after == before)
        return false;
    QByteArray packedBefore = Packed(before);
    m_currentPacked = qCompress(after, kPackLevel);
    m_current = std::move(after);
    m_stack.push(new Step(*this, m_label, std::move(packedBefore), m_currentPacked));
    return true;
}

void UndoHistory::Restore(const QByteArray& packed)
{
    QByteArray bytes = qUncompress(packed);
    auto earlier = ReadScore(bytes, m_doc.PathName());
    emit aboutToRestore();
    m_doc.SwapContent(*earlier);
    // `earlier` now holds the state being left, and takes it down with it.
    earlier.reset();
    m_current = std::move(bytes);
    m_currentPacked = packed;
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
