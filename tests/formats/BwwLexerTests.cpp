#include "formats/bww/BwwLexer.h"
#include "support/RecordingMessages.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corrieval::bww {
namespace {

using testing::RecordingMessages;

struct Scanned {
    std::int32_t Code;
    std::int32_t Value;
};

// Every token of the text up to the end, the end included.
std::vector<Scanned> Scan(const QByteArray& text, ImportLog& log)
{
    Lexer lexer(text, log);
    std::vector<Scanned> tokens;
    for (int guard = 0; guard < 1000; ++guard) {
        const std::int32_t code = lexer.Next();
        tokens.push_back({code, lexer.Value});
        if (code == Token::EndOfFile)
            break;
    }
    return tokens;
}

std::vector<std::int32_t> Codes(const QByteArray& text)
{
    RecordingMessages messages;
    ImportLog log;
    std::vector<std::int32_t> codes;
    for (const Scanned& s : Scan(text, log))
        codes.push_back(s.Code);
    return codes;
}

TEST(BwwLexer, WordsTakeTheirLatestMeaning)
{
    EXPECT_EQ(Codes("hgrpb grpb hgrpc heplb ggrbp"),
              (std::vector<std::int32_t>{147, 82, 146, 118, 157, 400}));
    // Known words without a movement, and words the table does not know, are both -1.
    EXPECT_EQ(Codes("strc stre strf strhg sharpf"), (std::vector<std::int32_t>{-1, -1, -1, -1, -1, 400}));
}

TEST(BwwLexer, NotesCarryTheirLength)
{
    RecordingMessages messages;
    ImportLog log;
    const auto tokens = Scan("C_16 LGr_8 LG_ E_4", log);
    ASSERT_EQ(tokens.size(), 5u);
    EXPECT_EQ(tokens[0].Code, 288);
    EXPECT_EQ(tokens[0].Value, 16);
    EXPECT_EQ(tokens[1].Code, 280);
    EXPECT_EQ(tokens[1].Value, 8);
    // Without digits the value is the symbol's index, which is never a length.
    EXPECT_EQ(tokens[2].Code, 279);
    EXPECT_GT(tokens[2].Value, 32);
    EXPECT_EQ(tokens[3].Code, 294);
    EXPECT_EQ(tokens[3].Value, 4);
}

TEST(BwwLexer, CommonAndCutTimeAgainstTheNoteC)
{
    EXPECT_EQ(Codes("C_4"), (std::vector<std::int32_t>{288, 400}));
    EXPECT_EQ(Codes("C_ C C_"), (std::vector<std::int32_t>{344, 343, 344, 400}));
    EXPECT_EQ(Codes("C\r\n& 2_4 12_8 6_4"), (std::vector<std::int32_t>{343, 256, 334, 342, 338, 400}));
}

TEST(BwwLexer, TiesTripletsAndDots)
{
    EXPECT_EQ(Codes("^tlg"), (std::vector<std::int32_t>{330, 400}));
    // "a" is no tie's pitch: it comes back as a word of its own.
    EXPECT_EQ(Codes("^ta"), (std::vector<std::int32_t>{-1, -1, 400}));
    EXPECT_EQ(Codes("^3e E_8"), (std::vector<std::int32_t>{331, 294, 400}));
    EXPECT_EQ(Codes("^3hg"), (std::vector<std::int32_t>{331, 400}));
    EXPECT_EQ(Codes("'lg 'ha 'e 'hx"), (std::vector<std::int32_t>{315, 323, 320, -1, -1, 400}));
}

TEST(BwwLexer, BarLinesRepeatsAndEndings)
{
    EXPECT_EQ(Codes("I! I!'' !I ''!I !t ! _' '1 '2"),
              (std::vector<std::int32_t>{324, 325, 326, 327, 328, 257, 347, 345, 346, 400}));
    // A word cannot begin with a capital I: it goes with the character after it.
    EXPECT_EQ(Codes("InstrumentMappings"), (std::vector<std::int32_t>{-1, 400}));
    RecordingMessages messages;
    ImportLog log;
    const auto tokens = Scan("'23", log);
    EXPECT_EQ(tokens[0].Code, 346);
    EXPECT_EQ(tokens[0].Value, 3);
}

TEST(BwwLexer, TitlesAndTheirKinds)
{
    RecordingMessages messages;
    ImportLog log;
    Lexer lexer("\"The Ale\",(Y,C,0)\r\n\"March\",(T,L)\n\"Nobody\"\n\"Open", log);
    EXPECT_EQ(lexer.Next(), Token::Title);
    EXPECT_EQ(lexer.Lexeme, "The Ale");
    EXPECT_EQ(lexer.TitleKind(), 'Y');
    EXPECT_EQ(lexer.Next(), Token::Title);
    EXPECT_EQ(lexer.TitleKind(), 'T');
    EXPECT_EQ(lexer.Next(), Token::Title);
    EXPECT_EQ(lexer.TitleKind(), 'X');
    EXPECT_EQ(lexer.Next(), Token::Title);
    EXPECT_EQ(lexer.Lexeme, "Open");
    EXPECT_EQ(lexer.Next(), Token::EndOfFile);
    EXPECT_TRUE(messages.Texts.isEmpty());
}

TEST(BwwLexer, OverlongWordsAndTitlesAreErrorsNotOverruns)
{
    RecordingMessages messages;
    const QByteArray word(128, 'a');
    const QByteArray text = word + " \"" + QByteArray(500, 'b') + "\" " + QByteArray(127, 'c');
    ImportLog log;
    log.Mode = Reading::Strict;
    Scan(text, log);
    ASSERT_EQ(messages.Texts.size(), 2);
    EXPECT_EQ(messages.Texts[0], QStringLiteral("Error on line 0: lexer error \n tokenval = -1"));
    EXPECT_TRUE(messages.Texts[1].contains(QLatin1String("title error")));
    EXPECT_TRUE(log.ErrorFlag);
    // The full reading cuts them short instead.
    ImportLog full;
    Scan(text, full);
    EXPECT_EQ(messages.Texts.size(), 2);
    EXPECT_FALSE(full.ErrorFlag);
}

TEST(BwwLexer, ClefsCountTheLinesAndOtherBytesArePassedOver)
{
    RecordingMessages messages;
    ImportLog log;
    Lexer lexer("& \x93\xff,(){}\r\n&", log);
    EXPECT_EQ(lexer.Next(), Token::Clef);
    EXPECT_EQ(lexer.Next(), Token::Clef);
    EXPECT_EQ(lexer.StaveLine(), 2);
    EXPECT_EQ(lexer.TextLine(), 2);
    EXPECT_EQ(lexer.Next(), Token::EndOfFile);
    EXPECT_EQ(lexer.Next(), Token::EndOfFile);
}

} // namespace
} // namespace corrieval::bww
