#pragma once

#include <vector>

class QWidget;

namespace corrieval {

class CBarEx;
class CImageArea;
class CScoObj;
class CStaveArea;
class CTextArea;

// The property dialogs that "Properties" opens, one per kind of item selected. Each shows the
// item's settings and applies them on OK, returning true; false when the piper cancelled or no
// dialog exists for that kind yet. Tests put a stand-in in place of the program's dialogs.
class PropertyDialogs {
public:
    virtual ~PropertyDialogs() = default;

    // `area` is null when more than the area is selected.
    virtual bool EditStaveArea(CStaveArea* area, QWidget* parent) = 0;
    // The text's font; `area` is null when more than the area is selected.
    virtual bool EditTextArea(CTextArea* area, QWidget* parent) = 0;
    virtual bool EditImageArea(CImageArea& area, QWidget* parent) = 0;
    virtual bool EditBar(CBarEx& bar, QWidget* parent) = 0;
    // Notes, beamed groups and movements, as selected.
    virtual bool EditNotes(const std::vector<CScoObj*>& selection, QWidget* parent) = 0;
};

// The dialogs in force: the program's own unless replaced.
PropertyDialogs& CurrentPropertyDialogs();
// Replaces the dialogs for the whole process (null restores the program's); returns the previous
// replacement, or null.
PropertyDialogs* SetPropertyDialogs(PropertyDialogs* dialogs);

} // namespace corrieval
