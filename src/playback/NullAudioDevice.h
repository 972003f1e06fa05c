#pragma once

#include "playback/AudioDevice.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace corrieval {

// A sound output that plays to nowhere at the pace of a real one: its buffer of a quarter of a
// second empties in real time by the steady clock, and it notifies every eighth of a trip, so
// that the stream pulls the same sizes at the same moments as with a sound server. For tests
// and for machines without sound.
class NullAudioDevice final : public AudioDevice {
public:
    // Sees every write, on the device's thread: the words and their count.
    using Tap = std::function<void(const std::int16_t* words, std::uint32_t count)>;

    explicit NullAudioDevice(Tap tap = {});
    NullAudioDevice(const NullAudioDevice&) = delete;
    NullAudioDevice& operator=(const NullAudioDevice&) = delete;
    ~NullAudioDevice() override;

    PlayResult Open(const StreamFormat& format, Client& client) override;
    std::uint32_t BufferBytes() const override { return m_bufferBytes; }

    void Play() override;
    void Pause() override;
    void Resume() override;
    void Stop() override;
    bool IsPlaying() const override;

    std::uint32_t BytesFree() override;
    std::uint32_t Write(const std::int16_t* words, std::uint32_t bytes) override;

private:
    using Clock = std::chrono::steady_clock;
    enum class State { Stopped, Playing, Paused };

    void Run();
    // Empties the buffer by the time gone since the last call; m_lock held.
    void Consume(Clock::time_point now);
    // Runs `change` (given the time now) under the lock once no notification is under way,
    // unless called from inside one.
    template <class Change> void Control(Change change);

    const Tap m_tap;
    // Set by Open on the opening thread before the thread starts; read-only afterwards.
    Client* m_client = nullptr;
    StreamFormat m_format;
    std::uint32_t m_bufferBytes = 0;
    Clock::duration m_period{};

    // Held by the device's thread for the whole of each notification, taken before m_lock.
    std::mutex m_notifying;
    mutable std::mutex m_lock;
    // Everything below is guarded by m_lock.
    std::condition_variable m_wake;
    State m_state = State::Stopped;
    bool m_quit = false;
    std::uint32_t m_queued = 0; // bytes written and not yet played
    Clock::time_point m_played; // the moment up to which m_queued has been played
    Clock::time_point m_nextNotify;

    std::thread m_thread; // last, so that it starts after everything it reads
};

} // namespace corrieval
