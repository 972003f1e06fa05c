#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace corrieval::bww {

// What can go wrong in a BWW or BMW import, numbered so that a report can list them.
enum class ProblemCode : std::int32_t {
    LexerError = 1,      // a word or number too long for the lexeme buffer
    TitleError = 2,      // a quoted text too long
    SymbolTableFull = 3, // only the keyword list fills the table: kept for its report
    LexemesFull = 4,     // the same
    TokenMismatch = 5,   // the parser wanted another token (6_4 is always one)
    InvalidBmw = 6,      // a positional header with fewer than three texts
    InvalidBww = 7,      // a header without three named texts, or no stave
    BarTooLong = 8,      // more notes in a bar than the note grid holds
    PartTooLong = 9,     // more bars in a part than the note grid holds
};

// One problem met, where it was met. `Line` is the line of the text; the messages of the lexer
// and parser count staves instead, as the users of the older program know them.
struct Problem {
    ProblemCode Code;
    std::int32_t Line = 0;
    QString Message; // as shown
};

// A word that the import read and had no use for, with its line of text.
struct PassedWord {
    std::int32_t Line = 0;
    QString Word;
};

// The words of each problem, the one table of them.
QString ProblemText(ProblemCode code);

// How a tune is read. Strict reads it as the older program did, refusing what it refused and
// passing over the words it had no use for; full reads every word of the format that a score can
// hold, and several tunes in one file.
enum class Reading { Full, Strict };

// Everything one import noticed. Each problem is shown through ShowMessage as it is added.
class ImportLog {
public:
    static constexpr std::size_t MaxPassedWords = 10000;

    // "Error on line %d: %s \n tokenval = %d", shown with no icon.
    void Error(ProblemCode code, std::int32_t textLine, std::int32_t staveLine, std::int32_t tokenValue);
    // A message with the warning icon, in the words given.
    void Warning(ProblemCode code, std::int32_t textLine, const QString& message);
    void PassOver(std::int32_t textLine, const QString& word);

    // Set by the caller before the import.
    Reading Mode = Reading::Full;
    // Set by Error: the parse goes on to its next test of it, then fails.
    bool ErrorFlag = false;

    std::vector<Problem> Problems;
    std::vector<PassedWord> PassedWords; // at most MaxPassedWords, the first ones
};

} // namespace corrieval::bww
