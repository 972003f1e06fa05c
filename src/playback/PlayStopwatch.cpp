#include "playback/PlayStopwatch.h"

namespace corrieval {

namespace {
double Milliseconds(CPlayStopwatch::Clock::duration d)
{
    return std::chrono::duration<double, std::milli>(d).count();
}
} // namespace

void CPlayStopwatch::Start(Clock::time_point now)
{
    m_start = now;
    m_pausedMs = 0;
    m_started = true;
    m_paused = false;
}

void CPlayStopwatch::Pause(Clock::time_point now)
{
    if (m_paused)
        return;
    m_paused = true;
    m_pausedAt = now;
}

void CPlayStopwatch::Resume(Clock::time_point now)
{
    if (!m_paused)
        return;
    m_pausedMs += Milliseconds(now - m_pausedAt);
    m_paused = false;
}

double CPlayStopwatch::ElapsedMs(Clock::time_point now)
{
    if (!m_started)
        Start(now);
    // While paused the clock stands at the moment of the pause.
    const Clock::time_point reading = m_paused ? m_pausedAt : now;
    return Milliseconds(reading - m_start) - m_pausedMs;
}

} // namespace corrieval
