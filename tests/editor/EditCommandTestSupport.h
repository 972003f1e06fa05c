#pragma once

#include "ShownView.h"
#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "support/RecordingMessages.h"
#include "support/ScoreWalk.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <vector>

namespace corrieval::testing {

// Systems of bars of two crotchets each; the first system's pitches run 10 8 | 7 6 | 5 4 | 3 5.
inline fixtures::TuneShape CrotchetTune(int groups = 1, int columns = 4, int parts = 1)
{
    return {.Groups = groups, .Parts = parts, .Columns = columns, .NotesPerBar = 2};
}

// A shown view of a small tune, driven as the ribbon and the keyboard drive it.
struct EditedTune {
    explicit EditedTune(const fixtures::TuneShape& shape)
        : Shown(fixtures::BuildTune(shape)), View(*Shown.View)
    {
        Shown.Show();
    }

    // The view the model tells of selections and repaints, as the frame's active tab is.
    void Activate()
    {
        SetActiveViewProvider([this] { return &View; });
    }
    CCorrievalDoc& Doc() const { return *Shown.Doc; }
    CStaveArea& Music() const { return *MusicAreas(Doc()).front(); }
    CBarEx& Bar(std::size_t system, std::size_t column) const { return BarOf(Music(), system, column); }
    CNoteEx& Note(std::size_t system, std::size_t column, std::size_t index) const
    {
        return static_cast<CNoteEx&>(*Bar(system, column).ChildAt(index));
    }

    void Select(const std::vector<CScoObj*>& objects)
    {
        View.Selection().Clear();
        for (CScoObj* object : objects)
            View.Selection().Add(object);
    }
    CommandState State(int id)
    {
        CommandState state;
        EXPECT_TRUE(View.UpdateCommand(id, state)) << id;
        return state;
    }
    bool Enabled(int id) { return State(id).enabled; }
    // As the command table runs a command: only when enabled.
    void Run(int id)
    {
        if (Enabled(id))
            View.RunCommand(id);
    }
    void Key(Qt::Key key) { QTest::keyClick(&View, key); }
    // Runs "Properties" on `selected`; `answer` is handed the modal dialog that opens, and closes it.
    template <class Dialog, class Answer> void AnswerProperties(CScoObj* selected, const Answer& answer)
    {
        bool opened = false;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            opened = true;
            answer(*dialog);
        });
        Select({selected});
        Run(command::Properties);
        EXPECT_TRUE(opened);
    }
    // The mouse, at points in inches; paint first, so that notes and legs have their drawn shapes.
    void Paint() { Shown.Grab(); }
    QPoint Device(PointF p) const { return View.Transform().DocumentToDevice(p).toPoint(); }
    void Press(PointF p) { QTest::mousePress(View.viewport(), Qt::LeftButton, {}, Device(p)); }
    void Move(PointF p) { QTest::mouseMove(View.viewport(), Device(p)); }
    void Release(PointF p) { QTest::mouseRelease(View.viewport(), Qt::LeftButton, {}, Device(p)); }
    void Drag(PointF from, PointF to)
    {
        Press(from);
        Move(to);
        Release(to);
    }
    QByteArray Bytes() const { return StoreScore(Doc(), QStringLiteral("tune.skb")); }

    ShownView Shown;
    CCorrievalView& View;
};

} // namespace corrieval::testing

// The names the editing tests use unqualified.
namespace corrieval::edit_tests {
using namespace command;
using testing::ChildrenOf;
using testing::CrotchetTune;
using testing::EditedTune;
using testing::RecordingMessages;
} // namespace corrieval::edit_tests
