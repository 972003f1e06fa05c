#pragma once

#include "playback/PlayResult.h"
#include "playback/SampleMixer.h"

#include <cstdint>

namespace corrieval {

// What live play and WAV export take their 16-bit words from: the mixer in the program, scripted
// sources in tests. The contract is the mixer's: a pull fills `count` words and leaves in `count`
// the words produced; the pull that reaches the end of the tune fails (PlayFailed) with a full
// count, and every pull after it gives silence and a count of 0.
class PullSource {
public:
    virtual ~PullSource() = default;
    virtual PlayResult Pull(std::int16_t* destination, std::uint32_t& count) = 0;
    // With `stopping` false, starts again from the top; with `stopping` true, lets go after a play.
    virtual void Reset(bool stopping) = 0;
    // Interleaved channels of the words pulled; 0 when there is nothing to play.
    virtual std::uint32_t Channels() const = 0;
};

// The mixer seen as a pull source.
class MixerSource final : public PullSource {
public:
    explicit MixerSource(CSampleMixer& mixer) : m_mixer(mixer) {}
    PlayResult Pull(std::int16_t* destination, std::uint32_t& count) override
    {
        return m_mixer.Pull(destination, count);
    }
    void Reset(bool stopping) override { m_mixer.Reset(stopping); }
    std::uint32_t Channels() const override { return m_mixer.Channels(); }

private:
    CSampleMixer& m_mixer;
};

} // namespace corrieval
