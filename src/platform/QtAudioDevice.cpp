#include "platform/QtAudioDevice.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QMediaDevices>
#include <QTimer>

namespace corrieval::platform {

// What lives on the sink's thread; made and deleted there.
class QtAudioDevice::Output {
public:
    Output(const QAudioDevice& device, const QAudioFormat& format) : Sink(device, format) {}

    QAudioSink Sink;
    QTimer Notifier;
    QIODevice* Io = nullptr; // the sink's input while a play is under way
};

QtAudioDevice::QtAudioDevice()
{
    m_onThread.moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("Sound output"));
}

QtAudioDevice::~QtAudioDevice()
{
    if (m_output != nullptr) {
        OnOutputThread([this] {
            delete m_output;
            m_output = nullptr;
        });
    }
    m_thread.quit();
    m_thread.wait();
}

template <class Work> void QtAudioDevice::OnOutputThread(Work&& work)
{
    if (QThread::currentThread() == &m_thread)
        work();
    else
        QMetaObject::invokeMethod(&m_onThread, std::forward<Work>(work), Qt::BlockingQueuedConnection);
}

PlayResult QtAudioDevice::Open(const StreamFormat& format, Client& client)
{
    // Asked on the opening thread, so that Qt's connection to the server belongs to a thread
    // that lives as long as the program rather than to this device's.
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    if (device.isNull())
        return PlayFailed;
    QAudioFormat wanted;
    wanted.setSampleRate(static_cast<int>(StreamFormat::FramesPerSecond));
    wanted.setChannelCount(static_cast<int>(format.Channels));
    wanted.setSampleFormat(QAudioFormat::Int16);
    if (!device.isFormatSupported(wanted))
        return PlayFailed;

    m_client = &client;
    m_thread.start(QThread::HighPriority);
    PlayResult result = PlayFailed;
    OnOutputThread([&] {
        m_output = new Output(device, wanted);
        QAudioSink& sink = m_output->Sink;
        // Servers grant less than asked (PulseAudio gave 35,280 and 25,580 bytes for 44,100);
        // a quarter of a second still leaves several refills in hand, and no more than the drain
        // of one trip can play out.
        sink.setBufferSize(static_cast<qsizetype>(format.BufferBytes()));
        // A trial start proves that the server takes a stream, and tells what it grants.
        if (sink.start() == nullptr)
            return;
        m_bufferBytes = static_cast<std::uint32_t>(sink.bufferSize());
        sink.stop();

        m_output->Notifier.setTimerType(Qt::PreciseTimer);
        m_output->Notifier.setInterval(
            std::chrono::duration_cast<std::chrono::milliseconds>(format.NotificationPeriod()));
        QObject::connect(&m_output->Notifier, &QTimer::timeout, &m_output->Notifier,
                         [this] { m_client->OnNotify(); });
        QObject::connect(&sink, &QAudioSink::stateChanged, &sink, [this](QAudio::State state) {
            if (state == QAudio::StoppedState && m_playing && m_output->Sink.error() != QAudio::NoError)
                Lost(PlayFailed);
            // The server ran dry while play went on: a gap the listener hears.
            if (state == QAudio::IdleState && m_playing && m_output->Sink.error() == QAudio::UnderrunError)
                ++m_underruns;
        });
        result = PlayOk;
    });
    return result;
}

void QtAudioDevice::Lost(PlayResult result)
{
    m_playing = false;
    m_output->Notifier.stop();
    m_output->Sink.stop();
    m_output->Io = nullptr;
    QMetaObject::invokeMethod(
        &m_home, [client = m_client, result] { client->OnDeviceLost(result); }, Qt::QueuedConnection);
}

void QtAudioDevice::Play()
{
    OnOutputThread([this] {
        Output& output = *m_output;
        m_playing = false;
        output.Notifier.stop();
        output.Sink.stop();
        output.Io = output.Sink.start();
        if (output.Io == nullptr) {
            Lost(PlayFailed);
            return;
        }
        m_playing = true;
        output.Notifier.start();
        // The buffer is all free: this first fill primes it.
        m_client->OnNotify();
    });
}

void QtAudioDevice::Pause()
{
    OnOutputThread([this] {
        if (!m_playing)
            return;
        m_playing = false;
        m_output->Notifier.stop();
        m_output->Sink.suspend();
    });
}

void QtAudioDevice::Resume()
{
    OnOutputThread([this] {
        if (m_output->Sink.state() != QAudio::SuspendedState)
            return;
        m_output->Sink.resume();
        m_playing = true;
        m_output->Notifier.start();
    });
}

void QtAudioDevice::Stop()
{
    if (m_output == nullptr)
        return;
    OnOutputThread([this] {
        m_playing = false;
        m_output->Notifier.stop();
        m_output->Sink.stop();
        m_output->Io = nullptr;
    });
}

std::uint32_t QtAudioDevice::BytesFree()
{
    Q_ASSERT(QThread::currentThread() == &m_thread);
    return m_output->Io != nullptr ? static_cast<std::uint32_t>(m_output->Sink.bytesFree()) : 0;
}

std::uint32_t QtAudioDevice::Write(const std::int16_t* words, std::uint32_t bytes)
{
    Q_ASSERT(QThread::currentThread() == &m_thread);
    if (m_output->Io == nullptr)
        return 0;
    const qint64 written = m_output->Io->write(reinterpret_cast<const char*>(words), bytes);
    return written > 0 ? static_cast<std::uint32_t>(written) : 0;
}

} // namespace corrieval::platform
