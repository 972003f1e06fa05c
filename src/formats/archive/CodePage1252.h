#pragma once

#include <cstdint>

namespace corrieval {

// Older score files hold 8-bit strings in the Windows Western code page, which differs from
// Latin-1 only in 0x80 to 0x9F.
char16_t DecodeCodePage1252(std::uint8_t byte);

} // namespace corrieval
