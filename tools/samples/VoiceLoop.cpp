#include "samples/VoiceLoop.h"

#include "samples/LoopMaker.h"
#include "samples/PitchMeasure.h"
#include "samples/Resampler.h"

#include <cmath>
#include <vector>

namespace corrieval::samples {
namespace {

// Held sound beyond the loop, among which it may start: as long as the slowest swell of the
// bagpipe preset's samples, so that a start can be found where the level before the loop's end
// matches that before its start.
constexpr std::size_t SearchFrames = 88200;
// The largest correction of pitch taken: 50 cents, with room to spare.
constexpr double WidestRatio = 1.03;
constexpr int TuningAttempts = 3;

std::vector<float> Mono(const StereoSound& sound, std::size_t first, std::size_t end)
{
    std::vector<float> mono(end - first);
    for (std::size_t f = first; f < end; ++f)
        mono[f - first] = sound.Left[f] + sound.Right[f];
    return mono;
}

} // namespace

std::optional<VoiceLoop> MakeVoiceLoop(SoundFontRenderer& renderer, VoiceRequest request,
                                       std::size_t loopFrames, QString& problem)
{
    static const Resampler resampler;
    const double hz = request.Hz;
    const std::size_t tunedFrames = SearchFrames + loopFrames;
    request.Frames =
        static_cast<std::size_t>(static_cast<double>(tunedFrames) * WidestRatio) + 2 * Resampler::Margin;
    const StereoSound played = renderer.Render(request);

    const double measured =
        MeasureFrequency(Mono(played, 0, played.Frames()), SoundFontRenderer::SampleRate, hz);
    if (!(measured > 0) || std::abs(CentsFrom(hz, measured)) > 50) {
        problem = QStringLiteral("General MIDI program %1 gives no steady tone near %2 Hz")
                      .arg(request.Program)
                      .arg(hz);
        return std::nullopt;
    }
    double ratio = hz / measured;
    const StereoSound tuned = resampler.Resample(played, Resampler::Margin, ratio, tunedFrames);
    // The loop's start stays where it was chosen in the note while its tuning is refined.
    const double start = Resampler::Margin + static_cast<double>(ChooseLoopStart(tuned, loopFrames)) * ratio;

    VoiceLoop voice;
    StereoSound leadAndLoop;
    // At least one attempt is made: the first measure was within 50 cents.
    for (int attempt = 0; attempt < TuningAttempts && std::abs(ratio - 1) < WidestRatio - 1; ++attempt) {
        leadAndLoop =
            resampler.Resample(played, start - LoopBlendFrames * ratio, ratio, LoopBlendFrames + loopFrames);
        // The loop less its blended end: what a held note plays.
        const double loopHz = MeasureFrequency(Mono(leadAndLoop, LoopBlendFrames, loopFrames),
                                               SoundFontRenderer::SampleRate, hz);
        voice.Cents = CentsFrom(hz, loopHz);
        if (std::abs(voice.Cents) <= ToleranceCents / 2)
            break;
        ratio *= hz / loopHz;
    }
    if (!(std::abs(voice.Cents) <= ToleranceCents)) {
        problem = QStringLiteral("could not tune General MIDI program %1 to %2 Hz: it stays %3 cents out")
                      .arg(request.Program)
                      .arg(hz)
                      .arg(voice.Cents, 0, 'f', 2);
        return std::nullopt;
    }
    voice.Sound = CloseLoop(leadAndLoop, loopFrames);
    return voice;
}

} // namespace corrieval::samples
