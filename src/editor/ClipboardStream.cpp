#include "editor/ClipboardStream.h"

#include "formats/archive/Archive.h"
#include "formats/score/ScoreRecords.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CObList, CObject);

namespace {

const QString kClipboardName = QStringLiteral("clipboard");

void ObListRecord(CArchive& ar, CObject& obj)
{
    auto& list = static_cast<CObList&>(obj);
    if (ar.IsStoring())
        ar.WriteList(list.Items);
    else
        ar.ReadOwnedList(list.Items, CScoObj::Class);
}

// The score file's classes and the list that carries them.
const ArchiveClassTable& ClipboardClasses()
{
    static const ArchiveClassTable table = [] {
        ArchiveClassTable classes = ScoreClasses();
        classes.push_back({&CObList::Class, &ObListRecord});
        return classes;
    }();
    return table;
}

} // namespace

QByteArray EncodeClipboard(const CObList& list)
{
    CArchive ar(ClipboardClasses(), kClipboardName, nullptr);
    ar.WriteObject(&list);
    return ar.Bytes();
}

std::unique_ptr<CObList> DecodeClipboard(const QByteArray& bytes)
{
    CArchive ar(bytes, ClipboardClasses(), kClipboardName, nullptr);
    std::unique_ptr<CObList> list = ar.ReadOwned<CObList>();
    return list != nullptr ? std::move(list) : std::make_unique<CObList>();
}

} // namespace corrieval
