#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/PipeDoc.h"
#include "support/RecordingMessages.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::RecordingMessages;

const QByteArray kHeader = "Bagpipe Reader:1.0\r\n"
                           "\"Corrieval March\",(T,C,0,0,Times New Roman,16)\r\n"
                           "\"March\",(Y,L,0,0,Times New Roman,14)\r\n"
                           "\"Converted by a tool\",(M,R)\r\n"
                           "\"A. Piper\",(M,R,0,0,Times New Roman,14)\r\n\r\n";

// Four bars to a stave line, each of one crotchet of `note`.
QByteArray Line(const char* note, const char* end = "!t")
{
    return QByteArray("& ") + note + " ! " + note + " ! " + note + " ! " + note + " " + end + "\r\n";
}

std::int32_t NoteCount(const CPipeDoc& doc)
{
    std::int32_t n = 0;
    for (const auto& bar : doc.Bars)
        n += static_cast<std::int32_t>(bar->Notes.size());
    return n;
}

TEST(BwwParser, HeaderTextsGoByTheirKind)
{
    RecordingMessages messages;
    bww::ImportLog log;
    const auto doc = ReadBww(kHeader + "& 2_4 E_4 !t", log);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->CentreText.Text, QStringLiteral("Corrieval March"));
    EXPECT_EQ(doc->LeftText.Text, QStringLiteral("March"));
    EXPECT_EQ(doc->RightText.Text, QStringLiteral("A. Piper"));
    EXPECT_EQ(doc->TimeSigText, QStringLiteral("\""));
    EXPECT_TRUE(messages.Texts.isEmpty());

    // Files mark the title T and the type Y; the strict reading takes them the other way round.
    // A file may open straight with its texts: kinds make them a header, not positional texts.
    const QByteArray opensWithTexts = "\"Me\",(M,R)\n\"Lament\",(T,C)\n\"Slow Air\",(Y,L)\n& E_4 !t";
    const auto full = ReadBww(opensWithTexts, log);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->CentreText.Text, QStringLiteral("Lament"));
    EXPECT_EQ(full->LeftText.Text, QStringLiteral("Slow Air"));
    EXPECT_EQ(full->RightText.Text, QStringLiteral("Me"));
    log.Mode = bww::Reading::Strict;
    const auto strict = ReadBww("x " + opensWithTexts, log);
    ASSERT_NE(strict, nullptr);
    EXPECT_EQ(strict->CentreText.Text, QStringLiteral("Slow Air"));
    EXPECT_EQ(strict->LeftText.Text, QStringLiteral("Lament"));
}

TEST(BwwParser, HeadersThatFallShortAreRefusedWhenStrict)
{
    RecordingMessages messages;
    bww::ImportLog log;
    log.Mode = bww::Reading::Strict;
    EXPECT_EQ(ReadBww("\"Title\"\n\"March\"\n& E_4 !t", log), nullptr);
    EXPECT_EQ(messages.Texts, QStringList{QStringLiteral("Invalid BMW file!")});
    EXPECT_EQ(messages.LastKind, MessageKind::Warning);
    // A text with no kind does not count towards the three.
    EXPECT_EQ(ReadBww("x \"Tune\",(Y)\n\"March\"\n\"Me\",(M)\n& E_4 !t", log), nullptr);
    EXPECT_EQ(messages.Texts.last(), QStringLiteral("Invalid BWW file!"));
    // With no title of kind Y, three named texts still make a tune called "Unknown".
    const auto doc = ReadBww("x \"A\",(T)\n\"B\",(T)\n\"Me\",(M)\n& E_4 !t", log);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->CentreText.Text, QStringLiteral("Unknown"));
}

TEST(BwwParser, SixFourIsAlwaysAMismatchWhenStrict)
{
    RecordingMessages messages;
    bww::ImportLog log;
    log.Mode = bww::Reading::Strict;
    EXPECT_EQ(ReadBww(kHeader + "& 6_4 E_4 !t", log), nullptr);
    ASSERT_FALSE(messages.Texts.isEmpty());
    EXPECT_TRUE(messages.Texts[0].startsWith(QLatin1String("Error on line 1: token misMatch")));
}

TEST(BwwParser, PlainPartsEndBySize)
{
    RecordingMessages messages;
    bww::ImportLog log;
    // Two lines of four bars close a part without a repeat sign; the third line starts the next,
    // which the end of the file closes. Its last bar line opens no fifth bar.
    const auto doc = ReadBww(kHeader + Line("E_4") + Line("D_4") + Line("C_4", "!"), log);
    ASSERT_NE(doc, nullptr);
    ASSERT_EQ(doc->Parts.size(), 2u);
    EXPECT_EQ(doc->Parts[0]->BarCount, 8);
    EXPECT_EQ(doc->Parts[0]->AnacrusisState, CPart::NoUpbeat);
    EXPECT_EQ(doc->Parts[1]->BarCount, 4);
    EXPECT_EQ(doc->Parts[1]->AnacrusisState, CPart::NoUpbeat);
    EXPECT_EQ(NoteCount(*doc), 12);
    // Pitches land on their older stave positions: E is 24.
    EXPECT_EQ(doc->BarAt(1, 1)->Notes[0]->Pitch, 24);
    EXPECT_EQ(doc->BarAt(1, 1)->Notes[0]->Code, 2);
}

TEST(BwwParser, AnUpbeatBarMakesThePartNineBars)
{
    RecordingMessages messages;
    bww::ImportLog log;
    const auto doc = ReadBww(kHeader + "& A_8 ! " + Line("E_4").mid(2) + Line("D_4") + Line("C_4"), log);
    ASSERT_NE(doc, nullptr);
    ASSERT_GE(doc->Parts.size(), 1u);
    EXPECT_EQ(doc->Parts[0]->AnacrusisState, CPart::Upbeat);
    EXPECT_EQ(doc->Parts[0]->BarCount, 9);
}

