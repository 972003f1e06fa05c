#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUndoStack>
#include <utility>

namespace corrieval {

class CCorrievalDoc;

// Undo and redo for one document, by snapshots: before a change the document is stored as the
// bytes of its score file, and undoing reads those bytes back into the same document. Whatever
// the change, an undone tune saves to exactly the bytes it had, and no command needs an inverse
// of its own. A step costs one packed copy of the file in memory (the state after one step is the
// state before the next, and the two share their bytes), and the depth is capped.
class UndoHistory : public QObject {
    Q_OBJECT

public:
    static constexpr int DefaultDepth = 100;

    explicit UndoHistory(CCorrievalDoc& doc, int depth = DefaultDepth, QObject* parent = nullptr);
    ~UndoHistory() override;

    // Before a change: remembers the document as it stands under `label`, the command's name as
    // the undo button shows it ("Delete"). Calls nest; only the outermost pair makes a step.
    void BeginChange(const QString& label);
    // After the change: keeps a step when the document changed. Returns whether it did.
    bool EndChange();
    // BeginChange, `change`, EndChange. A change that fails half way still leaves its step, so
    // that the half can be undone.
    template <class Change> bool Record(const QString& label, Change&& change)
    {
        BeginChange(label);
        try {
            std::forward<Change>(change)();
        } catch (...) {
            EndChange();
            throw;
        }
        return EndChange();
    }

    bool CanUndo() const { return m_stack.canUndo(); }
    bool CanRedo() const { return m_stack.canRedo(); }
    void Undo() { m_stack.undo(); }
    void Redo() { m_stack.redo(); }
    // "Undo Delete", "Redo Delete"; empty when there is nothing to undo or redo.
    QString UndoLabel() const;
    QString RedoLabel() const;
    // The document was saved: undoing or redoing back to this state clears its modified flag.
    void MarkSaved() { m_stack.setClean(); }
    // For the ribbon's quick access buttons and the menu (QUndoStack::createUndoAction).
    QUndoStack& Stack() { return m_stack; }

signals:
    // The score is about to be replaced: every pointer into it (selection, ghost, tie in the
    // making) must be dropped without being followed.
    void aboutToRestore();
    // The score was replaced: repaint, and recompute the page extent.
    void restored();

private:
    class Step;

    QByteArray Snapshot();
    QByteArray Packed(const QByteArray& bytes) const;
    void Restore(const QByteArray& bytes);

    CCorrievalDoc& m_doc;
    QUndoStack m_stack;
    int m_nesting = 0;
    QString m_label;
    QByteArray m_before;
    QByteArray m_current;       // the state the stack stands at
    QByteArray m_currentPacked; // the same as its step holds it
};

} // namespace corrieval
