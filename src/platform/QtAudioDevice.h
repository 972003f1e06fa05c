#pragma once

#include "playback/AudioDevice.h"

#include <QObject>
#include <QThread>

#include <atomic>

namespace corrieval::platform {

// The user's sound server (PulseAudio or PipeWire) through a QAudioSink in push mode.
//
// The sink lives on a thread of its own, where a timer of about 31 ms asks the stream to write
// up to bytesFree() bytes. Fed from the user-interface thread instead, a 200 ms stall there
// (a repaint, a dialog opening) emptied the buffer and put silence into the tune; on its own
// thread the sink did not run dry even with every core busy.
//
// No sound server shows as a null default output, and Open fails. A server that goes away during
// play stops the sink with a fatal error; the device then stops itself and tells its client on
// the thread that opened it, which needs that thread's event loop to be running.
//
// Needs a QCoreApplication.
class QtAudioDevice final : public AudioDevice {
public:
    QtAudioDevice();
    QtAudioDevice(const QtAudioDevice&) = delete;
    QtAudioDevice& operator=(const QtAudioDevice&) = delete;
    ~QtAudioDevice() override;

    PlayResult Open(const StreamFormat& format, Client& client) override;
    std::uint32_t BufferBytes() const override { return m_bufferBytes; }

    void Play() override;
    void Pause() override;
    void Resume() override;
    void Stop() override;
    bool IsPlaying() const override { return m_playing; }

    std::uint32_t BytesFree() override;
    std::uint32_t Write(const std::int16_t* words, std::uint32_t bytes) override;

    // Times the sound server ran out of sound during play, since the device was opened.
    std::uint32_t Underruns() const { return m_underruns; }

private:
    class Output;

    // Runs `work` on the sink's thread and waits for it; directly when already there.
    template <class Work> void OnOutputThread(Work&& work);
    // On the sink's thread: the sink has failed; stop, and tell the client at home.
    void Lost(PlayResult result);

    QThread m_thread;
    // Lives on m_thread: work for the sink's thread is sent through it.
    QObject m_onThread;
    // Lives on the opening thread: device faults are delivered through it.
    QObject m_home;
    // Created by Open, lives on m_thread, deleted on it when the thread ends.
    Output* m_output = nullptr;
    Client* m_client = nullptr;
    std::uint32_t m_bufferBytes = 0;
    // Written on the sink's thread, read anywhere.
    std::atomic<bool> m_playing{false};
    std::atomic<std::uint32_t> m_underruns{0};
};

} // namespace corrieval::platform
