#pragma once

#include <chrono>

namespace corrieval {

// The clock that the eye follows during play: time since the start, less the time spent paused.
// It is kept apart from the audio clock on purpose; the highlight asks the mixer which note
// sounds at this time, so a late buffer never drags the screen along with it.
class CPlayStopwatch {
public:
    using Clock = std::chrono::steady_clock;

    // Starts anew from zero, not paused.
    void Start(Clock::time_point now = Clock::now());
    void Pause(Clock::time_point now = Clock::now());
    // Goes on after a pause; the paused time no longer counts.
    void Resume(Clock::time_point now = Clock::now());
    bool IsPaused() const { return m_paused; }
    // Milliseconds of play so far. Reading a stopwatch that was never started starts it.
    double ElapsedMs(Clock::time_point now = Clock::now());

private:
    Clock::time_point m_start;
    Clock::time_point m_pausedAt;
    double m_pausedMs = 0;
    bool m_started = false;
    bool m_paused = false;
};

} // namespace corrieval
