#include "editor/UndoHistory.h"
#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "notation/GroupCommands.h"
#include "notation/NoteEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TieCommand.h"
#include "notation/TieEx.h"
#include "support/RecordingMessages.h"
#include "support/ScoreWalk.h"

#include <functional>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::BarOf;
using testing::MusicAreas;

QByteArray Bytes(CCorrievalDoc& doc)
{
    return StoreScore(doc, QStringLiteral("tune.skb"));
}

CStaveArea& FirstArea(const CCorrievalDoc& doc)
{
    return *MusicAreas(doc).front();
}

CNoteEx& NoteAt(const CCorrievalDoc& doc, std::size_t column, std::size_t index)
{
    return static_cast<CNoteEx&>(*BarOf(FirstArea(doc), 0, column).ChildAt(index));
}

CStaveGroup& FirstGroup(const CCorrievalDoc& doc)
{
    return static_cast<CStaveGroup&>(*FirstArea(doc).ChildAt(0));
}

struct Change {
    const char* Label;
    std::function<void(CCorrievalDoc&)> Make;
};

// Every kind of change the editor makes to a tune, each finding its objects afresh, since undo
// replaces them all.
const std::vector<Change>& Changes()
{
    static const std::vector<Change> changes{
        {"Add Note",
         [](CCorrievalDoc& doc) {
             CBarEx& bar = BarOf(FirstArea(doc), 0, 0);
             auto note = std::make_unique<CNoteEx>(8);
             note->SetBounds(bar.Bounds().X + 0.1f, bar.Bounds().Y, 0.156f, bar.Bounds().Height);
             bar.AddNoteSorted(std::move(note));
             bar.AutoOrganise();
         }},
        {"Delete",
         [](CCorrievalDoc& doc) { BarOf(FirstArea(doc), 0, 1).RemoveChild(&NoteAt(doc, 1, 0), true); }},
        {"Group",
         [](CCorrievalDoc& doc) {
             for (std::size_t i = 0; i < 2; ++i)
                 NoteAt(doc, 2, i).Duration = 8, NoteAt(doc, 2, i).UpdateChars();
             GroupNotes({&NoteAt(doc, 2, 0), &NoteAt(doc, 2, 1)});
         }},
        {"Ungroup", [](CCorrievalDoc& doc) { UngroupNotes({BarOf(FirstArea(doc), 0, 2).ChildAt(0)}); }},
        {"Tie",
         [](CCorrievalDoc& doc) {
             NoteAt(doc, 3, 1).Pitch = NoteAt(doc, 3, 0).Pitch;
             ASSERT_TRUE(ToggleTie({&NoteAt(doc, 3, 0), &NoteAt(doc, 3, 1)}, doc));
         }},
        {"Insert Bar", [](CCorrievalDoc& doc) { FirstGroup(doc).InsertBarColumn(1); }},
        {"Delete Bar", [](CCorrievalDoc& doc) { FirstGroup(doc).RemoveBarColumn(0, true); }},
        {"Repeat",
         [](CCorrievalDoc& doc) {
             FirstGroup(doc).SetBarLines(1, CStaveGroup::StartRepeatLine, CStaveGroup::EndRepeatLine);
         }},
        {"Auto Organise", [](CCorrievalDoc& doc) { FirstArea(doc).AutoOrganiseArea(true, true); }},
        {"Move",
         [](CCorrievalDoc& doc) {
             CStaveArea& area = FirstArea(doc);
             const RectF b = area.Bounds();
             area.SetBounds(b.X + 0.25f, b.Y + 0.5f, b.Width - 0.5f, b.Height - 1.0f);
         }},
        {"Add Page", [](CCorrievalDoc& doc) { doc.AddPage(doc.Pages.size()); }},
        {"Delete Page", [](CCorrievalDoc& doc) { doc.DeletePage(doc.Pages.back().get()); }},
        {"Tempo", [](CCorrievalDoc& doc) { doc.Tempo = 96; }},
        {"Lock", [](CCorrievalDoc& doc) { doc.Locked = 1; }},
    };
    return changes;
}

std::unique_ptr<CCorrievalDoc> Tune()
{
    return fixtures::BuildTune(
        {.Pages = 2, .Groups = 2, .Parts = 1, .Columns = 4, .NotesPerBar = 2, .Repeats = true});
}

