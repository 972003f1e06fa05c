#include "editor/CrossProcessClipboard.h"
#include "editor/ScoreClipboard.h"
#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/AbbreviationArea.h"
#include "model/CorrievalDoc.h"
#include "notation/FixedNoteGroup.h"
#include "notation/GroupCommands.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TextArea.h"
#include "notation/TieCommand.h"
#include "support/RecordingMessages.h"
#include "support/RecordingPainter.h"
#include "support/ScoreRoundTrip.h"
#include "support/ScoreWalk.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QTimer>
#include <gtest/gtest.h>
#include <iostream>

namespace corrieval {

namespace {

using testing::BarOf;
using testing::ChildrenOf;
using testing::MusicAreas;

// One system of four bars with two crotchets each, and a title.
std::unique_ptr<CCorrievalDoc> ClipboardTune()
{
    return fixtures::BuildTune({.Groups = 1, .Parts = 1, .Columns = 4, .NotesPerBar = 2});
}

CBarEx& Bar(const CCorrievalDoc& doc, std::size_t column)
{
    return BarOf(*MusicAreas(doc).front(), 0, column);
}

std::vector<CScoObj*> NotesOf(std::initializer_list<CBarEx*> bars)
{
    std::vector<CScoObj*> notes;
    for (CBarEx* bar : bars)
        for (const auto& child : bar->Children())
            notes.push_back(child.get());
    return notes;
}

std::vector<CNoteEx*> PlainNotes(const CBarEx& bar)
{
    return ChildrenOf<CNoteEx>(bar);
}

} // namespace

namespace testing {

int ServeClipboard(QGuiApplication& app)
{
    auto doc = ClipboardTune();
    ScoreClipboard clipboard;
    clipboard.Copy(NotesOf({&Bar(*doc, 0), &Bar(*doc, 1)}));
    std::cout << "copied" << std::endl;
    // Ended by the test; the timer only keeps a forgotten copy from running on.
    QTimer::singleShot(30000, &app, &QCoreApplication::quit);
    return app.exec();
}

} // namespace testing

namespace {

// What does not fit, with its message, the editing tests show through the Paste command.
TEST(Clipboard, NotesSpreadOverAsManyBarsAsTheyCameFrom)
{
    testing::RecordingMessages messages;
    auto doc = ClipboardTune();
    ScoreClipboard clipboard;
    const NotePitch firstPitch = PlainNotes(Bar(*doc, 0)).front()->Pitch;
    PlainNotes(Bar(*doc, 2)).front()->Pitch = firstPitch - 2;
    // Bars 1 and 3: the gap between them does not count.
    clipboard.Copy(NotesOf({&Bar(*doc, 0), &Bar(*doc, 2)}));
    ASSERT_EQ(clipboard.List().Items.size(), 4u);
    EXPECT_TRUE(clipboard.CanPaste(&Bar(*doc, 1)));
    EXPECT_FALSE(clipboard.CanPaste(doc->Pages.front().get()));
    ASSERT_TRUE(clipboard.Paste(&Bar(*doc, 1)));
    ASSERT_EQ(PlainNotes(Bar(*doc, 1)).size(), 4u);
    ASSERT_EQ(PlainNotes(Bar(*doc, 2)).size(), 4u);
    EXPECT_EQ(PlainNotes(Bar(*doc, 1))[2]->Pitch, firstPitch);
    EXPECT_EQ(PlainNotes(Bar(*doc, 2))[2]->Pitch, firstPitch - 2);
    for (std::size_t column : {1u, 2u}) {
        for (CNoteEx* note : PlainNotes(Bar(*doc, column))) {
            EXPECT_EQ(note->RepeatId, 0);
            EXPECT_TRUE(Bar(*doc, column).ContainsItem(*note));
        }
    }
    EXPECT_TRUE(messages.Texts.isEmpty());
    testing::Reloaded(*doc);
}

TEST(Clipboard, GroupsAndMovementsTravelWhole)
{
    testing::RecordingMessages messages;
    auto doc = ClipboardTune();
    for (CNoteEx* note : PlainNotes(Bar(*doc, 0))) {
        note->Duration = 8;
        note->UpdateChars();
    }
    CNoteGroupEx* group = GroupNotes(NotesOf({&Bar(*doc, 0)}));
    ASSERT_NE(group, nullptr);
    auto movement = std::make_unique<CFixedNoteGroup>(QStringLiteral("Throw On D"));
    movement->BuildNotes(QStringLiteral("JKK"), QStringLiteral("847"), 0, 0);
    movement->SetBounds(Bar(*doc, 0).Bounds().X, Bar(*doc, 0).Bounds().Y, 0.3f, Bar(*doc, 0).Bounds().Height);
    CScoObj* placed = Bar(*doc, 0).AddNoteSorted(std::move(movement));

    ScoreClipboard clipboard;
    clipboard.Copy({group, placed});
    ASSERT_TRUE(clipboard.Paste(&Bar(*doc, 3)));
    const auto groups = ChildrenOf<CNoteGroupEx>(Bar(*doc, 3));
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups.front()->Notes().size(), 2u);
    const auto movements = ChildrenOf<CFixedNoteGroup>(Bar(*doc, 3));
    ASSERT_EQ(movements.size(), 1u);
    EXPECT_EQ(movements.front()->GetNoteCount(), 3);
    EXPECT_EQ(movements.front()->GetRepeatLink().Id, 0);
    EXPECT_TRUE(messages.Texts.isEmpty());
}

TEST(Clipboard, AreasPasteOntoAPageAndOnlyTheHeadIsCopied)
{
    testing::RecordingMessages messages;
    auto doc = ClipboardTune();
    CTunePage& page = *doc->Pages.front();
    CTextArea* title = ChildrenOf<CTextArea>(page).front();
    ScoreClipboard clipboard;
    clipboard.Copy({title, MusicAreas(*doc).front()});
    ASSERT_EQ(clipboard.List().Items.size(), 1u);
    EXPECT_TRUE(clipboard.CanPaste(&page));
    EXPECT_FALSE(clipboard.CanPaste(&Bar(*doc, 0)));

    ASSERT_TRUE(clipboard.Paste(&page));
    const auto titles = ChildrenOf<CTextArea>(page);
    ASSERT_EQ(titles.size(), 2u);
    EXPECT_EQ(titles[1]->Text, titles[0]->Text);

    // A music area comes with its bars and notes, laid out again where it lands.
    clipboard.Copy({MusicAreas(*doc).front()});
    ASSERT_TRUE(clipboard.Paste(&page));
    ASSERT_EQ(MusicAreas(*doc).size(), 2u);
    EXPECT_EQ(PlainNotes(BarOf(*MusicAreas(*doc)[1], 0, 3)).size(), 2u);

    // Each kind of item needs its own kind of target.
    EXPECT_FALSE(clipboard.Paste(&Bar(*doc, 0)));
    clipboard.Copy(NotesOf({&Bar(*doc, 0)}));
    EXPECT_FALSE(clipboard.Paste(&page));
    EXPECT_EQ(messages.Texts,
              (QStringList{
                  QStringLiteral("A blank area must be selected to paste text, music, and image items etc."),
                  QStringLiteral("A bar must be selected to paste notes.")}));
}

TEST(Clipboard, WhatCannotBeCopiedLeavesNothingToPaste)
{
    testing::RecordingMessages messages;
    auto doc = ClipboardTune();
    ScoreClipboard clipboard;
    clipboard.Copy(NotesOf({&Bar(*doc, 0)}));

    // An abbreviation area is not copied, and the clipboard keeps what it had.
    CAbbreviationArea legend;
    EXPECT_FALSE(ScoreClipboard::CanCopy({&legend}));
    clipboard.Copy({&legend});
    EXPECT_TRUE(clipboard.List().Items.empty());
    EXPECT_TRUE(clipboard.Paste(&Bar(*doc, 3)));

    // A bar copies as an empty list: the paste does nothing and says nothing.
    clipboard.Copy({&Bar(*doc, 1)});
    EXPECT_FALSE(clipboard.CanPaste(&Bar(*doc, 2)));
    EXPECT_FALSE(clipboard.Paste(&Bar(*doc, 2)));
    EXPECT_EQ(PlainNotes(Bar(*doc, 2)).size(), 2u);

    // Tied notes are copied with a warning; a cut would leave them.
    PlainNotes(Bar(*doc, 1))[1]->Pitch = PlainNotes(Bar(*doc, 1))[0]->Pitch;
    ASSERT_TRUE(ToggleTie(NotesOf({&Bar(*doc, 1)}), *doc));
    clipboard.Copy(NotesOf({&Bar(*doc, 1)}));
    EXPECT_EQ(clipboard.List().Items.size(), 2u);
    EXPECT_EQ(
        messages.Texts,
        QStringList{QStringLiteral(
            "Items will be added to clipboard but a selection containing tied notes will not be cut.")});
    EXPECT_EQ(static_cast<const CNoteEx&>(*clipboard.List().Items.front()).Tie, nullptr);
}

// Clipboard bytes come from outside. Every truncation and thousands of damaged copies of real
// blocks, and blocks of noise, paste nothing but what reads whole, and never crash.
TEST(Clipboard, DamagedBlocksPasteNothingAndSaySo)
{
    auto doc = ClipboardTune();
    ScoreClipboard source;
    source.Copy(NotesOf({&Bar(*doc, 0), &Bar(*doc, 1)}));
    const QByteArray notes = EncodeClipboard(source.List());
    source.Copy({MusicAreas(*doc).front()});
    const QByteArray music = EncodeClipboard(source.List());

    std::vector<QByteArray> blocks;
    for (const QByteArray& whole : {notes, music}) {
        for (qsizetype n = 0; n < whole.size(); ++n)
            blocks.push_back(whole.left(n));
    }
    QRandomGenerator random(13);
    for (int i = 0; i < 1500; ++i) {
        QByteArray damaged = i % 2 == 0 ? notes : music;
        for (int k = 0; k < 1 + i % 3; ++k)
            damaged[random.bounded(damaged.size())] = static_cast<char>(random.bounded(256));
        blocks.push_back(damaged);
        QByteArray noise(random.bounded(1, 64), '\0');
        for (char& c : noise)
            c = static_cast<char>(random.bounded(256));
        blocks.push_back(noise);
    }

    ScoreClipboard clipboard;
    testing::RecordingPainter painter;
    int refused = 0;
    for (const QByteArray& block : blocks) {
        testing::RecordingMessages messages;
        auto target = ClipboardTune();
        ScoreClipboard::WriteSystemClipboard(block);
        const bool pasted = clipboard.Paste(&Bar(*target, 2)) | clipboard.Paste(target->Pages.front().get());
        if (!messages.Texts.isEmpty() &&
            messages.Texts.front().startsWith("The clipboard holds damaged music")) {
            ++refused;
            EXPECT_FALSE(pasted);
            EXPECT_EQ(Bar(*target, 2).ChildCount(), 2u);
        }
        // Whatever did read whole is a score like any other.
        target->Pages.front()->Draw(painter, OutputMode::Screen);
        ReadScore(StoreScore(*target, "fuzzed.skb"), "fuzzed.skb");
    }
    EXPECT_GT(refused, static_cast<int>(blocks.size()) / 2);
}

TEST(Clipboard, PastesWhatAnotherRunningCopyCopied)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        GTEST_SKIP() << "the offscreen clipboard ends with its process: run under xvfb-run";
    QProcess other;
    other.start(QCoreApplication::applicationFilePath(),
                {QString::fromLatin1(testing::ServeClipboardArgument)});
    ASSERT_TRUE(other.waitForReadyRead(20000)) << other.errorString().toStdString();
    ASSERT_EQ(other.readLine().trimmed(), "copied");

    testing::RecordingMessages messages;
    auto doc = ClipboardTune();
    ScoreClipboard clipboard;
    EXPECT_TRUE(clipboard.Paste(&Bar(*doc, 2)));
    EXPECT_EQ(PlainNotes(Bar(*doc, 2)).size(), 4u);
    EXPECT_EQ(PlainNotes(Bar(*doc, 3)).size(), 4u);
    EXPECT_TRUE(messages.Texts.isEmpty());
    other.terminate();
    other.waitForFinished();
}

} // namespace
} // namespace corrieval
