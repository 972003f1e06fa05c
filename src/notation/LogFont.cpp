#include "notation/LogFont.h"

#include <algorithm>

namespace corrieval {

std::int32_t LogFont::ReadI32(std::size_t offset) const
{
    std::uint32_t v = 0;
    for (int i = 3; i >= 0; --i)
        v = (v << 8) | Raw[offset + static_cast<std::size_t>(i)];
    return static_cast<std::int32_t>(v);
}

void LogFont::WriteI32(std::size_t offset, std::int32_t value)
{
    auto v = static_cast<std::uint32_t>(value);
    for (std::size_t i = 0; i < 4; ++i, v >>= 8)
        Raw[offset + i] = static_cast<std::uint8_t>(v & 0xFF);
}

QString LogFont::FaceName() const
{
    QString face;
    for (std::size_t i = 0; i < FaceUnits; ++i) {
        const std::size_t at = FaceOffset + 2 * i;
        const auto unit = static_cast<char16_t>(Raw[at] | (Raw[at + 1] << 8));
        if (unit == 0)
            break;
        face.append(QChar(unit));
    }
    return face;
}

void LogFont::SetFaceName(const QString& face)
{
    // The last unit stays a terminator, as the platform structure requires.
    const auto units = std::min<std::size_t>(static_cast<std::size_t>(face.size()), FaceUnits - 1);
    std::fill(Raw.begin() + FaceOffset, Raw.begin() + FaceOffset + 2 * FaceUnits, std::uint8_t{0});
    for (std::size_t i = 0; i < units; ++i) {
        const char16_t unit = face.at(static_cast<qsizetype>(i)).unicode();
        Raw[FaceOffset + 2 * i] = static_cast<std::uint8_t>(unit & 0xFF);
        Raw[FaceOffset + 2 * i + 1] = static_cast<std::uint8_t>(unit >> 8);
    }
}

} // namespace corrieval
