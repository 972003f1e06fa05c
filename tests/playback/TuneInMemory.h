#pragma once

#include "fixtures/ScoreFixtures.h"
#include "model/CorrievalDoc.h"
#include "playback/PullSource.h"
#include "playback/SampleBank.h"
#include "playback/SampleMixer.h"
#include "playback/TuneSequence.h"

#include <memory>

namespace corrieval::testing {

// Nine made-up recordings that differ from each other and from word to word, and never hold a
// zero, so that any slip of a word shows: word i of slot s is 1000 (s + 1) + i mod 997 + 1.
inline void FillSampleBankInMemory()
{
    for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot) {
        std::int16_t* words = SampleBank::Slot(slot);
        for (std::size_t i = 0; i < SampleBank::FilledWords; ++i)
            words[i] = static_cast<std::int16_t>(1000 * (slot + 1) + i % 997 + 1);
    }
}

// Which recording a word of those came from.
inline int SlotOfWord(std::int16_t word)
{
    return (word - 1) / 1000 - 1;
}
// Where in its recording a word stands, modulo 997.
inline int PlaceOfWord(std::int16_t word)
{
    return (word - 1) % 1000;
}

// A tune of one part, `bars` bars of four crotchets, ready to play: its score, its sequence and
// a mixer over the recordings above, playing that part at full level so the words stay whole.
struct TuneInMemory {
    explicit TuneInMemory(int bars, std::int32_t tempo = 200)
        : Doc(fixtures::BuildTune(
              {.Groups = 1, .Parts = 1, .Columns = bars, .NotesPerBar = 4, .Title = false})),
          Sequence(Doc.get())
    {
        FillSampleBankInMemory();
        Mixer.SetInstrument({.Loaded = true, .Channels = 2, .Problem = {}});
        Mixer.SetSequence(&Sequence);
        Mixer.SetPart(1);
        Mixer.SetTempo(tempo);
    }

    std::unique_ptr<CCorrievalDoc> Doc;
    CTuneSequence Sequence;
    CSampleMixer Mixer;
    MixerSource Source{Mixer};
};

} // namespace corrieval::testing
