#include "EditCommandTestSupport.h"
#include "editor/StaveAreaPropertiesDialog.h"
#include "editor/TimeSigCombo.h"
#include "model/BarConfig.h"
#include "support/RecordingMessages.h"

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::EditedTune;
using testing::RecordingMessages;

const QString kInsertLine = QStringLiteral("Are you sure? Inserting staves cannot be cancelled.");
const QString kRemoveLine = QStringLiteral("Are you sure? Deleting staves cannot be cancelled.");
const QString kInsertPart = QStringLiteral("Are you sure? Inserting parts cannot be cancelled.");

fixtures::TuneShape Shape(int groups, int parts)
{
    return {.Groups = groups, .Parts = parts, .Columns = 4, .NotesPerBar = 2};
}

CStaveGroup& Line(const CStaveArea& area, std::size_t i)
{
    return static_cast<CStaveGroup&>(*area.ChildAt(i));
}

// The dialog over a tune's music area, driven through its own controls.
struct OpenDialog {
    explicit OpenDialog(CStaveArea& area) : Dialog(area) {}

    template <class W> W& Find(const char* name)
    {
        auto* widget = Dialog.findChild<W*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }
    void Click(const char* button) { Find<QPushButton>(button).click(); }
    bool Enabled(const char* button) { return Find<QPushButton>(button).isEnabled(); }
    void ChooseLine(int row)
    {
        auto& lines = Find<QTreeWidget>("lines");
        lines.setCurrentItem(lines.topLevelItem(row));
    }
    void ChoosePart(int row)
    {
        auto& parts = Find<QTreeWidget>("parts");
        parts.setCurrentItem(parts.topLevelItem(row));
    }

    CStaveAreaProperties Dialog;
};

TEST(StaveAreaProperties, OkAppliesTimeSignatureBarsDisplayAndSpacing)
{
    EditedTune tune(Shape(2, 1));
    CStaveArea& area = tune.Music();
    const std::uint32_t colour = area.Background & 0xFFFFFF;
    OpenDialog open(area);
    open.Find<CTimeSigCombo>("timeSig").setCurrentIndex(6);
    EXPECT_FALSE(open.Find<QSpinBox>("customBeats").isEnabled());
    open.ChooseLine(1);
    open.Find<QSpinBox>("bars").setValue(6);
    open.ChooseLine(0);
    EXPECT_EQ(open.Find<QSpinBox>("bars").value(), 4);
    open.Find<QSpinBox>("bars").setValue(2);
    open.Find<QCheckBox>("showKeySig").setChecked(true);
    open.Find<QCheckBox>("showBarLines").setChecked(false);
    open.Find<QSpinBox>("spacing").setValue(60);
    // Nothing reaches the area before OK.
    EXPECT_EQ(Line(area, 1).BarConfigs.size(), 4U);
    EXPECT_FALSE(area.ShowKeySig);
    open.Dialog.accept();

    EXPECT_EQ(area.InitialTimeSig.Type, 6);
    EXPECT_EQ(area.InitialTimeSig.GetBeats(), 2);
    EXPECT_EQ(area.InitialTimeSig.GetBeatUnit(), 4);
    EXPECT_EQ(Line(area, 0).BarConfigs.size(), 2U);
    EXPECT_EQ(static_cast<CStave&>(*Line(area, 0).ChildAt(0)).ChildCount(), 2U);
    EXPECT_EQ(Line(area, 1).BarConfigs.size(), 6U);
    EXPECT_TRUE(area.ShowKeySig);
    EXPECT_TRUE(area.ShowTimeSig);
    EXPECT_FALSE(area.ShowBarLines);
    // The spacing chosen outlives the re-stacking of the lines that OK does first.
    EXPECT_EQ(area.StaveSpacing, 60);
    EXPECT_EQ(Line(area, 1).Spacing, 60);
    EXPECT_EQ(area.Background, 0x64000000 | colour);
}

TEST(StaveAreaProperties, CustomTimeSignatureTakesItsNumbers)
{
    EditedTune tune(Shape(1, 1));
    OpenDialog open(tune.Music());
    auto& combo = open.Find<CTimeSigCombo>("timeSig");
    EXPECT_EQ(combo.count(), 18);
    EXPECT_EQ(combo.itemText(17), QStringLiteral("Custom"));
    combo.setCurrentIndex(17);
    ASSERT_TRUE(open.Find<QSpinBox>("customBeats").isEnabled());
    open.Find<QSpinBox>("customBeats").setValue(40);
    open.Find<QSpinBox>("customUnit").setValue(8);
    open.Dialog.accept();
    EXPECT_EQ(tune.Music().InitialTimeSig.GetBeats(), 32);
    EXPECT_EQ(tune.Music().InitialTimeSig.GetBeatUnit(), 8);
}

