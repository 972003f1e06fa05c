#include "shell/MessageBoxSink.h"

#include <QApplication>
#include <QMessageBox>

namespace corrieval {

MessageAnswer MessageBoxSink::Show(const QString& text, MessageKind kind)
{
    if (qEnvironmentVariableIntValue("CORRIEVAL_MESSAGES_TO_STDERR") != 0) {
        // The process's default without a sink prints and answers cautiously: borrow it.
        MessageSink* const previous = SetMessageSink(nullptr);
        const MessageAnswer answer = ShowMessage(m_caption + QStringLiteral(": ") + text, kind);
        SetMessageSink(previous);
        return answer;
    }
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(m_caption);
    box.setText(text);
    switch (kind) {
    case MessageKind::Plain:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case MessageKind::Warning:
        box.setIcon(QMessageBox::Warning);
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case MessageKind::OkCancel:
        box.setIcon(QMessageBox::Warning);
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case MessageKind::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case MessageKind::YesNoCancel:
        box.setIcon(QMessageBox::Question);
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Yes);
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Cancel:
        return MessageAnswer::Cancel;
    case QMessageBox::Yes:
        return MessageAnswer::Yes;
    case QMessageBox::No:
        return MessageAnswer::No;
    default:
        return MessageAnswer::Ok;
    }
}

} // namespace corrieval
