#pragma once

#include "samples/StereoSound.h"

#include <QString>

#include <cstddef>
#include <memory>

struct _fluid_hashtable_t;
struct _fluid_synth_t;

namespace corrieval::samples {

// One held note of a General MIDI instrument.
struct VoiceRequest {
    int Program = 0; // 0-based
    double Hz = 440;
    double LowPassHz = 0; // 0 keeps the preset's own filter
    std::size_t Frames = 0;
};

// Plays held notes of a SoundFont's presets through FluidSynth, each from a freshly reset synth
// so that one note's sound never depends on what was played before it.
//
// The notes are made steady, since the player loops a stretch of each: the volume and
// modulation envelopes go straight to their sustain levels, every LFO is taken off pitch,
// volume and filter, and the note's onset (the first 0.35 s) is dropped. The pitch is only as
// close as FluidSynth's whole cents and the SoundFont's own tuning allow; callers measure and
// correct it.
class SoundFontRenderer {
public:
    static constexpr double SampleRate = 44100;

    SoundFontRenderer();
    ~SoundFontRenderer();
    SoundFontRenderer(const SoundFontRenderer&) = delete;
    SoundFontRenderer& operator=(const SoundFontRenderer&) = delete;

    // Empty on success, else why the file could not be used.
    QString Load(const QString& path);
    StereoSound Render(const VoiceRequest& request);

private:
    struct SettingsDeleter {
        void operator()(_fluid_hashtable_t* settings) const;
    };
    struct SynthDeleter {
        void operator()(_fluid_synth_t* synth) const;
    };
    std::unique_ptr<_fluid_hashtable_t, SettingsDeleter> m_settings;
    std::unique_ptr<_fluid_synth_t, SynthDeleter> m_synth;
};

} // namespace corrieval::samples
