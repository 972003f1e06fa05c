#pragma once

#include "fixtures/ScoreFixtures.h"
#include "model/CorrievalDoc.h"
#include "playback/PullSource.h"
#include "playback/SampleBank.h"
#include "playback/SampleMixer.h"
#include "playback/TuneSequence.h"

#include <memory>

namespace corrieval::testing {

// A tune of one part, `bars` bars of four crotchets, ready to play: its score, its sequence and
// a mixer playing that part at full level, so that the words stay whole, over nine made-up
// recordings that differ from each other and from word to word and never hold a zero, so that
// any slip of a word shows: word i of slot s is 1000 (s + 1) + i mod 997 + 1.
struct TuneInMemory {
    explicit TuneInMemory(int bars, std::uint32_t channels = 2)
        : Doc(fixtures::BuildTune(
              {.Groups = 1, .Parts = 1, .Columns = bars, .NotesPerBar = 4, .Title = false})),
          Sequence(Doc.get())
    {
        for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot) {
            for (std::size_t i = 0; i < SampleBank::FilledWords; ++i)
                SampleBank::Slot(slot)[i] = static_cast<std::int16_t>(1000 * (slot + 1) + i % 997 + 1);
        }
        Mixer.SetInstrument({.Loaded = true, .Channels = channels, .Problem = {}});
        Mixer.SetSequence(&Sequence);
        Mixer.SetPart(1);
        Mixer.SetTempo(200);
    }

    std::unique_ptr<CCorrievalDoc> Doc;
    CTuneSequence Sequence;
    CSampleMixer Mixer;
    MixerSource Source{Mixer};
};

} // namespace corrieval::testing
