#pragma once

#include "editor/CommandTarget.h"

#include <unordered_map>

class QKeyEvent;

namespace corrieval {

class CCorrievalView;
class CScoObj;
class CStaveArea;
struct CRuntimeClass;

// The commands that change a tune, on the view's selection: the Insert and Edit categories of the
// ribbon, the clipboard, undo and redo, and the keys a piper corrects a tune with. Every change
// is one step of the view's undo history, named by the command's caption, and a step marks the
// tune modified. A command whose conditions are not met does nothing; a message is the only
// refusal the piper sees.
class EditCommands : public CommandTarget {
public:
    explicit EditCommands(CCorrievalView& view);

    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;
    // The letter keys, Delete and the arrows; false for any other key. The letters and Delete
    // act as their commands do but without asking whether the command is enabled: the command
    // itself decides, and the page question still guards a page.
    bool KeyPressed(const QKeyEvent& event);

private:
    // Every command the view owns, with what it runs.
    using ActionTable = std::unordered_map<int, void (*)(EditCommands&)>;
    static const ActionTable& Actions();

    bool Editable() const;
    bool Enabled(int id) const;
    bool Checked(int id) const;

    void AddPage();
    void PendArea(const CRuntimeClass& kind);
    void ToggleDotCut(int kind);
    void Tie();
    void Group();
    void Ungroup();
    void Delete();
    void InsertBar();
    void InsertRepeat();
    void DeleteRepeat();
    void Properties();
    void AutoOrganise();
    void Restack(bool toFront);
    void Justify(int alignment);
    void ToggleCheckValues();
    void Cut();
    // The object a paste goes to: the head of the selection or, with nothing selected, the
    // first page in view.
    CScoObj* PasteTarget() const;
    void Paste();
    // Drops what the view's edit state points at that a deletion took away.
    void ForgetRemoved();

    // The music area Select All takes its notes from: the one holding the selection or, with
    // nothing selected, the first of the page in view (of the page, when a page is selected);
    // null when there is none.
    CStaveArea* SelectAllArea() const;
    void SelectAllNotes();

    bool MoveSelectedNotes(int steps);
    bool SelectAlongStave(bool forwards);

    CCorrievalView& m_view;
};

} // namespace corrieval
