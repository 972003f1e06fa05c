#pragma once

#include "playback/PlayResult.h"

#include <chrono>
#include <cstdint>

namespace corrieval {

// The stream that the player keeps fed: 16-bit PCM at 44,100 frames a second with the channel
// count of the recordings, a quarter of a second deep, refilled at each eighth of a trip.
struct StreamFormat {
    static constexpr std::uint32_t FramesPerSecond = 44100;
    static constexpr std::uint32_t NotificationsPerTrip = 8;

    std::uint32_t Channels = 2;

    std::uint32_t BlockAlign() const { return Channels * 2; }
    std::uint32_t BytesPerSecond() const { return BlockAlign() * FramesPerSecond; }
    // A quarter of a second: 44,100 bytes for stereo, 22,050 for mono.
    std::uint32_t BufferBytes() const { return BytesPerSecond() / 4; }
    // The play time of an eighth of the buffer, about 31 ms.
    std::chrono::nanoseconds NotificationPeriod() const
    {
        const std::uint64_t bytes = BufferBytes() / NotificationsPerTrip;
        return std::chrono::nanoseconds(bytes * 1'000'000'000u / BytesPerSecond());
    }
};

// A sound output that the stream feeds by pushing words into its buffer.
//
// Threads: the device runs a thread of its own, which is the stream's worker. On it the device
// calls its client's OnNotify once when a play starts (the whole buffer is then free, so that
// fill primes it) and then about every eighth of a trip while playing. BytesFree and Write are
// called only from inside OnNotify. Play, Pause, Resume, Stop and IsPlaying may be called from
// any thread, OnNotify included; called from another thread, Pause and Stop return only when a
// notification under way has finished, so that afterwards no fill is running.
class AudioDevice {
public:
    class Client {
    public:
        // On the device's thread: time to fill the buffer.
        virtual void OnNotify() = 0;
        // On the thread that opened the device: the output has gone (the sound server stopped, or
        // would not take a new play). The device has stopped itself.
        virtual void OnDeviceLost(PlayResult result) = 0;

    protected:
        ~Client() = default;
    };

    virtual ~AudioDevice() = default;

    // Makes the output ready without sounding it; PlayOk, or the failure to report. The client
    // is called until the device is destroyed.
    virtual PlayResult Open(const StreamFormat& format, Client& client) = 0;
    // The buffer granted, in bytes: sound servers may give less than a quarter of a second.
    virtual std::uint32_t BufferBytes() const = 0;

    // Begins a play with an empty buffer; the first notification follows at once.
    virtual void Play() = 0;
    // Halts the output, keeping what is buffered for Resume.
    virtual void Pause() = 0;
    // Sounds again what Pause kept; nothing when the device is not paused.
    virtual void Resume() = 0;
    // Halts the output and drops what is buffered.
    virtual void Stop() = 0;
    // The output is sounding (or waiting for data): not stopped, not paused.
    virtual bool IsPlaying() const = 0;

    // Bytes that the buffer can take now.
    virtual std::uint32_t BytesFree() = 0;
    // Appends whole frames to the buffer; returns the bytes taken.
    virtual std::uint32_t Write(const std::int16_t* words, std::uint32_t bytes) = 0;
};

} // namespace corrieval
