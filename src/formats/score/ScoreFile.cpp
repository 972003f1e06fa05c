#include "formats/score/ScoreFile.h"

#include "formats/archive/Archive.h"
#include "formats/score/ScoreRecords.h"
#include "model/CorrievalDoc.h"

#include <QFile>
#include <QSaveFile>

namespace corrieval {

FileError::FileError(QString fileName, const QString& reason)
    : std::runtime_error(reason.toStdString()), m_fileName(std::move(fileName))
{
}

std::unique_ptr<CCorrievalDoc> ReadScore(const QByteArray& bytes, const QString& fileName)
{
    auto doc = std::make_unique<CCorrievalDoc>();
    CArchive ar(bytes, ScoreClasses(), fileName, doc.get());
    SerializeDocument(ar, *doc);
    return doc;
}

QByteArray ReadFileBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw FileError(path, file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw FileError(path, file.errorString());
    return bytes;
}

std::unique_ptr<CCorrievalDoc> LoadScore(const QString& path)
{
    const QByteArray bytes = ReadFileBytes(path);
    auto doc = ReadScore(bytes, path);
    doc->SetPathName(path);
    doc->SetModifiedFlag(false);
    return doc;
}

QByteArray StoreScore(CCorrievalDoc& doc, const QString& fileName)
{
    CArchive ar(ScoreClasses(), fileName, &doc);
    SerializeDocument(ar, doc);
    return ar.Bytes();
}

namespace {
void WriteReplacing(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw FileError(path, file.errorString());
}
} // namespace

void SaveScore(CCorrievalDoc& doc, const QString& path)
{
    WriteReplacing(path, StoreScore(doc, path));
    doc.SetModifiedFlag(false);
}

void SavePlayerFile(CCorrievalDoc& doc, const QString& path)
{
    doc.PlayerExport = 1;
    QByteArray bytes;
    try {
        bytes = StoreScore(doc, path);
    } catch (...) {
        doc.PlayerExport = 0;
        throw;
    }
    doc.PlayerExport = 0;
    WriteReplacing(path, bytes);
}

} // namespace corrieval
