#include "samples/PitchMeasure.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace corrieval::samples {
namespace {

// 0.37 s at 44,100 Hz: a Hann window this long separates components 11 Hz apart, which keeps a
// chanter note clear of the drones' harmonics next to it.
constexpr std::size_t LongestWindow = 16384;
constexpr double SearchCents = 60;

class Analyser {
public:
    Analyser(std::span<const float> signal, double sampleRate)
        : m_signal(signal), m_rate(sampleRate), m_window(std::min(LongestWindow, signal.size() / 4))
    {
        for (std::size_t n = 0; n < m_window.size(); ++n)
            m_window[n] = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(n) /
                                               static_cast<double>(m_window.size()));
    }

    std::size_t Window() const { return m_window.size(); }
    std::size_t Size() const { return m_signal.size(); }
    double Rate() const { return m_rate; }

    // The windowed spectrum at `hz` of the window starting at `start`, its phase measured from
    // the start of the signal so that the phases of two windows can be compared.
    std::complex<double> At(double hz, std::size_t start) const
    {
        const double cyclesPerFrame = hz / m_rate;
        // The turns before `start`, reduced to a fraction so that the phase keeps its precision.
        const double startTurns = std::fmod(cyclesPerFrame * static_cast<double>(start), 1.0);
        std::complex<double> turn = std::polar(1.0, -2 * std::numbers::pi * startTurns);
        const std::complex<double> step = std::polar(1.0, -2 * std::numbers::pi * cyclesPerFrame);
        std::complex<double> sum;
        for (std::size_t n = 0; n < m_window.size(); ++n) {
            sum += m_window[n] * static_cast<double>(m_signal[start + n]) * turn;
            turn *= step;
        }
        return sum;
    }

private:
    std::span<const float> m_signal;
    double m_rate;
    std::vector<double> m_window;
};

// The strongest peak between `low` and `high` of the spectrum summed over four windows spread
// over the signal, placed between grid points by a parabola through the log levels. Summing
// keeps a note whose level swells and fades from being outshone by a neighbour.
double FindPeak(const Analyser& analyser, double low, double high)
{
    constexpr std::size_t Windows = 4;
    const double step = analyser.Rate() / static_cast<double>(analyser.Window()) / 2;
    const std::size_t spacing = (analyser.Size() - analyser.Window()) / (Windows - 1);
    std::vector<double> level;
    for (double hz = low; hz <= high; hz += step) {
        double power = 1e-30;
        for (std::size_t i = 0; i < Windows; ++i)
            power += std::norm(analyser.At(hz, i * spacing));
        level.push_back(std::log(power));
    }
    std::size_t best = 0;
    for (std::size_t i = 1; i < level.size(); ++i)
        if (level[i] > level[best])
            best = i;
    double offset = 0;
    if (best > 0 && best + 1 < level.size()) {
        const double curve = level[best - 1] - 2 * level[best] + level[best + 1];
        if (curve < 0)
            offset = 0.5 * (level[best - 1] - level[best + 1]) / curve;
    }
    return low + (static_cast<double>(best) + offset) * step;
}

// The advance of the phase at `hz` over `gap` frames, taken over every pair of windows that
// far apart and weighted by their level, so that the moments where a beating note almost
// vanishes and its phase slips count for little.
double PhaseAdvance(const Analyser& analyser, double hz, std::size_t gap)
{
    std::complex<double> sum;
    for (std::size_t start = 0; start + gap + analyser.Window() <= analyser.Size();
         start += analyser.Window() / 2)
        sum += analyser.At(hz, start + gap) * std::conj(analyser.At(hz, start));
    return std::arg(sum);
}

} // namespace

double MeasureFrequency(std::span<const float> signal, double sampleRate, double nearHz)
{
    // Windows of at most a quarter of the signal, so that the last gap has pairs to average.
    const Analyser analyser(signal, sampleRate);
    const std::size_t window = analyser.Window();
    if (window < 1024)
        return 0;
    const double spread = std::exp2(SearchCents / 1200);
    double hz = FindPeak(analyser, nearHz / spread, nearHz * spread);

    // Each gap measures the frequency to within sampleRate / (2 gap) of the last estimate;
    // growing it at most eightfold each time stays well inside that. The last gap, half the
    // signal, still leaves many window pairs to average over.
    for (const std::size_t gap : {window / 4, 2 * window, signal.size() / 2})
        hz +=
            PhaseAdvance(analyser, hz, gap) * sampleRate / (2 * std::numbers::pi * static_cast<double>(gap));
    return hz;
}

double CentsFrom(double targetHz, double hz)
{
    return 1200 * std::log2(hz / targetHz);
}

} // namespace corrieval::samples
