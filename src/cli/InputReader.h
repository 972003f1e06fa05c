#pragma once

#include <QString>
#include <memory>

namespace corrieval {
class CCorrievalDoc;
}

namespace corrieval::cli {

// What convert reads, by the file's extension: scores (".skb"), templates (".skt") and Glenmarch
// tunes (".glm").
bool CanReadInput(const QString& path);
QString ReadableInputs();

// The input as a score: a score or template as it stands, a Glenmarch tune converted into a new
// score. Throws ArchiveError for a damaged file and FileError for one that cannot be read.
std::unique_ptr<CCorrievalDoc> ReadInput(const QString& path);

} // namespace corrieval::cli
