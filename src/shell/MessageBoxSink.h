#pragma once

#include "model/Messages.h"

#include <utility>

namespace corrieval {

// The desktop program's messages: a modal box with the kind's icon and buttons over the active
// window. With CORRIEVAL_MESSAGES_TO_STDERR=1 (for tests and scripted runs) the caption and text
// go to standard error instead and questions take their cautious answer, as without a sink.
class MessageBoxSink : public MessageSink {
public:
    explicit MessageBoxSink(QString caption) : m_caption(std::move(caption)) {}
    MessageAnswer Show(const QString& text, MessageKind kind) override;

private:
    QString m_caption;
};

} // namespace corrieval
