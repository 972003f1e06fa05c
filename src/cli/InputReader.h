#pragma once

#include <QString>
#include <QTextStream>
#include <memory>

namespace corrieval {
class CCorrievalDoc;
}
namespace corrieval::bww {
class ImportLog;
}

namespace corrieval::cli {

// What every command reads, by the file's extension: scores (".skb"), templates (".skt"),
// Glenmarch tunes (".glm") and Bagpiper Music Writer tunes (".bww", ".bmw"). Empty for a file of
// one of those kinds, else the problem as a line for the user.
QString InputProblem(const QString& path);

// The input as a score: a score or template as it stands, an older tune converted into a new
// score. Messages met on the way go to standard error, each on one line after the file's name.
// When `log` is given and a BWW or BMW tune was imported, it receives that import's log (it is
// left alone otherwise). Throws ArchiveError for a damaged file and FileError for one that cannot
// be read or was refused.
std::unique_ptr<CCorrievalDoc> ReadInput(const QString& path, bww::ImportLog* log = nullptr);

// The words an import passed over, "FILE:LINE: passed over WORD" a line, and a last line when
// the log stopped keeping them.
void PrintPassedWords(const QString& file, const bww::ImportLog& log, QTextStream& out);

} // namespace corrieval::cli
