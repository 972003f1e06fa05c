#include "model/Messages.h"

#include <cstdio>

namespace corrieval {

namespace {
MessageSink* g_sink = nullptr;
}

MessageAnswer ShowMessage(const QString& text, MessageKind kind)
{
    if (g_sink != nullptr)
        return g_sink->Show(text, kind);
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return CautiousAnswer(kind);
}

MessageAnswer CautiousAnswer(MessageKind kind)
{
    switch (kind) {
    case MessageKind::OkCancel:
    case MessageKind::YesNoCancel: return MessageAnswer::Cancel;
    case MessageKind::YesNo: return MessageAnswer::No;
    default: return MessageAnswer::Ok;
    }
}

MessageSink* SetMessageSink(MessageSink* sink)
{
    MessageSink* previous = g_sink;
    g_sink = sink;
    return previous;
}

} // namespace corrieval
