#include "formats/score/PlayerExport.h"

#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"

namespace corrieval {

namespace {
const QString kPlayerExtension = QStringLiteral(".skp");
}

QString PlayerFilePath(const QString& chosen)
{
    return chosen.endsWith(kPlayerExtension, Qt::CaseSensitive) ? chosen : chosen + kPlayerExtension;
}

bool ExportPlayerFile(CCorrievalDoc& doc, const QString& chosen)
{
    doc.PlayerExport = 0;
    try {
        SavePlayerFile(doc, PlayerFilePath(chosen));
    } catch (const FileError&) {
        ShowMessage(QStringLiteral("Error creating the file"), MessageKind::OkCancel);
        return false;
    }
    return true;
}

} // namespace corrieval
