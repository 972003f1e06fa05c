#pragma once

#include "notation/FixedNoteGroup.h"

#include <QString>
#include <cstdint>

namespace corrieval {

class CBarEx;
class CTieEx;
class MovementDefinitionCache;

// What MovementFromCode makes is this wide, inches: a plain note, and a movement for each
// gracenote.
inline constexpr float PlainNoteWidth = 0.156f;
inline constexpr float MovementNoteWidth = 0.078f;

// The fields of an older note record that decide what it becomes.
struct OlderNote {
    std::uint32_t Code = 2;     // note or movement code
    std::int32_t Position = 24; // the older stave position: the pitch is 30 less it
    std::int32_t Dot = 0;
    float Weight = 1.0f; // a plain note's share of its length in playing
};

// What MovementFromCode made: the movement's display name (empty for a note), its number of
// notes, and the note or group now in the bar.
struct MovementMade {
    QString Name;
    std::int32_t NoteCount = 0;
    const CScoObj* Object = nullptr;
};

// Turns an older note record into a note or a movement at (x, y), `height` high, and adds it to
// the bar. A plain note joins `tie` when one is given; a movement is built from its definition in
// the settings store, read through `definitions`. `made` is updated only when something was added: the conversion of older
// files reuses the count it held before. An unknown or refused code is reported to the user and
// ignored, as is a movement whose definition is missing or unusable.
void MovementFromCode(const OlderNote& older, CBarEx& bar, float x, float y, float height, CTieEx* tie,
                      RepeatLink repeat, MovementDefinitionCache& definitions, MovementMade& made);
// The width, inches, of what MovementFromCode makes of the code; 0 when it makes nothing.
// Silent: the layout measures a tune before the conversion reports its problems.
float WidthFromCode(std::uint32_t code, MovementDefinitionCache& definitions);

} // namespace corrieval
