#pragma once

#include "model/Messages.h"

#include <QString>

namespace corrieval::cli {

// While it lives, every message goes to standard error as one line, "FILE: TEXT", so that a
// batch of conversions says which file each message is about; questions take their cautious
// answer, as with no sink. The sink before it comes back when it goes.
class PrefixedMessages : public MessageSink {
public:
    explicit PrefixedMessages(QString file);
    ~PrefixedMessages() override;
    PrefixedMessages(const PrefixedMessages&) = delete;
    PrefixedMessages& operator=(const PrefixedMessages&) = delete;

    MessageAnswer Show(const QString& text, MessageKind kind) override;

    // The text on one line: each line break, with the spaces around it, becomes one space.
    static QString OneLine(const QString& text);

private:
    QString m_file;
    MessageSink* m_previous;
};

} // namespace corrieval::cli
