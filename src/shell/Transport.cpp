#include "shell/Transport.h"

#include "editor/CommandIds.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "playback/AudioStream.h"
#include "playback/TuneSequence.h"
#include "playback/WavExport.h"
#include "shell/HeldMessages.h"

#include <cmath>

namespace corrieval {

namespace {

constexpr int MinTempo = 20;
constexpr int MaxTempo = 200;

} // namespace

CTransport::CTransport(DeviceFactory devices, QString samplesFolder, HighlightListener& listener, QObject* parent)
    : QObject(parent), m_devices(std::move(devices)), m_samplesFolder(std::move(samplesFolder))
{
    m_playTimer.setObjectName(QStringLiteral("3772"));
    connect(&m_playTimer, &QTimer::timeout, this, &CTransport::OnPlayTimer);
    m_mixer.SetHighlightListener(&listener);
}

CTransport::~CTransport()
{
    // The stream's worker pulls from the mixer: it goes first.
    m_stream.reset();
    m_mixer.SetHighlightListener(nullptr);
}

const QStringList& CTransport::InstrumentNames()
{
    static const QStringList names{QStringLiteral("Bagpipes"),      QStringLiteral("Chanter"),
                                   QStringLiteral("Smallpipes Bb"), QStringLiteral("Smallpipes A"),
                                   QStringLiteral("Smallpipes C"),  QStringLiteral("Smallpipes D")};
    return names;
}

void CTransport::MakeStream()
{
    m_stream.reset();
    if (m_engineFailed) {
        // A sound engine that failed once is not reported again at each change of instrument.
        const HeldMessages quiet;
        m_stream = std::make_unique<CAudioStream>(m_devices(), m_source);
    } else {
        m_stream = std::make_unique<CAudioStream>(m_devices(), m_source);
        // A stream over loaded recordings that is not ready could not reach the sound server, and
        // has said so.
        m_engineFailed = m_mixer.Loaded() && !m_stream->Initialised();
    }
}

void CTransport::ChooseInstrument(int index)
{
    if (index < 0 || index >= InstrumentCount)
        return;
    Stop();
    m_stream.reset();
    m_instrument = index;
    const InstrumentLoad load = LoadInstrument(static_cast<corrieval::Instrument>(index), m_samplesFolder);
    m_mixer.SetInstrument(load);
    MakeStream();
    emit InstrumentShown(index, load.Problem);
}

bool CTransport::IsPlaying() const { return m_stream != nullptr && m_stream->IsPlaying(); }

CCorrievalDoc* CTransport::BoundDocument() const
{
    return m_mixer.Sequence() != nullptr ? m_mixer.Sequence()->Document() : nullptr;
}

void CTransport::BindTo(const PlayBinding& binding)
{
    m_mixer.SetSequence(binding.Sequence);
    m_mixer.SetSelection(binding.Selection);
    m_mixer.SetPart(m_selectedPart + 1);
}

void CTransport::Rebind()
{
    CCorrievalDoc* bound = BoundDocument();
    if (m_mixer.Loaded() && bound != nullptr && bound->HasMusic())
        return;
    if (!m_binding)
        return;
    const PlayBinding active = m_binding();
    if (active.Document != nullptr && active.Sequence != nullptr && active.Document->HasMusic())
        BindTo(active);
}

bool CTransport::CanRender()
{
    Rebind();
    const CCorrievalDoc* bound = BoundDocument();
    return !IsPlaying() && m_mixer.Loaded() && bound != nullptr && bound->HasMusic();
}

bool CTransport::CanLock()
{
    Rebind();
    return m_stream != nullptr && m_stream->Initialised() && !IsPlaying() && m_mixer.Sequence() != nullptr;
}

bool CTransport::CanPlay() { return m_stream != nullptr && m_stream->Initialised() && CanRender(); }

void CTransport::Play()
{
    if (!m_stopwatch.IsPaused()) {
        Rebind();
        if (CCorrievalDoc* doc = BoundDocument())
            m_mixer.SetTempo(doc->Tempo);
        m_lastFollowY = 0;
        if (m_stream != nullptr)
            m_stream->Start();
        m_stopwatch.Start();
        // Each poll covers about 20 ticks of the mixer's clock, whatever the tempo.
        const double ticks = m_mixer.TicksPerSecond();
        const int period = static_cast<int>(std::trunc(ticks / 1000.0 * 20.0));
        m_playTimer.start(std::max(period, 1));
        return;
    }
    // A resume: the paused time no longer counts, and the buffer sounds again from where it was.
    m_stopwatch.Resume();
    if (m_stream != nullptr)
        m_stream->TogglePause();
}

void CTransport::Stop()
{
    m_wasPlaying = false;
    if (m_stream != nullptr)
        m_stream->Stop();
    // A stop ends a pause too: the next Play starts from the top.
    m_stopwatch.Start();
    m_playTimer.stop();
}

void CTransport::Rewind()
{
    Stop();
    Play();
}

void CTransport::Pause()
{
    m_stopwatch.Pause();
    if (m_stream != nullptr)
        m_stream->TogglePause();
}

void CTransport::ToggleLoop()
{
    m_loopSet = !m_loopSet;
    m_wasPlaying = false;
    m_mixer.SetLoop(m_loopSet);
}

void CTransport::ViewActivated()
{
    Stop();
    if (!m_binding)
        return;
    const PlayBinding active = m_binding();
    BindTo(active);
    if (active.Document != nullptr)
        emit TempoShown(active.Document->Tempo);
}

void CTransport::ViewClosing(const CTuneSequence* sequence)
{
    if (m_mixer.Sequence() != sequence)
        return;
    Stop();
    m_mixer.SetSequence(nullptr);
    m_mixer.SetSelection(nullptr);
}

void CTransport::SetDocumentTempo(int bpm)
{
    CCorrievalDoc* doc = m_binding ? m_binding().Document : nullptr;
    if (doc != nullptr && doc->Tempo != bpm) {
        doc->Tempo = bpm;
        doc->SetModifiedFlag();
    }
}

int CTransport::TempoEntered(const QString& text)
{
    CCorrievalDoc* doc = m_binding ? m_binding().Document : nullptr;
    const int current = doc != nullptr ? doc->Tempo : 74;
    // "90 bpm" and "90" both mean 90: the digits at the front count.
    const QString digits = text.trimmed().section(QLatin1Char(' '), 0, 0);
    bool ok = false;
    const int bpm = digits.toInt(&ok);
    if (!ok || bpm < MinTempo || bpm > MaxTempo) {
        ShowMessage(QStringLiteral("The tempo must be a whole number of beats per minute from %1 to %2.")
                        .arg(MinTempo)
                        .arg(MaxTempo),
                    MessageKind::Warning);
        emit TempoShown(current);
        return current;
    }
    SetDocumentTempo(bpm);
    emit TempoShown(bpm);
    return bpm;
}

void CTransport::TempoChosen(int bpm)
{
    bpm = std::clamp(bpm, MinTempo, MaxTempo);
    SetDocumentTempo(bpm);
    emit TempoShown(bpm);
}

void CTransport::ChoosePart(int part)
{
    m_selectedPart = part;
    if (CanPlay())
        m_mixer.SetPart(m_selectedPart + 1);
}

bool CTransport::ExportWav(const QString& path)
{
    Stop();
    Rebind();
    if (CCorrievalDoc* doc = BoundDocument())
        m_mixer.SetTempo(doc->Tempo);
    QString problem;
    const PlayResult result = corrieval::ExportWav(m_source, path, problem);
    m_mixer.Reset(true);
    if (result != PlayOk) {
        ShowMessage(QStringLiteral("Could not write %1:\n%2").arg(path, problem), MessageKind::Warning);
        return false;
    }
    return true;
}

void CTransport::OnPlayTimer()
{
    if (!m_stopwatch.IsPaused())
        m_mixer.UpdateHighlight(m_stopwatch.ElapsedMs());
}

bool CTransport::UpdateCommand(int id, CommandState& state)
{
    switch (id) {
    case command::Rewind:
    case command::Stop:
    case command::Pause:
        state.enabled = IsPlaying();
        return true;
    case command::Play: {
        const bool canPlay = CanPlay();
        if (IsPlaying())
            m_wasPlaying = true;
        // A looped tune whose stream has drained starts again here, at the next idle moment.
        if (canPlay && m_wasPlaying && m_mixer.Loop()) {
            state.enabled = false;
            Play();
        } else {
            state.enabled = canPlay;
        }
        return true;
    }
    case command::Loop:
        state.enabled = CanPlay() && !(m_wasPlaying && m_mixer.Loop());
        state.checked = m_loopSet;
        return true;
    case command::SinglePlay:
        state.enabled = CanPlay();
        return true;
    // What a WAV export renders can be set without a sound device too, so a machine without
    // sound still exports at the tempo, part and instrument chosen.
    case command::TempoEdit:
    case command::TempoSlider:
        state.enabled = CanRender() && !(m_wasPlaying && m_mixer.Loop());
        return true;
    case command::PartCombo:
    case command::ExportWav:
        state.enabled = CanRender();
        return true;
    // Another instrument's recordings may be there when this one's are not.
    case command::InstrumentGallery:
        state.enabled = !IsPlaying();
        return true;
    default:
        return false;
    }
}

bool CTransport::RunCommand(int id)
{
    switch (id) {
    case command::Rewind:
        Rewind();
        return true;
    case command::Stop:
        Stop();
        return true;
    case command::Play:
        Play();
        return true;
    case command::Pause:
        Pause();
        return true;
    case command::Loop:
        ToggleLoop();
        return true;
    case command::SinglePlay:
        m_loopSet = false;
        m_mixer.SetLoop(false);
        return true;
    default:
        return false;
    }
}

} // namespace corrieval
