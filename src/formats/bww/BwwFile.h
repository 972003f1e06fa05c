#pragma once

#include "formats/bww/BwwProblems.h"

#include <QByteArray>
#include <QString>
#include <memory>

namespace corrieval {

class CPipeDoc;

// Reads a Bagpiper Music Writer tune (".bww", or ".bmw" with its positional header) into the
// older document model, from which ConvertPipeDoc (with fromText set) makes a score. Problems are
// shown as they are met and kept in `log` with the words that were passed over; the result is
// null when the file was refused or had an error.
std::unique_ptr<CPipeDoc> ReadBww(const QByteArray& bytes, bww::ImportLog& log);
// The same from a file; throws FileError when it cannot be read.
std::unique_ptr<CPipeDoc> LoadBww(const QString& path, bww::ImportLog& log);

// The BWW and BMW import command, as ImportIntoActiveView: a refused tune has shown its problems
// and adds nothing.
bool ImportBww(const QString& path);

} // namespace corrieval
