#pragma once

#include "notation/NoteEx.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace corrieval {

// The note and movement codes of older note records, and the playing weights of the movements.
// The gracenotes of a movement are not here: they are definitions in the settings store, found by
// category and display name. The weights stay in the program, keyed by the display name.

// What an older code stands for.
enum class CodeKind {
    Note,     // a plain note or gracenote, built at once
    Movement, // a movement, built from its definition
    Refused,  // a code the older format had that this program does not build
    Unknown,  // no such code
};

struct CodeInfo {
    CodeKind Kind = CodeKind::Unknown;
    QString Token;             // the older format's name of the code, "??" when unknown
    NoteDuration Duration = 0; // notes only
    QString Name;              // movements only: the display name
};

CodeInfo LookUpCode(std::uint32_t code);

// A movement of the catalogue.
struct MovementRow {
    std::uint32_t Code;
    const char* Token;
    const char* Name;           // null for a refused code
    std::vector<float> Weights; // one for each note the name expects, in playing order
};

// Every movement code, refused ones included, in code order.
const std::vector<MovementRow>& MovementRows();

// The palette whose definitions a movement code is looked up in: "Doublings" below 80,
// "Embellishments" below 130, else "Piobaireachd".
QString MovementCategory(std::uint32_t code);

// The weights of the movement of this display name, compared exactly ("Throw On D" is not
// "Throw on D"); null for a name that is not in the catalogue.
const std::vector<float>* MovementWeights(const QString& name);

} // namespace corrieval
