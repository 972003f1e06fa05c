#pragma once

#include "editor/CommandTarget.h"
#include "playback/AudioDevice.h"
#include "playback/PlayStopwatch.h"
#include "playback/PullSource.h"
#include "playback/SampleBank.h"
#include "playback/SampleMixer.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace corrieval {

class CAudioStream;
class CCorrievalDoc;
class CScoObj;
class CTuneSequence;

// What play takes from the active tune window: its document, its play sequence and the
// selection that cuts what is played. All null when no tune window is active.
struct PlayBinding {
    CCorrievalDoc* Document = nullptr;
    CTuneSequence* Sequence = nullptr;
    const std::vector<CScoObj*>* Selection = nullptr;
};

// The Play category's commands: Rewind, Stop, Play, Pause, Loop, the tempo, the instrument and
// the part, and WAV export. It owns the mixer and the sound stream for the whole run, and the
// stopwatch that the highlight follows.
//
// States: stopped, playing, paused. Play starts from the top (rebuilding the play lists from the
// score, so edits and the selection count) or resumes a pause; Stop, Rewind and Pause act only
// while the buffer plays. Tempo, instrument, part and loop can be changed only when play could
// start, so they act on the next start. A looped tune starts again at the first idle update
// after its stream has drained.
//
// Everything here runs on the user-interface thread.
class CTransport : public QObject, public CommandTarget {
    Q_OBJECT

public:
    using DeviceFactory = std::function<std::unique_ptr<AudioDevice>()>;
    static constexpr int InstrumentCount = 6;

    // `samplesFolder` holds the instruments' recordings; `listener` hears the highlight.
    CTransport(DeviceFactory devices, QString samplesFolder, HighlightListener& listener,
               QObject* parent = nullptr);
    ~CTransport() override;

    // The active tune window, asked for whenever play needs to (re)bind.
    void SetBindingProvider(std::function<PlayBinding()> provider) { m_binding = std::move(provider); }

    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;

    void Play();
    void Stop();
    void Pause();
    void Rewind();
    void ToggleLoop();

    // The stream is ready, the buffer silent, the recordings loaded, and the bound tune has music.
    bool CanPlay();
    // The same without the stream: what a WAV export needs.
    bool CanRender();
    bool IsPlaying() const;
    // The sound output is up, silent, and bound to a tune's play lists: a tune may be locked.
    bool CanLock();
    bool IsPaused() const { return m_stopwatch.IsPaused(); }
    bool LoopSet() const { return m_loopSet; }

    // Another tune window became active: play ends, and play binds to the new one.
    void ViewActivated();
    // A tune window goes away: the mixer lets go of its sequence and selection first.
    void ViewClosing(const CTuneSequence* sequence);

    // The tempo typed into the box. A tempo outside 20 to 200 is refused with a message and the
    // box shows the document's tempo again. Returns the tempo now in force.
    int TempoEntered(const QString& text);
    // The tempo slider moved.
    void TempoChosen(int bpm);
    // 0 to 5: Bagpipes, Chanter, Smallpipes in Bb, A, C and D.
    void ChooseInstrument(int index);
    int Instrument() const { return m_instrument; }
    static const QStringList& InstrumentNames();
    // -1 for every part, 0 to 3 for one part alone.
    void ChoosePart(int part);

    // Renders the bound tune into a WAV file at the play settings; true when written. Problems
    // are told to the user.
    bool ExportWav(const QString& path);

    // The end of play's stopping reset arrived (posted from whichever thread ran it).
    void FollowingStopped() { m_playTimer.stop(); }
    bool Following() const { return m_playTimer.isActive(); }
    int FollowPeriodMs() const { return m_playTimer.interval(); }
    // The stave position last scrolled to while following, and its update.
    int LastFollowY() const { return m_lastFollowY; }
    void SetLastFollowY(int y) { m_lastFollowY = y; }

    CSampleMixer& Mixer() { return m_mixer; }

signals:
    // The tempo to show in the box and on the slider.
    void TempoShown(int bpm);
    // The instrument now loaded, for the status bar's label; `problem` is empty when its nine
    // recordings loaded.
    void InstrumentShown(int index, const QString& problem);

private:
    // Points the mixer at the active tune when it has none with music.
    void Rebind();
    void BindTo(const PlayBinding& binding);
    void MakeStream();
    void OnPlayTimer();
    void SetDocumentTempo(int bpm);
    CCorrievalDoc* BoundDocument() const;

    DeviceFactory m_devices;
    QString m_samplesFolder;
    std::function<PlayBinding()> m_binding;

    CSampleMixer m_mixer;
    MixerSource m_source{m_mixer};
    std::unique_ptr<CAudioStream> m_stream;
    // No sound could be made once: the message has been shown and is not shown again.
    bool m_engineFailed = false;
    CPlayStopwatch m_stopwatch;
    QTimer m_playTimer; // timer 3772: follows the play position

    bool m_loopSet = false;
    bool m_wasPlaying = false;
    int m_lastFollowY = 0;
    int m_selectedPart = -1;
    int m_instrument = 0;
};

} // namespace corrieval
