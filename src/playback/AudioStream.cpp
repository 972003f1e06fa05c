#include "playback/AudioStream.h"

#include "model/Messages.h"
#include "playback/PullSource.h"

#include <algorithm>

namespace corrieval {

CAudioStream::CAudioStream(std::unique_ptr<AudioDevice> device, PullSource& source)
    : m_device(std::move(device)), m_source(source)
{
    m_format.Channels = source.Channels();
    // Without samples there is no format to ask for; play stays disabled by the missing samples.
    if (m_format.Channels == 0)
        return;
    if (const PlayResult result = m_device->Open(m_format, *this); !Succeeded(result)) {
        ShowMessage(EngineMessage(result), MessageKind::Warning);
        return;
    }
    m_block.resize(m_device->BufferBytes() / 2);
    m_initialised = true;
}

CAudioStream::~CAudioStream()
{
    Stop();
    m_running = false;
    // Ends the device's thread, so no notification can reach this object any more.
    m_device.reset();
}

QString CAudioStream::EngineMessage(PlayResult result)
{
    // The "0x" before a signed decimal number is what users have always been shown.
    return QStringLiteral("The audio engine could not be initialised.\n\nError code: 0x%1").arg(result);
}

void CAudioStream::Start()
{
    if (!m_initialised || !m_running)
        return;
    if (m_paused.exchange(false)) {
        m_device->Resume();
        return;
    }
    // Once stopped, the device runs no notification, so the drain state is this thread's to set.
    m_device->Stop();
    m_drainLeft = 0;
    m_shortFills = 0;
    m_source.Reset(false);
    m_device->Play();
}

void CAudioStream::Stop()
{
    if (!m_running)
        return;
    m_paused = false;
    if (m_initialised)
        m_device->Stop();
    m_source.Reset(true);
}

void CAudioStream::TogglePause()
{
    if (!m_initialised || !m_running)
        return;
    const bool pause = !m_paused;
    m_paused = pause;
    if (pause)
        m_device->Pause();
    else
        m_device->Resume();
}

bool CAudioStream::IsPlaying() const
{
    return m_initialised && m_device->IsPlaying();
}

PlayResult CAudioStream::Fill()
{
    if (m_interlock.exchange(1) == 1) {
        m_lastProblem = "No interlock";
        return PlayFailed;
    }
    std::uint32_t bytes = std::min<std::uint32_t>(m_device->BytesFree(), m_block.size() * 2);
    bytes -= bytes % m_format.BlockAlign();
    // Nothing played since the last fill is not a failure: there is simply nothing to do.
    PlayResult result = PlayOk;
    if (bytes > 0) {
        std::uint32_t count = bytes / 2;
        result = m_source.Pull(m_block.data(), count);
        if (count != bytes / 2)
            ++m_shortFills;
        if (!Succeeded(result))
            m_lastProblem = "Pull failed";
        // All of it goes out even when the pull came up short: a finished source gives silence,
        // which is what the drain is to play.
        if (m_device->Write(m_block.data(), bytes) != bytes) {
            m_lastProblem = "Could not write to the device";
            result = PlayFailed;
        }
    }
    m_interlock.exchange(0);
    return result;
}

void CAudioStream::OnNotify()
{
    if (!m_running)
        return;
    if (m_drainLeft == 0) {
        if (!Succeeded(Fill()))
            m_drainLeft = StreamFormat::NotificationsPerTrip;
        return;
    }
    Fill();
    if (--m_drainLeft > 0 || !m_running)
        return;
    m_paused = false;
    m_device->Stop();
    m_source.Reset(true);
}

void CAudioStream::OnDeviceLost(PlayResult result)
{
    // Like a device that never opened: play stays off until a new stream is made.
    m_initialised = false;
    m_paused = false;
    m_source.Reset(true);
    ShowMessage(EngineMessage(result), MessageKind::Warning);
}

} // namespace corrieval
