#include "playback/NullAudioDevice.h"

#include <algorithm>
#include <cassert>

namespace corrieval {

NullAudioDevice::NullAudioDevice(Tap tap) : m_tap(std::move(tap)) {}

NullAudioDevice::~NullAudioDevice()
{
    {
        std::lock_guard lock(m_lock);
        m_quit = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

PlayResult NullAudioDevice::Open(const StreamFormat& format, Client& client)
{
    assert(!m_thread.joinable() && "a device is opened once");
    m_client = &client;
    m_format = format;
    m_bufferBytes = format.BufferBytes();
    m_period = format.NotificationPeriod();
    m_thread = std::thread(&NullAudioDevice::Run, this);
    return PlayOk;
}

void NullAudioDevice::Run()
{
    std::unique_lock lock(m_lock);
    while (!m_quit) {
        if (m_state != State::Playing) {
            m_wake.wait(lock);
            continue;
        }
        if (Clock::now() < m_nextNotify) {
            m_wake.wait_until(lock, m_nextNotify);
            continue;
        }
        // A late wake-up, as a real device's would be, only makes the next fill larger.
        m_nextNotify = std::max(m_nextNotify + m_period, Clock::now());
        lock.unlock();
        {
            std::lock_guard notifying(m_notifying);
            // A Stop or Pause that came in between has the last word.
            if (IsPlaying())
                m_client->OnNotify();
        }
        lock.lock();
    }
}

void NullAudioDevice::Consume(Clock::time_point now)
{
    if (m_state != State::Playing || now <= m_played)
        return;
    const std::uint64_t bytesPerSecond = m_format.BytesPerSecond();
    const auto elapsed = std::chrono::duration_cast<std::chrono::nanoseconds>(now - m_played).count();
    std::uint64_t bytes = static_cast<std::uint64_t>(elapsed) * bytesPerSecond / 1'000'000'000u;
    bytes -= bytes % m_format.BlockAlign();
    if (bytes >= m_queued) {
        // Ran dry: a real output waits for data, so the time without any is not made up later.
        m_queued = 0;
        m_played = now;
        return;
    }
    m_queued -= static_cast<std::uint32_t>(bytes);
    m_played += std::chrono::nanoseconds(bytes * 1'000'000'000u / bytesPerSecond);
}

template <class Change> void NullAudioDevice::Control(Change change)
{
    std::unique_lock notifying(m_notifying, std::defer_lock);
    if (std::this_thread::get_id() != m_thread.get_id())
        notifying.lock();
    {
        std::lock_guard lock(m_lock);
        change(Clock::now());
    }
    m_wake.notify_all();
}

void NullAudioDevice::Play()
{
    Control([this](Clock::time_point now) {
        m_queued = 0;
        m_played = now;
        m_nextNotify = now;
        m_state = State::Playing;
    });
}

void NullAudioDevice::Pause()
{
    Control([this](Clock::time_point now) {
        if (m_state != State::Playing)
            return;
        Consume(now);
        m_state = State::Paused;
    });
}

void NullAudioDevice::Resume()
{
    Control([this](Clock::time_point now) {
        if (m_state != State::Paused)
            return;
        m_played = now;
        m_nextNotify = now + m_period;
        m_state = State::Playing;
    });
}

void NullAudioDevice::Stop()
{
    Control([this](Clock::time_point) {
        m_queued = 0;
        m_state = State::Stopped;
    });
}

bool NullAudioDevice::IsPlaying() const
{
    std::lock_guard lock(m_lock);
    return m_state == State::Playing;
}

std::uint32_t NullAudioDevice::BytesFree()
{
    std::lock_guard lock(m_lock);
    Consume(Clock::now());
    return m_bufferBytes - m_queued;
}

std::uint32_t NullAudioDevice::Write(const std::int16_t* words, std::uint32_t bytes)
{
    {
        std::lock_guard lock(m_lock);
        Consume(Clock::now());
        bytes = std::min(bytes, m_bufferBytes - m_queued);
        bytes -= bytes % m_format.BlockAlign();
        m_queued += bytes;
    }
    if (m_tap)
        m_tap(words, bytes / 2);
    return bytes;
}

} // namespace corrieval
