#include "formats/bww/BwwLexer.h"

#include <cctype>
#include <cstdlib>

namespace corrieval::bww {

namespace {

bool IsLetter(int c)
{
    return c >= 0 && c < 128 && std::isalpha(c) != 0;
}
bool IsDigit(int c)
{
    return c >= '0' && c <= '9';
}
bool IsWordChar(int c)
{
    return IsLetter(c) || IsDigit(c) || c == '_';
}

} // namespace

Lexer::Lexer(const QByteArray& text, ImportLog& log) : m_text(text), m_log(log) {}

int Lexer::Get()
{
    if (m_pos >= m_text.size())
        return kEnd;
    const auto c = static_cast<unsigned char>(m_text[m_pos++]);
    if (c == '\n')
        ++m_textLine;
    return c;
}

void Lexer::Unget(int c)
{
    if (c == kEnd || m_pos == 0)
        return;
    --m_pos;
    if (c == '\n')
        --m_textLine;
}

void Lexer::Error(ProblemCode code)
{
    m_log.Error(code, m_textLine, m_staveLine, Value);
}

void Lexer::Overflow(ProblemCode code)
{
    // The full reading keeps what fitted: a long text is cut short, a long word is not a word.
    if (m_log.Mode == Reading::Strict)
        Error(code);
}

bool Lexer::Store(int c)
{
    if (Lexeme.size() + 1 >= LexemeLimit)
        return false;
    Lexeme.push_back(static_cast<char>(c));
    return true;
}

std::int32_t Lexer::Next()
{
    Lexeme.clear();
    for (;;) {
        const int c = Get();
        bool restart = false;
        std::int32_t token = Token::Unknown;
        if (c == ' ' || c == '\t')
            continue;
        if (c == '&')
            token = Ampersand();
        else if (c == '_') {
            const int d = Get();
            if (d == '\'')
                return Token::EndingEnd;
            Unget(d);
            return Token::Unknown;
        } else if (c == '^')
            token = Caret();
        else if (c == 'I')
            token = CapitalI(restart);
        else if (c == '!')
            token = Exclamation();
        else if (c == '\'')
            token = Apostrophe(restart);
        else if (c == '"')
            token = Title();
        else if (IsDigit(c))
            token = Digits(c);
        else if (IsLetter(c))
            token = Word(c);
        else if (c == kEnd)
            return Token::EndOfFile;
        else {
            // Line ends, commas, parentheses and bytes of other code pages carry nothing.
            Value = -1;
            continue;
        }
        if (!restart)
            return token;
    }
}

std::int32_t Lexer::Ampersand()
{
    ++m_staveLine;
    return Token::Clef;
}

std::int32_t Lexer::Caret()
{
    const int c = Get();
    if (c == '3') {
        // The pitch after "^3" is one letter, or two for the low and high ones; the newer files
        // write "^3s" and "^3e" around the triplet instead. Kept in the lexeme for the parser.
        Lexeme = "^3";
        if (const int p = Get(); p != kEnd)
            Store(p);
        const int d = Get();
        if (IsLetter(d))
            Store(d);
        else
            Unget(d);
        return Token::Triplet;
    }
    if (c == 't') {
        const int d = Get();
        // The newer files write "^ts" and "^te" around the tied notes: "^ts" is a tie only to the
        // full reading, which finds it in the lexeme.
        if (d == 's' && m_log.Mode == Reading::Full) {
            Lexeme = "^ts";
            return Token::Tie;
        }
        if (d == 'b' || d == 'c' || d == 'd' || d == 'e' || d == 'f')
            return Token::Tie;
        if (d == 'h' || d == 'l') {
            const int e = Get();
            if (e == 'a' || e == 'g')
                return Token::Tie;
            Unget(e);
            return Token::Unknown;
        }
        Unget(d);
        return Token::Unknown;
    }
    Unget(c);
    return Token::Unknown;
}

std::int32_t Lexer::CapitalI(bool& restart)
{
    const int c = Get();
    if (c != '!') {
        // A lone capital I is dropped with the character after it: no word begins with one.
        restart = true;
        return Token::Unknown;
    }
    const int d = Get();
    if (d != '\'') {
        Unget(d);
        return Token::RepeatStart;
    }
    const int e = Get();
    if (e == '\'')
        return Token::RepeatStartDots;
    Unget(e);
    return Token::Unknown;
}

std::int32_t Lexer::Exclamation()
{
    const int c = Get();
    if (c == 'I')
        return Token::RepeatEnd;
    if (c == 't')
        return Token::LineEnd;
    Unget(c);
    return Token::BarLine;
}

std::int32_t Lexer::Apostrophe(bool& restart)
{
    const int d = Get();
    if (IsDigit(d)) {
        Value = 0;
        if (d != '1' && d != '2') {
            Unget(d);
            restart = true;
            return Token::Unknown;
        }
        const int e = Get();
        if (IsDigit(e))
            Value = e - '0';
        else
            Unget(e);
        return d == '1' ? Token::FirstTime : Token::SecondTime;
    }
    if (d == '\'') {
        const int e = Get();
        if (e != '!') {
            Unget(e);
            return Token::Unknown;
        }
        const int f = Get();
        if (f == 'I')
            return Token::RepeatEndDots;
        Unget(f);
        return Token::Unknown;
    }
    if (IsLetter(d)) {
        switch (d) {
        case 'b':
            return Token::FirstDot + 2;
        case 'c':
            return Token::FirstDot + 3;
        case 'd':
            return Token::FirstDot + 4;
        case 'e':
            return Token::FirstDot + 5;
        case 'f':
            return Token::FirstDot + 6;
        case 'l':
        case 'h': {
            const int e = Get();
            if (e == 'g')
                return d == 'l' ? Token::FirstDot : Token::FirstDot + 7;
            if (e == 'a')
                return d == 'l' ? Token::FirstDot + 1 : Token::LastDot;
            Unget(e);
            return Token::Unknown;
        }
        default:
            restart = true;
            return Token::Unknown;
        }
    }
    if (d == kEnd) {
        restart = true;
        return Token::Unknown;
    }
    Unget(d);
    return Token::Unknown;
}

std::int32_t Lexer::Digits(int first)
{
    Lexeme.clear();
    int c = first;
    bool overflow = false;
    while (IsDigit(c) || c == '_') {
        overflow = !Store(c) || overflow;
        c = Get();
    }
    if (overflow)
        Overflow(ProblemCode::LexerError);
    Unget(c);
    if (const std::size_t symbol = m_symbols.Lookup(Lexeme); symbol != 0) {
        Value = static_cast<std::int32_t>(symbol);
        return m_symbols.Code(symbol);
    }
    // The older program kept the digit value of the character after the number, if any: the
    // value of a bare number is not the number, and nothing reads it.
    Value = IsDigit(c) ? c - '0' : 0;
    return Token::Number;
}

std::int32_t Lexer::Word(int first)
{
    Lexeme.clear();
    int c = first;
    bool overflow = false;
    bool underscore = false;
    while (IsWordChar(c)) {
        if (!Store(c) && !overflow) {
            overflow = true;
            Overflow(ProblemCode::LexerError);
        }
        if (c == '_') {
            underscore = true;
            break;
        }
        c = Get();
    }
    int held = underscore ? kEnd : c;
    // "C" and "C_" are the common and cut time signs unless a length follows; "C_8" is a note.
    if (Lexeme == "C_" || Lexeme == "C") {
        if (Lexeme == "C_")
            held = Get();
        if (!IsDigit(held)) {
            Unget(held);
            return Lexeme == "C_" ? Token::CutTime : Token::CommonTime;
        }
    }
    Unget(held);
    const std::size_t symbol = m_symbols.Lookup(Lexeme);
    if (symbol == 0) {
        Value = 0;
        return Token::Unknown;
    }
    Value = static_cast<std::int32_t>(symbol);
    return underscore ? LengthAfter(symbol) : m_symbols.Code(symbol);
}

std::int32_t Lexer::LengthAfter(std::size_t symbol)
{
    int c = Get();
    if (!IsDigit(c)) {
        Unget(c);
        return m_symbols.Code(symbol);
    }
    std::string digits;
    while (IsDigit(c)) {
        if (digits.size() + 1 >= LexemeLimit) {
            Overflow(ProblemCode::LexerError);
            while (IsDigit(c))
                c = Get();
            break;
        }
        digits.push_back(static_cast<char>(c));
        c = Get();
    }
    Unget(c);
    // Lengths longer than an int are nonsense; what matters is not to overflow reading them.
    Value = digits.size() > 9 ? 0 : std::atoi(digits.c_str());
    Lexeme += digits;
    return m_symbols.Code(symbol);
}

std::int32_t Lexer::Title()
{
    m_titleKind = 'X';
    Lexeme.clear();
    bool overflow = false;
    int c = Get();
    while (c != '"' && c != '\r' && c != kEnd) {
        if (c == '\n')
            return Token::Title;
        if (!Store(c) && !overflow) {
            overflow = true;
            Overflow(ProblemCode::TitleError);
        }
        c = Get();
    }
    c = Get();
    if (c == '\n')
        return Token::Title;
    // A text standing among the notes ("01" over a bar) says no kind: the full reading goes on
    // with the notes after it rather than taking the rest of the line.
    if (c != ',' && m_log.Mode == Reading::Full) {
        Unget(c);
        return Token::Title;
    }
    // The rest of the line may say what the text is: "(Y," title, "(T," type, "(M," composer.
    bool seenParenthesis = false;
    while (c != '\r' && c != '\n' && c != kEnd) {
        if (c == '(' && !seenParenthesis) {
            seenParenthesis = true;
            const int kind = Get();
            if (kind == 'Y' || kind == 'T' || kind == 'M')
                m_titleKind = static_cast<char>(kind);
            c = kind;
            continue;
        }
        c = Get();
    }
    if (c != '"')
        Unget(c);
    return Token::Title;
}

} // namespace corrieval::bww
