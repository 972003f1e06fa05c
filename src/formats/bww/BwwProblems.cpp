#include "formats/bww/BwwProblems.h"

#include "model/Messages.h"

namespace corrieval::bww {

QString ProblemText(ProblemCode code)
{
    switch (code) {
    case ProblemCode::LexerError:
        return QStringLiteral("lexer error");
    case ProblemCode::TitleError:
        return QStringLiteral("title error");
    case ProblemCode::SymbolTableFull:
        return QStringLiteral("symbol table full");
    case ProblemCode::LexemesFull:
        return QStringLiteral("lexemes array full");
    case ProblemCode::TokenMismatch:
        return QStringLiteral("token misMatch");
    case ProblemCode::InvalidBmw:
        return QStringLiteral("Invalid BMW file!");
    case ProblemCode::InvalidBww:
        return QStringLiteral("Invalid BWW file!");
    case ProblemCode::BarTooLong:
        return QStringLiteral("A bar holds more than 32 notes: the notes after the 32nd are left out.");
    case ProblemCode::PartTooLong:
        return QStringLiteral("A part holds more than 24 bars: the bars after the 24th are left out.");
    }
    return {};
}

void ImportLog::Error(ProblemCode code, std::int32_t textLine, std::int32_t staveLine,
                      std::int32_t tokenValue)
{
    const QString message = QStringLiteral("Error on line %1: %2 \n tokenval = %3")
                                .arg(staveLine)
                                .arg(ProblemText(code))
                                .arg(tokenValue);
    Problems.push_back({code, textLine, message});
    ErrorFlag = true;
    ShowMessage(message);
}

void ImportLog::Warning(ProblemCode code, std::int32_t textLine, const QString& message)
{
    Problems.push_back({code, textLine, message});
    ShowMessage(message, MessageKind::Warning);
}

void ImportLog::PassOver(std::int32_t textLine, const QString& word)
{
    if (PassedWords.size() < MaxPassedWords)
        PassedWords.push_back({textLine, word});
}

} // namespace corrieval::bww
