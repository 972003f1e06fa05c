#pragma once

#include "playback/AudioDevice.h"
#include "playback/PlayResult.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class PullSource;

// Keeps a sound device fed from a pull source (the mixer): a quarter of a second of buffer,
// refilled at each of eight notifications a trip with whatever the device has played since.
//
// A play: Start resets the source and starts the device, whose first notification primes the
// whole buffer. Each later notification fills the gap. The fill that the source answers with a
// failure (the end of the tune, or a fault) begins the drain: eight more notifications, one
// whole trip, so that the last notes written are heard, each filling with the silence that a
// finished source gives; then the device stops and the source is reset as stopping.
//
// Threads. The user-interface thread constructs and destroys the stream and calls Start, Stop,
// TogglePause and the queries. The device's own thread is the worker: it runs OnNotify, and so
// every fill. Two fills never overlap: the interlock is exchanged around each, and a fill that
// finds it taken fails at once; its data is made up at the next notification, since each fill
// asks the device for the gap. The source's lock is taken inside each pull, so the order is
// always interlock, then source lock. Device faults arrive on the user-interface thread.
class CAudioStream final : private AudioDevice::Client {
public:
    // Opens the device for the source's channel count. When the device cannot be opened the
    // user is told, and the stream stays uninitialised; when the source has no samples nothing
    // is opened and nothing said.
    CAudioStream(std::unique_ptr<AudioDevice> device, PullSource& source);
    CAudioStream(const CAudioStream&) = delete;
    CAudioStream& operator=(const CAudioStream&) = delete;
    ~CAudioStream();

    // The device is open and has not been lost: play can be offered.
    bool Initialised() const { return m_initialised; }
    // Begins a play from the top of the tune, or goes on with a paused one.
    void Start();
    // Ends a play: clears paused, halts the device, resets the source as stopping.
    void Stop();
    // Pauses a play, keeping the source's place and what is buffered, or resumes it.
    void TogglePause();
    bool IsPaused() const { return m_paused; }
    // Sound is being made or drained: false when stopped and when paused.
    bool IsPlaying() const;

    // Writes into the device as much as it can take, pulled from the source; the result is the
    // pull's. Called on the device's thread.
    PlayResult Fill();

    // For diagnosis only: fills whose pull gave fewer words than asked, and the last thing that
    // went wrong in a fill.
    std::uint32_t ShortFills() const { return m_shortFills; }
    const char* LastProblem() const { return m_lastProblem; }

    // The one message shown when no sound can be made.
    static QString EngineMessage(PlayResult result);

private:
    void OnNotify() override;
    void OnDeviceLost(PlayResult result) override;

    // Set at construction; constant afterwards.
    std::unique_ptr<AudioDevice> m_device;
    PullSource& m_source;
    StreamFormat m_format;
    // The user-interface thread's: set at construction, cleared when the device is lost.
    bool m_initialised = false;

    // Cleared on the user-interface thread at destruction; read by the worker.
    std::atomic<bool> m_running{true};
    // Written by the user-interface thread, cleared by the worker at the end of a drain.
    std::atomic<bool> m_paused{false};
    // 1 while a fill is in progress.
    std::atomic<std::int32_t> m_interlock{0};

    // The worker's own, except that Start clears m_drainLeft while the device is stopped and so
    // no notification can run.
    std::vector<std::int16_t> m_block; // one fill's words, sized to the device's buffer
    int m_drainLeft = 0;               // notifications still to drain; 0 while playing on
    std::atomic<std::uint32_t> m_shortFills{0};
    std::atomic<const char*> m_lastProblem{""};
};

} // namespace corrieval
