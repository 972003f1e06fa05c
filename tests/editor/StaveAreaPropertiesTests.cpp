#include "EditCommandTestSupport.h"
#include "editor/StaveAreaPropertiesDialog.h"
#include "editor/TimeSigCombo.h"
#include "model/BarConfig.h"
#include "support/RecordingMessages.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::CrotchetTune;
using testing::EditedTune;
using testing::RecordingMessages;

const QString kInsertLine = QStringLiteral("Are you sure? Inserting staves cannot be cancelled.");
const QString kRemoveLine = QStringLiteral("Are you sure? Deleting staves cannot be cancelled.");
const QString kInsertPart = QStringLiteral("Are you sure? Inserting parts cannot be cancelled.");

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
    // Makes `row` of the "lines" or "parts" list current.
    void Choose(const char* list, int row)
    {
        auto& tree = Find<QTreeWidget>(list);
        tree.setCurrentItem(tree.topLevelItem(row));
    }

    CStaveAreaProperties Dialog;
};

TEST(StaveAreaProperties, OkAppliesTimeSignatureBarsDisplayAndSpacing)
{
    EditedTune tune(CrotchetTune(2));
    CStaveArea& area = tune.Music();
    const std::uint32_t colour = area.Background & 0xFFFFFF;
    OpenDialog open(area);
    open.Find<CTimeSigCombo>("timeSig").setCurrentIndex(6);
    EXPECT_FALSE(open.Find<QSpinBox>("customBeats").isEnabled());
    open.Choose("lines", 1);
    open.Find<QSpinBox>("bars").setValue(6);
    open.Choose("lines", 0);
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
    EXPECT_EQ(Line(area, 0).BarConfigs.size(), 2U);
    EXPECT_EQ(static_cast<CStave&>(*Line(area, 0).ChildAt(0)).ChildCount(), 2U);
    EXPECT_EQ(Line(area, 1).BarConfigs.size(), 6U);
    EXPECT_TRUE(area.ShowKeySig);
    EXPECT_FALSE(area.ShowBarLines);
    // The spacing chosen outlives the re-stacking of the lines that OK does first.
    EXPECT_EQ(area.StaveSpacing, 60);
    EXPECT_EQ(Line(area, 1).Spacing, 60);
    EXPECT_EQ(area.Background, 0x64000000 | colour);
}

TEST(StaveAreaProperties, LinesAndPartsChangeAtOnceOnlyWhenConfirmedAndStayAfterCancel)
{
    EditedTune tune(CrotchetTune(2));
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
        open.Choose("lines", 0);
        open.Find<QSpinBox>("bars").setValue(3); // not applied by the buttons of lines
        open.Click("insertLine");
        ASSERT_EQ(area.ChildCount(), 3U);
        EXPECT_EQ(Line(area, 1).BarConfigs.size(), 4U);
        EXPECT_EQ(Line(area, 1).ChildCount(), 1U);
        EXPECT_EQ(Line(area, 0).BarConfigs.size(), 4U);
        EXPECT_EQ(open.Find<QTreeWidget>("lines").topLevelItem(2)->text(0), QStringLiteral("3"));

        CStaveGroup* last = &Line(area, 2);
        open.Choose("lines", 1);
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

        open.Choose("parts", 0);
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

TEST(StaveAreaProperties, LimitsOfLinesPartsBarsAndCustomBeats)
{
    EditedTune full(CrotchetTune(20, 4, 4));
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

    EditedTune single(CrotchetTune());
    OpenDialog least(single.Music());
    EXPECT_EQ(Offered(least), (std::vector<bool>{true, false, true, false}));
    // The last entry, "Custom", takes the spins' numbers, its beats held to what a bar shows.
    least.Find<CTimeSigCombo>("timeSig").setCurrentIndex(17);
    ASSERT_TRUE(least.Find<QSpinBox>("customBeats").isEnabled());
    least.Find<QSpinBox>("customBeats").setValue(40);
    least.Find<QSpinBox>("customUnit").setValue(8);
    least.Dialog.accept();
    EXPECT_EQ(single.Music().InitialTimeSig.GetBeats(), 32);
    EXPECT_EQ(single.Music().InitialTimeSig.GetBeatUnit(), 8);
}

// Properties on a music area opens this dialog, and its one undo step takes back a line the
// dialog inserted even though the dialog was cancelled.
TEST(StaveAreaProperties, UndoTakesBackWhatTheButtonsDidBeforeCancel)
{
    EditedTune tune(CrotchetTune(2));
    RecordingMessages messages;
    tune.AnswerProperties<CStaveAreaProperties>(&tune.Music(), [](CStaveAreaProperties& dialog) {
        dialog.findChild<QPushButton*>(QStringLiteral("insertLine"))->click();
        dialog.reject();
    });
    EXPECT_EQ(tune.Music().ChildCount(), 3U);
    ASSERT_TRUE(tune.View.History().CanUndo());
    tune.View.History().Undo();
    EXPECT_EQ(tune.Music().ChildCount(), 2U);
}

} // namespace
} // namespace corrieval
