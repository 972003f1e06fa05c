#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>

namespace corrieval {

// A text area's font as the 92 bytes of a Windows LOGFONTW, which is how score files hold it.
// The bytes are kept whole so that fields we do not use survive a load and save; the fields we
// do use are read and written in place.
class LogFont {
public:
    static constexpr std::size_t Size = 92;
    using Bytes = std::array<std::uint8_t, Size>;

    Bytes Raw{};

    std::int32_t Height() const { return ReadI32(0); }
    void SetHeight(std::int32_t h) { WriteI32(0, h); }
    std::int32_t Weight() const { return ReadI32(16); }
    void SetWeight(std::int32_t w) { WriteI32(16, w); }
    bool Italic() const { return Raw[20] != 0; }
    void SetItalic(bool on) { Raw[20] = on ? 1 : 0; }
    bool Underline() const { return Raw[21] != 0; }
    void SetUnderline(bool on) { Raw[21] = on ? 1 : 0; }
    bool StrikeOut() const { return Raw[22] != 0; }
    void SetStrikeOut(bool on) { Raw[22] = on ? 1 : 0; }
    std::uint8_t Quality() const { return Raw[26]; }
    void SetQuality(std::uint8_t q) { Raw[26] = q; }
    QString FaceName() const;
    void SetFaceName(const QString& face);

private:
    static constexpr std::size_t FaceOffset = 28;
    static constexpr std::size_t FaceUnits = 32;

    std::int32_t ReadI32(std::size_t offset) const;
    void WriteI32(std::size_t offset, std::int32_t value);
};

} // namespace corrieval
