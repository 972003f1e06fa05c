#pragma once

#include "playback/PlayResult.h"
#include "playback/SampleBank.h"

#include <cstdint>
#include <mutex>
#include <vector>

namespace corrieval {

class CScoObj;
class CTuneSequence;

// Mixes the play lists of up to four parts into 16-bit words from the sample bank. It is a pull
// source: the audio stream's worker, WAV export and tests all ask it for words the same way.
//
// Threads: Pull and Reset run on the audio worker (or the exporting thread) under the lock;
// UpdateHighlight runs on the user-interface thread. Sequence, selection and part are set only
// while nothing plays.
class CSampleMixer {
public:
    CSampleMixer();
    ~CSampleMixer();
    CSampleMixer(const CSampleMixer&) = delete;
    CSampleMixer& operator=(const CSampleMixer&) = delete;

    // Fills `count` words; on return `count` holds the words produced. PlayFailed when the tune
    // has finished, also from the pull that discovers the end.
    PlayResult Pull(std::int16_t* destination, std::uint32_t& count);
    // With `stopping` false, rebuilds the sequence and starts again from the beginning.
    void Reset(bool stopping);
    // The tick rate at the present tempo and time signature; 0 without a time signature.
    double TicksPerSecond() const;
    // Marks the notes sounding at `elapsedMs` of play, for the screen to follow.
    void UpdateHighlight(double elapsedMs);

    void SetTempo(std::int32_t bpm);
    void SetLoop(bool loop);
    void SetSequence(CTuneSequence* sequence);
    // The view's selection in the order it was made; null or empty plays everything.
    void SetSelection(const std::vector<CScoObj*>* selection);
    // 0 plays every part, 1 to 4 one part.
    void SetPart(std::int32_t part);
    // What the last instrument load left in the bank.
    void SetInstrument(const InstrumentLoad& load);
    std::uint32_t Channels() const;
    bool Loaded() const;

private:
    mutable std::mutex m_lock;
};

} // namespace corrieval
