#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace corrieval {

// The palettes of the note and movement galleries, in the ribbon's order. Each is a key below
// MovementsKeyPath; the last three are also the categories of the movement catalogue.
inline constexpr std::array<const char*, 4> MovementPalettes{"Notes", "Doublings", "Embellishments",
                                                             "Piobaireachd"};

// A movement's definition as the conversion of older files reads it.
struct MovementDefinition {
    QString Chars;                 // one font character per gracenote
    QString RelativeNotePositions; // one digit per gracenote, 0 High A to 8 Low G
    std::int32_t FixedStavePosition = -1;

    bool Usable() const
    {
        return FixedStavePosition >= 0 && !Chars.isEmpty() && !RelativeNotePositions.isEmpty();
    }
};

// Reads the definition `name` of the palette `category`. Asking creates the key: missing values
// are written back as "", "" and -1, which leave the definition unusable.
MovementDefinition ReadMovementDefinition(const QString& category, const QString& name);

// The definitions a task that asks for many (the conversion of a tune) has read so far: each is
// read from the store once, since every read opens the store's file afresh.
class MovementDefinitionCache {
public:
    const MovementDefinition& Read(const QString& category, const QString& name);

private:
    std::map<std::pair<QString, QString>, MovementDefinition> m_read;
};

// An entry of a palette as its gallery shows it.
struct PaletteEntry {
    QString Name;
    QString Chars;
    QString RelativeNotePositions; // empty for a plain note, placed at any pitch
    std::int32_t DrawStave = 0;
    std::int32_t ToolbarIndex = -1;
};

// The entries of a palette in gallery order ("ToolbarIndex"; entries without one last), read
// without writing anything.
std::vector<PaletteEntry> ReadPalette(const QString& palette);

inline constexpr const char* MovementDataFileName = "ghb-movements.json";

// Where the definitions shipped with the program are looked for: $CORRIEVAL_MOVEMENTS_DIR if set,
// else beside the program (../share/corrieval/movements), then where `install` puts them.
QStringList MovementDataDirs();

// Copies the shipped definitions into the settings store wherever a palette, an entry or a value
// is missing; what is there already, a user's edits included, stays as it is. Returns a message
// for the user, empty on success. The first form uses the file found in MovementDataDirs.
QString InstallMovementDefinitions();
QString InstallMovementDefinitions(const QString& file);

} // namespace corrieval
