#include "samples/Resampler.h"

#include <cassert>
#include <cmath>
#include <numbers>

namespace corrieval::samples {
namespace {

// The kernel is tabulated this finely and interpolated linearly between table points: the
// error is below -110 dB, far under the 16-bit floor.
constexpr int Steps = 512;
// A Kaiser window with this shape keeps the kernel's ripple near -85 dB.
constexpr double KaiserBeta = 8.6;

double Kernel(double x)
{
    const double half = static_cast<double>(Resampler::Margin);
    if (std::abs(x) >= half)
        return 0;
    const double sinc = x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
    const double edge = x / half;
    return sinc * std::cyl_bessel_i(0.0, KaiserBeta * std::sqrt(1 - edge * edge)) /
           std::cyl_bessel_i(0.0, KaiserBeta);
}

} // namespace

Resampler::Resampler()
{
    const int points = 2 * static_cast<int>(Margin) * Steps + 2;
    m_kernel.resize(static_cast<std::size_t>(points));
    for (int i = 0; i < points; ++i)
        m_kernel[static_cast<std::size_t>(i)] =
            Kernel(static_cast<double>(i) / Steps - static_cast<double>(Margin));
}

StereoSound Resampler::Resample(const StereoSound& input, double start, double ratio,
                                std::size_t frames) const
{
    assert(std::abs(ratio - 1) < 0.03 && start >= static_cast<double>(Margin));
    assert(start + static_cast<double>(frames) * ratio + static_cast<double>(Margin) <=
           static_cast<double>(input.Frames()));
    StereoSound output;
    output.Left.resize(frames);
    output.Right.resize(frames);
    constexpr auto Taps = static_cast<int>(2 * Margin);
    for (std::size_t n = 0; n < frames; ++n) {
        const double position = start + static_cast<double>(n) * ratio;
        const double whole = std::floor(position);
        const double fraction = position - whole;
        // Input frame first + k lies at distance (k - Margin + 1 - fraction) from the position.
        const std::size_t first = static_cast<std::size_t>(whole) - Margin + 1;
        const double tableStart = (1 - fraction) * Steps;
        const auto index = static_cast<std::size_t>(tableStart);
        const double between = tableStart - static_cast<double>(index);
        double left = 0;
        double right = 0;
        for (int k = 0; k < Taps; ++k) {
            const std::size_t at = index + static_cast<std::size_t>(k) * Steps;
            const double weight = m_kernel[at] + between * (m_kernel[at + 1] - m_kernel[at]);
            left += weight * input.Left[first + static_cast<std::size_t>(k)];
            right += weight * input.Right[first + static_cast<std::size_t>(k)];
        }
        output.Left[n] = static_cast<float>(left);
        output.Right[n] = static_cast<float>(right);
    }
    return output;
}

} // namespace corrieval::samples
