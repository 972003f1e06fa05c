#pragma once

#include <QString>

class QWidget;

namespace corrieval {

// Where the file dialogs start and what they remember: the folder named "UserSKB" for scores,
// "UserEXP" for exports.
class FolderMemory {
public:
    virtual ~FolderMemory() = default;
    virtual QString Folder(const QString& name) const = 0;
    // Remembers the folder of `path` under `name`, and keeps it for the next run.
    virtual void Remember(const QString& name, const QString& path) = 0;
};

// A file dialog filter written the older way, "Text (*.a)|*.a|More (*.b)|*.b||", as Qt's file
// dialogs take it: "Text (*.a);;More (*.b)". The captions are the user's words and stay.
QString QtFileFilter(const QString& filter);

// Asks where to save `name` (which ends in `suffix`), starting in the remembered folder
// `folderName`; a name typed without an ending gets `suffix`. Remembers the chosen folder. Empty
// when the user cancelled.
QString AskSavePath(QWidget* parent, FolderMemory& folders, const QString& folderName, const QString& caption,
                    const QString& name, const QString& filter, const QString& suffix);

} // namespace corrieval
