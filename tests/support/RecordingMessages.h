#pragma once

#include "model/Messages.h"

#include <QString>
#include <QStringList>

namespace corrieval::testing {

// Records every message shown while it lives and answers questions with `Answer`.
class RecordingMessages : public MessageSink {
public:
    RecordingMessages() : m_previous(SetMessageSink(this)) {}
    ~RecordingMessages() override { SetMessageSink(m_previous); }

    MessageAnswer Show(const QString& text, MessageKind kind) override
    {
        Texts << text;
        LastKind = kind;
        return Answer;
    }

    QStringList Texts;
    MessageKind LastKind = MessageKind::Plain;
    MessageAnswer Answer = MessageAnswer::Ok;

private:
    MessageSink* m_previous;
};

} // namespace corrieval::testing
