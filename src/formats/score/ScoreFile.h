#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <stdexcept>

namespace corrieval {

class CCorrievalDoc;

// A file that could not be opened, read or written, with the system's reason.
class FileError : public std::runtime_error {
public:
    FileError(QString fileName, const QString& reason);
    const QString& FileName() const { return m_fileName; }
    QString Reason() const { return QString::fromStdString(what()); }

private:
    QString m_fileName;
};

// The whole content of a file, or FileError with the system's reason.
QByteArray ReadFileBytes(const QString& path);

// Reads a score (".skb") or template (".skt") into a new document. Throws ArchiveError for a
// damaged stream and FileError when the file cannot be read.
std::unique_ptr<CCorrievalDoc> LoadScore(const QString& path);
std::unique_ptr<CCorrievalDoc> ReadScore(const QByteArray& bytes, const QString& fileName);

// Writes the document as a score file. The bytes go to a temporary file in the same folder that
// then replaces the old file, so a failed save leaves the old file as it was.
void SaveScore(CCorrievalDoc& doc, const QString& path);
// The same for a player file (".skp"), which scrambles a few records so that it is not a score.
void SavePlayerFile(CCorrievalDoc& doc, const QString& path);
QByteArray StoreScore(CCorrievalDoc& doc, const QString& fileName);

} // namespace corrieval
