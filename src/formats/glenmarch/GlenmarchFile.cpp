#include "formats/glenmarch/GlenmarchFile.h"

#include "formats/archive/Archive.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "formats/score/ScoreFile.h"
#include "model/Messages.h"

namespace corrieval {

std::unique_ptr<CPipeDoc> ReadGlenmarch(const QByteArray& bytes, const QString& fileName)
{
    auto doc = std::make_unique<CPipeDoc>();
    CArchive ar(bytes, GlenmarchClasses(), fileName, nullptr);
    doc->Serialize(ar);
    return doc;
}

std::unique_ptr<CPipeDoc> LoadGlenmarch(const QString& path)
{
    return ReadGlenmarch(ReadFileBytes(path), path);
}

QByteArray StoreGlenmarch(CPipeDoc& doc, const QString& fileName)
{
    CArchive ar(GlenmarchClasses(), fileName, nullptr);
    doc.Serialize(ar);
    return ar.Bytes();
}

bool ImportIntoActiveView(const std::function<std::unique_ptr<CPipeDoc>()>& read, bool fromText)
{
    std::unique_ptr<CPipeDoc> tune;
    try {
        tune = read();
    } catch (const FileError&) {
        ShowMessage(QStringLiteral("Error opening the file"), MessageKind::OkCancel);
        return false;
    } catch (const ArchiveError& e) {
        ShowMessage(QStringLiteral("%1: %2").arg(e.FileName(), e.Describe()), MessageKind::Warning);
        return false;
    }
    if (tune == nullptr)
        return false;
    ConvertIntoActiveView(std::move(tune), fromText);
    return true;
}

bool ImportGlenmarch(const QString& path)
{
    return ImportIntoActiveView([&path] { return LoadGlenmarch(path); }, false);
}

} // namespace corrieval
