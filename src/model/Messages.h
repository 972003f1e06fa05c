#pragma once

#include <QString>

namespace corrieval {

// The kinds of message box the program shows, with their buttons.
enum class MessageKind {
    Plain,    // OK
    Warning,  // warning icon, OK
    OkCancel, // a question with OK and Cancel
    YesNo,    // a question with Yes and No
    // A question with Yes, No and Cancel: the desktop program's question before a modified tune
    // is closed.
    YesNoCancel,
};
enum class MessageAnswer { Ok, Cancel, Yes, No };

// Where messages to the user go: a dialog in the desktop app, standard error in the
// command-line tool, a recording with scripted answers in tests.
class MessageSink {
public:
    virtual ~MessageSink() = default;
    virtual MessageAnswer Show(const QString& text, MessageKind kind) = 0;
};

// Shows the message through the installed sink. Without one the text goes to standard error and
// questions take their cautious answer (Cancel, No).
MessageAnswer ShowMessage(const QString& text, MessageKind kind = MessageKind::Plain);

// The answer that changes nothing: Cancel, No, or OK for a plain message. What a sink gives
// when nobody can answer.
MessageAnswer CautiousAnswer(MessageKind kind);

// Installs a sink for the whole process (null restores the default); returns the previous one.
MessageSink* SetMessageSink(MessageSink* sink);

} // namespace corrieval
