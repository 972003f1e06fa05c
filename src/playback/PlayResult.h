#pragma once

#include <cstdint>

namespace corrieval {

// Results of the playback layer. The mixer reports the end of a tune as the generic failure:
// that is its ordinary way of saying "nothing more to play".
using PlayResult = std::int32_t;
inline constexpr PlayResult PlayOk = 0;
inline constexpr PlayResult PlayFailed = static_cast<PlayResult>(0x80004005u);
inline constexpr PlayResult PlayBadArgument = static_cast<PlayResult>(0x80070057u);
inline constexpr PlayResult PlayFileNotOpen = static_cast<PlayResult>(0x800401F0u);

inline bool Succeeded(PlayResult r) { return r >= 0; }

} // namespace corrieval
