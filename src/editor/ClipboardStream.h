#pragma once

#include "model/Object.h"
#include "model/ScoObj.h"

#include <QByteArray>
#include <QString>
#include <memory>
#include <vector>

namespace corrieval {

// The MIME type under which the clipboard carries score objects between views and programs.
inline constexpr const char* ScoreMimeType = "application/x-corrieval";

// The list that travels on the clipboard: one object of the score file's stream holding a count
// and the objects, each in full as the score file writes it. It owns what it holds.
class CObList : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    std::vector<std::unique_ptr<CScoObj>> Items;
};

// The list as the bytes of one archive stream.
QByteArray EncodeClipboard(const CObList& list);

// The list read back from the clipboard's bytes, which come from outside and are checked like a
// file: a damaged or hostile block, or one whose object is not a list, throws ArchiveError and
// leaves nothing behind. A null object reads as an empty list.
std::unique_ptr<CObList> DecodeClipboard(const QByteArray& bytes);

} // namespace corrieval
