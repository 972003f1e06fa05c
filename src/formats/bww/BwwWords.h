#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corrieval::bww {

// What a gracenote or movement word becomes in the full reading: a movement of the catalogue by
// its code, or, where the catalogue has none that plays and draws it, its gracenotes one by one.
// Gracenotes are the movement definitions' digits in playing order: 0 High A, 1 High G, 2 F, 3 E,
// 4 D, 5 C, 6 B, 7 Low A, 8 Low G.
struct MovementWord {
    std::int32_t Code = 0; // 0: no catalogue movement, the gracenotes stand alone
    std::string_view Gracenotes;
};

std::optional<MovementWord> LookUpMovementWord(std::string_view word);

// The older stave position of a gracenote digit: Low G 19 up to High A 27.
std::int32_t GracenotePosition(char digit);

} // namespace corrieval::bww
