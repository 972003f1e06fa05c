#pragma once

#include "playback/NoteSample.h"
#include "playback/PlayResult.h"
#include "playback/SampleBank.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

namespace corrieval {

class CNoteEx;
class CScoObj;
class CTuneSequence;

// Where the mixer tells the screen which note is sounding. The desktop app implements it by
// posting a queued event to its main window; it is called on whichever thread ran the mixer's
// Reset or UpdateHighlight, possibly the audio worker, so an implementation must only queue and
// never touch a window or the score directly.
class HighlightListener {
public:
    virtual ~HighlightListener() = default;
    // The note is to be shown in the play colour (`on`) or in its own colour again.
    virtual void NoteHighlight(CNoteEx* note, bool on) = 0;
    // A stopping reset: the screen is to stop following the play (its follow timer ends).
    virtual void FollowingStopped() = 0;
};

// Mixes the play lists of up to four parts into 16-bit words from the sample bank. It is a pull
// source: the audio stream's worker, WAV export and tests all ask it for words the same way.
// There is no envelope and no clipping: notes follow one another with a plain cut at a word
// boundary, and parts are halved and summed in wrapping 16-bit arithmetic.
//
// Its clock counts 16-bit words at 44,100 a second whatever the channel count; with stereo
// recordings it therefore runs at twice real time, which the tick rate allows for.
//
// Threads: Pull runs on the audio worker or the exporting thread; Reset on the user-interface
// thread at Play and Stop, or on the worker when a tune ends. Both hold the lock throughout, as
// do SetTempo and SetLoop. UpdateHighlight runs on the user-interface thread. Sequence,
// selection, part, instrument and listener are set on the user-interface thread only while
// nothing plays; TicksPerSecond may be called from any thread.
class CSampleMixer {
public:
    // Words of a recording that a note plays before starting it again from its beginning.
    static constexpr std::uint32_t LoopWords = 0x20000;
    // The largest number of records of one part that the mixer looks at in a pull.
    static constexpr std::size_t ActiveLimit = 30;

    CSampleMixer();
    ~CSampleMixer();
    CSampleMixer(const CSampleMixer&) = delete;
    CSampleMixer& operator=(const CSampleMixer&) = delete;

    // Fills `count` words; on return `count` holds the words produced. PlayFailed when the tune
    // has finished, also from the pull that discovers the end (which still gives a full count);
    // once finished, a pull gives `count` 0 and silence. A null destination is PlayBadArgument.
    PlayResult Pull(std::int16_t* destination, std::uint32_t& count);
    // With `stopping` false, rebuilds the sequence and starts again from the beginning; with
    // `stopping` true, only lets go of the notes in play. Either way no note stays highlighted.
    void Reset(bool stopping);
    // The tick rate at the present tempo and time signature; 0 without a time signature.
    double TicksPerSecond() const;
    // Marks the note of the first part sounding at `elapsedMs` of play, for the screen to follow.
    void UpdateHighlight(double elapsedMs);

    void SetTempo(std::int32_t bpm);
    void SetLoop(bool loop);
    // Whether play is to start again when it ends; the transport restarts it.
    bool Loop() const { return m_loop; }
    // Lets go of every record in play. A view that goes away must unset its sequence here first.
    void SetSequence(CTuneSequence* sequence);
    CTuneSequence* Sequence() const { return m_sequence; }
    // The view's selection in the order it was made; null or empty plays everything.
    void SetSelection(const std::vector<CScoObj*>* selection);
    // 0 plays every part, 1 to 4 one part at full level; any other value plays every part.
    // Until it is first called only the first part is heard.
    void SetPart(std::int32_t part);
    // What the last instrument load left in the bank.
    void SetInstrument(const InstrumentLoad& load);
    std::uint32_t Channels() const;
    bool Loaded() const;
    void SetHighlightListener(HighlightListener* listener);

private:
    static constexpr int PartCount = 4;

    // Drops the records that have ended and takes in the next ones, up to ActiveLimit a part;
    // the end of part 0's list is the end of the tune.
    void Refresh();
    void Render(std::int16_t* destination, std::uint32_t count, double rate);
    // Renders one part's active records into its buffer, laid end to end from `cursor`.
    void RenderPart(int part, std::uint32_t count, double rate, std::uint32_t& cursor);
    void Highlight(CNoteSample& record, bool on);
    const CNoteSampleArray* PlayList(int part) const;

    // Guards everything below for a whole pull and a whole reset.
    mutable std::mutex m_lock;
    std::uint32_t m_channels = 0;
    bool m_loaded = false;
    std::uint32_t m_position = 0; // play position in ticks
    std::atomic<std::int32_t> m_tempo{120};
    CTuneSequence* m_sequence = nullptr;
    std::int32_t m_part = 0; // -1 all parts, else the only part heard
    const std::vector<CScoObj*>* m_selection = nullptr;
    HighlightListener* m_listener = nullptr;
    std::array<CNoteSampleArray, PartCount> m_active;
    std::array<std::size_t, PartCount> m_next{};
    std::array<std::vector<std::int16_t>, PartCount> m_partBuffers;
    // One past the index in part 0's play list of the note last highlighted; 0 before the first.
    std::size_t m_highlightIndex = 0;
    std::atomic<bool> m_finished{false};
    std::atomic<bool> m_loop{false};
};

} // namespace corrieval
