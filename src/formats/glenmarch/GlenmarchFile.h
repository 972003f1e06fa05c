#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

namespace corrieval {

class CPipeDoc;

// Reads a Glenmarch tune (".glm"). The file has no header and no magic number: any file of the
// right shape reads, whatever its name. Throws ArchiveError, naming the file and the byte, for a
// damaged stream.
std::unique_ptr<CPipeDoc> ReadGlenmarch(const QByteArray& bytes, const QString& fileName);
// The same from a file; throws FileError when it cannot be read.
std::unique_ptr<CPipeDoc> LoadGlenmarch(const QString& path);

// The bytes of a tune in the Glenmarch form. The program only reads such files; this exists so
// that tests and fixtures can make them through the same records.
QByteArray StoreGlenmarch(CPipeDoc& doc, const QString& fileName);

// The import commands' path: reads a tune in the older model with `read` and converts it into the
// active view's document. Problems are shown to the user and give false: "Error opening the
// file", or the file and what is wrong with it; a reader that gives nothing has shown its own.
// Without an active view the file is read and nothing more happens.
bool ImportIntoActiveView(const std::function<std::unique_ptr<CPipeDoc>()>& read, bool fromText);

// The Glenmarch import command.
bool ImportGlenmarch(const QString& path);

} // namespace corrieval
