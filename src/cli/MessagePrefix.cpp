#include "cli/MessagePrefix.h"

#include <QRegularExpression>
#include <QTextStream>

namespace corrieval::cli {

PrefixedMessages::PrefixedMessages(QString file) : m_file(std::move(file)), m_previous(SetMessageSink(this))
{
}

PrefixedMessages::~PrefixedMessages()
{
    SetMessageSink(m_previous);
}

MessageAnswer PrefixedMessages::Show(const QString& text, MessageKind kind)
{
    // Flushed at once, so that a message keeps its place among the tool's own lines.
    QTextStream(stderr) << m_file << ": " << OneLine(text) << Qt::endl;
    return CautiousAnswer(kind);
}

QString PrefixedMessages::OneLine(const QString& text)
{
    // The import's errors read "... misMatch \n tokenval = 5", a layout for a dialog.
    static const QRegularExpression lineBreak(QStringLiteral("\\s*[\\r\\n]\\s*"));
    return QString(text).replace(lineBreak, QStringLiteral(" ")).trimmed();
}

} // namespace corrieval::cli
