#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

namespace corrieval {

// The recordings of the chanter's nine notes, read once when an instrument is chosen into one
// block of memory that lives as long as the process. Slot k holds the note of sample index k:
// 0 Low G up to 8 High A. Notes being played point straight into their slot.
namespace SampleBank {
inline constexpr std::size_t SlotCount = 9;
inline constexpr std::size_t SlotBytes = 1u << 20;
// Only this much of each slot is ever filled and played; the player loops within it.
inline constexpr std::size_t FilledBytes = 0x80000;
inline constexpr std::size_t FilledWords = FilledBytes / 2;

// The first 16-bit word of a slot.
std::int16_t* Slot(std::size_t index);
} // namespace SampleBank

enum class Instrument { Bagpipes, Chanter, SmallpipesBb, SmallpipesA, SmallpipesC, SmallpipesD };

// What loading an instrument left in the bank: whether all nine files were read, and the channel
// count of the last file read. Problem names the file that stopped the load and why, for a
// caller that wants to tell the user; it is empty when all nine loaded.
struct InstrumentLoad {
    bool Loaded = false;
    std::uint32_t Channels = 0;
    QString Problem;
};

// Fills the bank from the instrument's nine files in `folder` ("bp1.wav" ... "spd9.wav").
InstrumentLoad LoadInstrument(Instrument instrument, const QString& folder);

// The name of an instrument's file `number` (1 Low G to 9 High A): "bp3.wav", "sp3.wav" for the
// Smallpipes in Bb, "spc3.wav" for those in C.
QString SampleFileName(Instrument instrument, int number);

} // namespace corrieval
