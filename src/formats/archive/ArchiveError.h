#pragma once

#include <QString>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace corrieval {

// Why an archive stream could not go on. The six causes of the score file format.
enum class ArchiveCause { EndOfFile, BadIndex, BadClass, BadSchema, WriteToReadOnly, ReadFromStore };

// A failure of the archive stream: its cause, the file and the byte offset where it arose.
class ArchiveError : public std::runtime_error {
public:
    ArchiveError(ArchiveCause cause, QString fileName, std::uint64_t offset, const QString& detail = {});

    ArchiveCause Cause() const { return m_cause; }
    const QString& FileName() const { return m_fileName; }
    std::uint64_t Offset() const { return m_offset; }
    // "bad class 'CStaveGroop' at byte 12": the cause and where, without the file name.
    QString Describe() const;

    static QString CauseText(ArchiveCause cause);

private:
    ArchiveCause m_cause;
    QString m_fileName;
    std::uint64_t m_offset;
    QString m_detail;
};

} // namespace corrieval