TEST(UndoHistory, EveryKindOfChangeUndoesAndRedoesToTheSameBytes)
{
    testing::RecordingMessages messages;
    auto doc = Tune();
    UndoHistory history(*doc);
    std::vector<QByteArray> states{Bytes(*doc)};
    for (const Change& change : Changes()) {
        SCOPED_TRACE(change.Label);
        ASSERT_TRUE(history.Record(QString::fromLatin1(change.Label), [&] { change.Make(*doc); }));
        states.push_back(Bytes(*doc));
        EXPECT_EQ(history.UndoLabel(), QStringLiteral("Undo %1").arg(QString::fromLatin1(change.Label)));
        history.Undo();
        EXPECT_EQ(Bytes(*doc), states[states.size() - 2]);
        EXPECT_EQ(history.RedoLabel(), QStringLiteral("Redo %1").arg(QString::fromLatin1(change.Label)));
        history.Redo();
        EXPECT_EQ(Bytes(*doc), states.back());
    }
    // All the way back, through the tie and the pages, and forward again.
    for (std::size_t i = states.size() - 1; i > 0; --i) {
        ASSERT_TRUE(history.CanUndo());
        history.Undo();
        EXPECT_EQ(Bytes(*doc), states[i - 1]) << Changes()[i - 1].Label;
    }
    EXPECT_FALSE(history.CanUndo());
    while (history.CanRedo())
        history.Redo();
    EXPECT_EQ(Bytes(*doc), states.back());
    // The tie came back linked: its notes point at the tie the document owns.
    ASSERT_FALSE(doc->Ties.empty());
    for (const auto& tie : doc->Ties)
        for (CNoteEx* note : tie->Notes)
            EXPECT_EQ(note->Tie, tie.get());
    EXPECT_EQ(doc->Locked, 1);
    EXPECT_TRUE(messages.Texts.isEmpty()) << messages.Texts.join('\n').toStdString();
}

// The views keep pointers into the document: a restore refills the same one, and tells them before
// and after. The modified flag follows the saved state.
TEST(UndoHistory, RestoresIntoTheSameDocumentTellingTheViewsAndKeepsTheModifiedFlagInStep)
{
    auto doc = Tune();
    doc->SetModifiedFlag(false);
    UndoHistory history(*doc);
    int before = 0;
    int after = 0;
    QObject::connect(&history, &UndoHistory::aboutToRestore, [&] { ++before; });
    QObject::connect(&history, &UndoHistory::restored, [&] { EXPECT_EQ(before, ++after); });
    const QString path = doc->PathName();
    history.Record(QStringLiteral("Tempo"), [&] {
        doc->Tempo = 60;
        doc->SetModifiedFlag();
    });
    history.Undo();
    EXPECT_FALSE(doc->IsModified());
    history.Redo();
    EXPECT_EQ(after, 2);
    EXPECT_EQ(doc->Tempo, 60);
    EXPECT_EQ(doc->PathName(), path);
    EXPECT_TRUE(doc->IsModified());
    history.MarkSaved();
    EXPECT_FALSE(doc->IsModified());
    history.Undo();
    EXPECT_TRUE(doc->IsModified());

    // A tune that was never saved stays modified however far back it goes.
    auto imported = Tune();
    imported->SetModifiedFlag(true);
    UndoHistory importHistory(*imported);
    importHistory.Record(QStringLiteral("Tempo"), [&] { imported->Tempo = 60; });
    importHistory.Undo();
    EXPECT_TRUE(imported->IsModified());
}

TEST(UndoHistory, StepsAreCappedNestedAndOnlyKeptForRealChanges)
{
    auto doc = Tune();
    UndoHistory history(*doc, 3);
    for (int tempo = 61; tempo <= 65; ++tempo)
        history.Record(QStringLiteral("Tempo"), [&] { doc->Tempo = tempo; });
    int undone = 0;
    while (history.CanUndo()) {
        history.Undo();
        ++undone;
    }
    EXPECT_EQ(undone, 3);
    EXPECT_EQ(doc->Tempo, 62);

    // A new change drops what could have been redone.
    history.Record(QStringLiteral("Tempo"), [&] { doc->Tempo = 70; });
    EXPECT_FALSE(history.CanRedo());

    // A command made of others is one step; a command that changes nothing is none.
    const int steps = history.Stack().count();
    history.Record(QStringLiteral("Cut"), [&] {
        history.Record(QStringLiteral("Copy"), [] {});
        history.Record(QStringLiteral("Delete"), [&] { doc->Tempo = 71; });
    });
    EXPECT_EQ(history.Stack().count(), steps + 1);
    EXPECT_EQ(history.UndoLabel(), QStringLiteral("Undo Cut"));
    EXPECT_FALSE(history.Record(QStringLiteral("Tempo"), [&] { doc->Tempo = 71; }));
    EXPECT_EQ(history.Stack().count(), steps + 1);
}

} // namespace
} // namespace corrieval