TEST(BwwParser, RepeatSignsCloseAPartAndEndingsAreMarked)
{
    RecordingMessages messages;
    bww::ImportLog log;
    const auto doc = ReadBww(kHeader + "& I!'' E_4 ! D_4 ! C_4 ! B_4 !t\r\n"
                                       "& '1 E_4 ! D_4 _' ''!I\r\n& '2 C_4 ! B_4 _' !I\r\n"
                                       "& I!'' LA_4 ! B_4 ''!I\r\n",
                             log);
    ASSERT_NE(doc, nullptr);
    ASSERT_EQ(doc->Parts.size(), 2u);
    EXPECT_EQ(doc->Parts[0]->EndingKind, CPart::FirstTime);
    EXPECT_EQ(doc->Parts[0]->BarCount, 8);
    EXPECT_EQ(doc->Parts[1]->EndingKind, CPart::NoEnding);
    EXPECT_EQ(doc->Parts[1]->BarCount, 2);
}

TEST(BwwParser, BeamsDotsTiesAndTriplets)
{
    RecordingMessages messages;
    bww::ImportLog log;
    const auto doc = ReadBww(kHeader + "& gg Er_8 'e Dl_16 E_4 ^te ! E_4 Fr_8 El_8 Dl_8 ^3e !I", log);
    ASSERT_NE(doc, nullptr);
    const CBar* first = doc->BarAt(1, 1);
    ASSERT_NE(first, nullptr);
    ASSERT_EQ(first->Notes.size(), 4u);
    EXPECT_EQ(first->Notes[0]->Code, 30);
    EXPECT_EQ(first->Notes[0]->Pitch, 26);
    EXPECT_EQ(first->Notes[1]->Dot, 1);
    EXPECT_EQ(first->Notes[2]->Code, 3);
    ASSERT_EQ(first->Groups.size(), 1u);
    EXPECT_EQ(first->Groups[0]->NoteIds.size(), 2u);
    // The tie reaches over the bar line; the three notes marked by ^3 make a triplet.
    ASSERT_EQ(doc->Ties.size(), 2u);
    EXPECT_EQ(doc->Ties[0]->First, first->Notes[3]->Id);
    EXPECT_EQ(doc->Ties[0]->Second, doc->BarAt(1, 2)->Notes[0]->Id);
    EXPECT_EQ(doc->Ties[0]->Third, 0);
    EXPECT_NE(doc->Ties[1]->Third, 0);
}

TEST(BwwParser, ABarOfMoreThan32ItemsIsWholeInFullAndCutWhenStrict)
{
    // Forty items: twenty notes, each after a gracenote, then a dot for the last note.
    QByteArray longBar = "& ";
    for (int i = 0; i < 20; ++i)
        longBar += "gg E_16 ";
    const QByteArray tune = kHeader + longBar + "'e !I\r\n";
    for (const bww::Reading mode : {bww::Reading::Full, bww::Reading::Strict}) {
        RecordingMessages messages;
        bww::ImportLog log;
        log.Mode = mode;
        const auto doc = ReadBww(tune, log);
        ASSERT_NE(doc, nullptr);
        ASSERT_EQ(doc->Bars.size(), 1u);
        const auto& notes = doc->Bars[0]->Notes;
        if (mode == bww::Reading::Full) {
            EXPECT_EQ(notes.size(), 40u);
            EXPECT_EQ(notes.back()->Dot, 1);
            EXPECT_TRUE(messages.Texts.isEmpty());
            EXPECT_TRUE(log.Problems.empty());
            continue;
        }
        // The dot belongs to the 20th note, which is left out, and not to the last one kept.
        EXPECT_EQ(notes.size(), 32u);
        EXPECT_EQ(notes.back()->Dot, 0);
        const QString cut =
            QStringLiteral("A bar holds more than 32 notes: the notes after the 32nd are left out.");
        EXPECT_EQ(messages.Texts, QStringList{cut});
        ASSERT_EQ(log.Problems.size(), 1u);
        EXPECT_EQ(log.Problems[0].Code, bww::ProblemCode::BarTooLong);
    }
}

TEST(BwwParser, APartOfMoreThan24BarsIsCutShort)
{
    RecordingMessages messages;
    bww::ImportLog log;
    QByteArray longPart = "& ";
    for (int i = 0; i < 30; ++i)
        longPart += "E_4 ! ";
    const auto doc = ReadBww(kHeader + longPart + "!I\r\n", log);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->Parts.back()->BarCount, 24);
    ASSERT_EQ(log.Problems.size(), 1u);
    EXPECT_EQ(log.Problems[0].Code, bww::ProblemCode::PartTooLong);
}

TEST(BwwParser, PassedOverWordsAreLoggedWithTheirLines)
{
    RecordingMessages messages;
    bww::ImportLog log;
    const auto doc = ReadBww(kHeader + "& sharpf sharpc 4_4 E_4 !\r\nfermatb E_4 !I", log);
    ASSERT_NE(doc, nullptr);
    // The key signature is drawn, so only the pause is passed over.
    EXPECT_TRUE(doc->ShowKeySig);
    ASSERT_EQ(log.PassedWords.size(), 1u);
    EXPECT_EQ(log.PassedWords[0].Word, QStringLiteral("fermatb"));
    EXPECT_EQ(log.PassedWords[0].Line, 8);
    EXPECT_EQ(doc->TimeSigText, QStringLiteral("$"));
}

} // namespace
} // namespace corrieval
