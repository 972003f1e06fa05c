#pragma once

#include <QString>

namespace corrieval {

class CCorrievalDoc;

// The filter of the save dialog that asks where a player file goes.
inline constexpr const char* PlayerFileFilter = "Corrieval Player files (*.skp)|*.skp||";

// The path a player file is written to: the chosen one with ".skp" added, unless it ends so
// already; the test is on the exact characters, so "tune.SKP" becomes "tune.SKP.skp".
QString PlayerFilePath(const QString& chosen);

// The "SKP" export once the user has chosen a path: writes the score as a player file at
// PlayerFilePath(chosen). A file that cannot be created gives "Error creating the file" and
// false. The document's modified flag and path stay as they were, and it is left to write
// normal score files again.
bool ExportPlayerFile(CCorrievalDoc& doc, const QString& chosen);

} // namespace corrieval
