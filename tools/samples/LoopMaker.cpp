#include "samples/LoopMaker.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace corrieval::samples {
namespace {

// Frames over which the level before the end and before the start are compared.
constexpr std::size_t LevelFrames = 2048;
// Starts whose levels differ by no more than this, or the best level match if none does, are
// judged by their waveforms.
constexpr double LevelToleranceDb = 0.25;

// Running sums of a term over the frames, so that any stretch's sum is one subtraction.
class RunningSums {
public:
    template <class Term> RunningSums(std::size_t frames, Term term) : m_sums(frames + 1)
    {
        for (std::size_t f = 0; f < frames; ++f)
            m_sums[f + 1] = m_sums[f] + term(f);
    }
    double Between(std::size_t first, std::size_t end) const { return m_sums[end] - m_sums[first]; }

private:
    std::vector<double> m_sums;
};

} // namespace

std::size_t ChooseLoopStart(const StereoSound& sound, std::size_t loopFrames)
{
    const std::size_t first = std::max(LevelFrames, LoopBlendFrames);
    const std::size_t last = sound.Frames() - loopFrames;
    assert(sound.Frames() > loopFrames + first);
    const RunningSums energy(sound.Frames(), [&](std::size_t f) {
        return double(sound.Left[f]) * sound.Left[f] + double(sound.Right[f]) * sound.Right[f];
    });
    // How far each frame is from the frame a loop later.
    const RunningSums mismatch(last, [&](std::size_t f) {
        const double left = sound.Left[f + loopFrames] - sound.Left[f];
        const double right = sound.Right[f + loopFrames] - sound.Right[f];
        return left * left + right * right;
    });

    std::vector<double> levelDb(last + 1, 0);
    double closestDb = std::numeric_limits<double>::max();
    for (std::size_t start = first; start <= last; ++start) {
        const double before = energy.Between(start - LevelFrames, start) + 1e-30;
        const double beforeEnd = energy.Between(start + loopFrames - LevelFrames, start + loopFrames) + 1e-30;
        levelDb[start] = std::abs(10 * std::log10(beforeEnd / before));
        closestDb = std::min(closestDb, levelDb[start]);
    }
    const double allowedDb = std::max(LevelToleranceDb, closestDb);
    std::size_t best = first;
    double bestMismatch = std::numeric_limits<double>::max();
    for (std::size_t start = first; start <= last; ++start) {
        const double difference = mismatch.Between(start - LoopBlendFrames, start);
        if (levelDb[start] <= allowedDb && difference < bestMismatch) {
            bestMismatch = difference;
            best = start;
        }
    }
    return best;
}

StereoSound CloseLoop(const StereoSound& leadAndLoop, std::size_t loopFrames)
{
    assert(leadAndLoop.Frames() >= loopFrames + LoopBlendFrames);
    const auto start = static_cast<std::ptrdiff_t>(leadAndLoop.Frames() - loopFrames);
    StereoSound loop;
    loop.Left.assign(leadAndLoop.Left.begin() + start, leadAndLoop.Left.end());
    loop.Right.assign(leadAndLoop.Right.begin() + start, leadAndLoop.Right.end());
    for (std::size_t i = 0; i < LoopBlendFrames; ++i) {
        const double towardsLead =
            0.5 - 0.5 * std::cos(std::numbers::pi * (static_cast<double>(i) + 0.5) / LoopBlendFrames);
        const std::size_t at = loopFrames - LoopBlendFrames + i;
        const std::size_t lead = static_cast<std::size_t>(start) - LoopBlendFrames + i;
        loop.Left[at] =
            static_cast<float>(loop.Left[at] + towardsLead * (leadAndLoop.Left[lead] - loop.Left[at]));
        loop.Right[at] =
            static_cast<float>(loop.Right[at] + towardsLead * (leadAndLoop.Right[lead] - loop.Right[at]));
    }
    return loop;
}

} // namespace corrieval::samples
