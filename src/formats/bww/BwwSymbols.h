#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corrieval::bww {

// Token codes of the Bagpiper Music Writer text. Movement words carry their MovementTypeCode, a
// melody note its own code from LowG to HighALeft; -1 is an unknown word or character.
namespace Token {
constexpr std::int32_t Unknown = -1;
constexpr std::int32_t Clef = 256;
constexpr std::int32_t BarLine = 257;
constexpr std::int32_t LowG = 279;  // LG_; the r and l forms follow, then LA_ and so on
constexpr std::int32_t HighA = 303; // HA_
constexpr std::int32_t HighALeft = 305;
constexpr std::int32_t FirstGracenote = 309; // gg dg eg tg
constexpr std::int32_t LastGracenote = 312;
constexpr std::int32_t FirstDot = 315; // 'lg to 'ha
constexpr std::int32_t LastDot = 323;
constexpr std::int32_t RepeatStart = 324;
constexpr std::int32_t RepeatStartDots = 325;
constexpr std::int32_t RepeatEnd = 326;
constexpr std::int32_t RepeatEndDots = 327;
constexpr std::int32_t LineEnd = 328;
constexpr std::int32_t Tie = 330;
constexpr std::int32_t Triplet = 331;
constexpr std::int32_t FirstTimeSig = 332; // 2_2
constexpr std::int32_t SixFour = 338;
constexpr std::int32_t LastNumberedTimeSig = 342; // 12_8
constexpr std::int32_t CommonTime = 343;
constexpr std::int32_t CutTime = 344;
constexpr std::int32_t FirstTime = 345;
constexpr std::int32_t SecondTime = 346;
constexpr std::int32_t EndingEnd = 347;
constexpr std::int32_t Number = 353;
constexpr std::int32_t Title = 354;
constexpr std::int32_t EndOfFile = 400;
} // namespace Token

// The words of the format and their tokens, searched from the latest entry back, so that a word
// that stands twice has its later meaning. Entry 0 stays empty: Lookup's 0 means "not found".
class SymbolTable {
public:
    static constexpr std::size_t MaxEntries = 2048;
    static constexpr std::size_t MaxLexemeBytes = 8192;

    // The fixed keyword list, in its order.
    SymbolTable();

    // Adds an entry. The limits only report (the fixed list stays far below them); the
    // returned text, empty when all is well, is the problem to report.
    std::string_view Insert(std::string_view name, std::int32_t code);
    std::size_t Lookup(std::string_view name) const;
    std::int32_t Code(std::size_t index) const { return m_entries[index].Code; }
    std::size_t Size() const { return m_entries.size() - 1; }

private:
    struct Entry {
        std::string Name;
        std::int32_t Code = Token::Unknown;
    };
    std::vector<Entry> m_entries;
    std::size_t m_lexemeBytes = 0;
};

} // namespace corrieval::bww
