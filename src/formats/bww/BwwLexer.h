#pragma once

#include "formats/bww/BwwProblems.h"
#include "formats/bww/BwwSymbols.h"

#include <QByteArray>
#include <cstdint>
#include <string>

namespace corrieval::bww {

// The scanner of the BWW and BMW text: one character at a time over the file's bytes, with one
// character of push-back, and the symbol table for words. The files come from many programs and
// editors, so bytes are taken as they are (any code page, CR LF or LF), and a character the
// format does not know is passed over rather than refused.
class Lexer {
public:
    static constexpr std::size_t LexemeLimit = 128; // the lexeme buffer, its NUL included

    Lexer(const QByteArray& text, ImportLog& log);

    // The next token code; sets Value and, for words, numbers and titles, Lexeme. Of the other
    // tokens only a triplet ("^3" and what follows it) and the full reading's "^ts" have one.
    std::int32_t Next();

    // Clefs counted so far: the line number of the messages.
    std::int32_t StaveLine() const { return m_staveLine; }
    // The line of the text being read, from 1.
    std::int32_t TextLine() const { return m_textLine; }
    // For a title: 'Y' the tune's title, 'T' its type, 'M' its composer, 'X' none of them.
    char TitleKind() const { return m_titleKind; }
    // Reports a problem at the present place in the message format of the lexer and parser.
    void Error(ProblemCode code);

    std::int32_t Value = -1;
    std::string Lexeme;

private:
    static constexpr int kEnd = -1;

    // A word, number or text too long for the lexeme buffer.
    void Overflow(ProblemCode code);
    int Get();
    void Unget(int c);
    std::int32_t Ampersand();
    std::int32_t Caret();
    std::int32_t CapitalI(bool& restart);
    std::int32_t Exclamation();
    std::int32_t Apostrophe(bool& restart);
    std::int32_t Digits(int first);
    std::int32_t Word(int first);
    std::int32_t LengthAfter(std::size_t symbol);
    std::int32_t Title();
    // Appends c to the lexeme, false once the buffer is full.
    bool Store(int c);

    QByteArray m_text;
    qsizetype m_pos = 0;
    ImportLog& m_log;
    SymbolTable m_symbols;
    std::int32_t m_staveLine = 0;
    std::int32_t m_textLine = 1;
    char m_titleKind = 'X';
};

} // namespace corrieval::bww