TEST(StaveAreaProperties, LinesAndPartsChangeAtOnceOnlyWhenConfirmedAndStayAfterCancel)
{
    EditedTune tune(Shape(2, 1));
    CStaveArea& area = tune.Music();
    RecordingMessages messages;
    {
        OpenDialog open(area);
        messages.Answer = MessageAnswer::Cancel;
        open.Click("insertLine");
        EXPECT_EQ(messages.Texts, QStringList{kInsertLine});
        EXPECT_EQ(messages.LastKind, MessageKind::OkCancel);
        EXPECT_EQ(area.ChildCount(), 2U);

        messages.Answer = MessageAnswer::Ok;
        open.ChooseLine(0);
        open.Find<QSpinBox>("bars").setValue(3); // not applied by the buttons of lines
        open.Click("insertLine");
        ASSERT_EQ(area.ChildCount(), 3U);
        EXPECT_EQ(Line(area, 1).BarConfigs.size(), 4U);
        EXPECT_EQ(Line(area, 1).ChildCount(), 1U);
        EXPECT_EQ(Line(area, 0).BarConfigs.size(), 4U);
        EXPECT_EQ(open.Find<QTreeWidget>("lines").topLevelItem(2)->text(0), QStringLiteral("3"));

        CStaveGroup* last = &Line(area, 2);
        open.ChooseLine(1);
        open.Click("removeLine");
        EXPECT_EQ(messages.Texts.back(), kRemoveLine);
        ASSERT_EQ(area.ChildCount(), 2U);
        EXPECT_EQ(&Line(area, 1), last);

        // A new part is a treble stave in every line, its bars in the line's columns; the bars
        // chosen for the lines so far go in with it.
        open.Click("insertPart");
        EXPECT_EQ(messages.Texts.back(), kInsertPart);
        EXPECT_EQ(area.PartCount, 2);
        for (std::size_t i = 0; i < area.ChildCount(); ++i) {
            ASSERT_EQ(Line(area, i).ChildCount(), 2U);
            const auto& added = static_cast<const CStave&>(*Line(area, i).ChildAt(1));
            EXPECT_EQ(added.Clef.Type, CClef::Treble);
            ASSERT_EQ(added.ChildCount(), Line(area, i).BarConfigs.size());
            EXPECT_EQ(static_cast<const CBarEx&>(*added.ChildAt(0)).Config,
                      Line(area, i).BarConfigs[0].get());
        }
        EXPECT_EQ(Line(area, 0).BarConfigs.size(), 3U);
        EXPECT_EQ(open.Find<QTreeWidget>("parts").topLevelItem(1)->text(2), QStringLiteral("Pipes"));

        open.ChoosePart(0);
        open.Click("removePart");
        EXPECT_EQ(area.PartCount, 1);
        EXPECT_EQ(Line(area, 0).ChildCount(), 1U);
        open.Find<CTimeSigCombo>("timeSig").setCurrentIndex(6);
        open.Find<QCheckBox>("showKeySig").setChecked(true);
        open.Dialog.reject();
    }
    EXPECT_EQ(area.ChildCount(), 2U);
    EXPECT_EQ(area.PartCount, 1);
    EXPECT_EQ(area.InitialTimeSig.Type, 8); // as the tune was built
    EXPECT_FALSE(area.ShowKeySig);
}

// Which of insert line, remove line, insert part and remove part the dialog offers.
std::vector<bool> Offered(OpenDialog& open)
{
    return {open.Enabled("insertLine"), open.Enabled("removeLine"), open.Enabled("insertPart"),
            open.Enabled("removePart")};
}

TEST(StaveAreaProperties, LimitsOfLinesPartsAndBars)
{
    EditedTune full(Shape(20, 4));
    OpenDialog most(full.Music());
    EXPECT_EQ(Offered(most), (std::vector<bool>{false, true, false, true}));
    auto& bars = most.Find<QSpinBox>("bars");
    bars.setValue(10);
    EXPECT_EQ(bars.value(), CStaveAreaProperties::MaxSpinBars);

    // A line loaded with more bars than the spin reaches keeps them through OK.
    EditedTune wide({.Groups = 1, .Parts = 1, .Columns = 12});
    OpenDialog wider(wide.Music());
    EXPECT_EQ(wider.Find<QSpinBox>("bars").value(), 12);
    wider.Dialog.accept();
    EXPECT_EQ(Line(wide.Music(), 0).BarConfigs.size(), 12U);

    EditedTune single(Shape(1, 1));
    OpenDialog least(single.Music());
    EXPECT_EQ(Offered(least), (std::vector<bool>{true, false, true, false}));
}

// Properties on a music area opens this dialog, and its one undo step takes back a line the
// dialog inserted even though the dialog was cancelled.
TEST(StaveAreaProperties, UndoTakesBackWhatTheButtonsDidBeforeCancel)
{
    EditedTune tune(Shape(2, 1));
    RecordingMessages messages;
    tune.Select({&tune.Music()});
    bool seen = false;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<CStaveAreaProperties*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        seen = true;
        dialog->findChild<QPushButton*>(QStringLiteral("insertLine"))->click();
        dialog->reject();
    });
    tune.Run(command::Properties);
    ASSERT_TRUE(seen);
    EXPECT_EQ(tune.Music().ChildCount(), 3U);
    ASSERT_TRUE(tune.View.History().CanUndo());
    tune.View.History().Undo();
    EXPECT_EQ(tune.Music().ChildCount(), 2U);
}

} // namespace
} // namespace corrieval
