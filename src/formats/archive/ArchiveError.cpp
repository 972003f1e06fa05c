#include "formats/archive/ArchiveError.h"

#include <utility>

namespace corrieval {

ArchiveError::ArchiveError(ArchiveCause cause, QString fileName, std::uint64_t offset, const QString& detail)
    : std::runtime_error((CauseText(cause) + (detail.isEmpty() ? QString() : QLatin1Char(' ') + detail))
                             .toStdString()),
      m_cause(cause), m_fileName(std::move(fileName)), m_offset(offset), m_detail(detail)
{
}

QString ArchiveError::CauseText(ArchiveCause cause)
{
    switch (cause) {
    case ArchiveCause::EndOfFile: return QStringLiteral("end of file");
    case ArchiveCause::BadIndex: return QStringLiteral("bad index");
    case ArchiveCause::BadClass: return QStringLiteral("bad class");
    case ArchiveCause::BadSchema: return QStringLiteral("bad schema");
    case ArchiveCause::WriteToReadOnly: return QStringLiteral("write to a read-only archive");
    case ArchiveCause::ReadFromStore: return QStringLiteral("read from a storing archive");
    }
    return QStringLiteral("archive failure");
}

QString ArchiveError::Describe() const
{
    QString text = CauseText(m_cause);
    if (!m_detail.isEmpty())
        text += QLatin1Char(' ') + m_detail;
    return text + QStringLiteral(" at byte ") + QString::number(m_offset);
}

} // namespace corrieval
