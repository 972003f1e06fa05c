#pragma once

#include <QString>

class QPlainTextEdit;

namespace corrieval {

class CCorrievalView;
class CScoObj;
class CTextArea;

// The box a text area is edited in while it is the view's one selected item, in an unlocked tune.
// It lies over the area's content box in the area's font at the view's zoom, in its colour and
// alignment, and has the keyboard: letters typed there are text, never the view's commands.
//
// The text stays in the area, which the box writes through to as the piper types, so that saving
// or printing meanwhile takes what is on the screen. The typing becomes one undo step when the
// box gives the text back: when the area leaves the selection, before any command of the view
// runs, so that Undo undoes the typing first, and before the tune is saved, so that the saved
// state holds it.
class TextAreaEditor {
public:
    explicit TextAreaEditor(CCorrievalView& view);
    ~TextAreaEditor();
    TextAreaEditor(const TextAreaEditor&) = delete;
    TextAreaEditor& operator=(const TextAreaEditor&) = delete;

    // Opens over the selection's single text area, or closes when the selection holds none.
    void FollowSelection();
    // Keeps the box over its area, in its font, colour and alignment, after a scroll, a zoom, a
    // new layout or a command; closes it when the tune has been locked.
    void FollowView();
    // Makes the typing so far an undo step of its own; the box stays open.
    void Commit();
    // Closes without a step: the score is about to be replaced, area and all.
    void Forget();

    // The area being edited, or null.
    CTextArea* Area() const { return m_area; }
    bool Edits(const CScoObj& object) const;
    // The box, shown or not.
    QPlainTextEdit& Box() const { return *m_box; }

private:
    void Open(CTextArea& area);
    void Close();
    void Typed();
    bool Editable() const;

    CCorrievalView& m_view;
    QPlainTextEdit* m_box; // owned; a child of the view's viewport
    CTextArea* m_area = nullptr;
    QString m_committed; // the area's text as the last undo step left it
};

} // namespace corrieval
