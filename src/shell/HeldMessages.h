#pragma once

#include "model/Messages.h"

#include <utility>
#include <vector>

namespace corrieval {

// Keeps the messages shown while it lives instead of showing them, answering each cautiously;
// the holder shows them later, or never.
class HeldMessages final : public MessageSink {
public:
    using Held = std::vector<std::pair<QString, MessageKind>>;

    HeldMessages() : m_previous(SetMessageSink(this)) {}
    ~HeldMessages() override { SetMessageSink(m_previous); }
    HeldMessages(const HeldMessages&) = delete;
    HeldMessages& operator=(const HeldMessages&) = delete;

    MessageAnswer Show(const QString& text, MessageKind kind) override
    {
        m_held.emplace_back(text, kind);
        return CautiousAnswer(kind);
    }
    Held Take() { return std::move(m_held); }

private:
    MessageSink* m_previous;
    Held m_held;
};

} // namespace corrieval
