#pragma once

#include "editor/ClipboardStream.h"

#include <QByteArray>
#include <optional>
#include <vector>

namespace corrieval {

class CScoObj;

// Cut, copy and paste of notes and of whole areas, between views and between running copies. A
// copy keeps clones of the selection in the clipboard list and puts them on the system clipboard
// as one archive stream; a paste reads the system clipboard back into the list and adds clones of
// its items to the target. Notes remember which of the copied bars they came from (numbered from
// 100), so that a paste spreads them over as many bars from the target on.
//
// The view owns the selection and the target; it calls these with both, and marks the document
// modified itself. Cut is Copy followed by the view's own Delete, which refuses tied notes.
class ScoreClipboard {
public:
    static constexpr std::int32_t FirstBarNumber = 100;
    // How far right and down a pasted area lands from where it was copied.
    static constexpr float PasteOffset = 0.2f;

    // The one list of the program, which every view shares.
    static ScoreClipboard& Instance();

    // Cut needs a selection; Copy also one whose head is not an abbreviation area.
    static bool CanCut(const std::vector<CScoObj*>& selection) { return !selection.empty(); }
    static bool CanCopy(const std::vector<CScoObj*>& selection);
    // Fills the list from the selection, in selection order, and writes it to the system
    // clipboard. Notes, groups and movements are copied when everything selected is one; else
    // only the head counts: a text, music or image area is copied, an abbreviation area leaves
    // the system clipboard alone, and anything else writes an empty list. A tied note is copied
    // with a warning that a cut will not take it.
    void Copy(const std::vector<CScoObj*>& selection);

    // Whether the list, as this program's last copy or paste left it, suits the target: notes
    // for a bar, areas for a page.
    bool CanPaste(const CScoObj* target) const;
    // Reads the system clipboard into the list and adds its items to the target: the head of the
    // selection, or the page in view when nothing is selected. Notes go into a bar and the bars
    // after it, areas onto a page offset by PasteOffset. Returns whether anything was added;
    // what does not fit, and clipboard bytes that cannot be read, are reported to the user.
    bool Paste(CScoObj* target);

    const CObList& List() const { return m_list; }
    // Empties the list, as a view that closes does.
    void Clear() { m_list.Items.clear(); }

    // The system clipboard: the bytes under ScoreMimeType, none without a GUI application or when
    // the clipboard holds something else.
    static void WriteSystemClipboard(const QByteArray& bytes);
    static std::optional<QByteArray> ReadSystemClipboard();

private:
    bool PasteList(CScoObj* target);

    CObList m_list;
};

} // namespace corrieval
