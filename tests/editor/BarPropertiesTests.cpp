// The bar's properties dialog, opened by "Properties" on a selected bar and answered as a piper
// would: what it shows of the bar's column, what OK writes there, and that Cancel writes nothing.

#include "EditCommandTestSupport.h"
#include "editor/BarPropertiesDialog.h"
#include "editor/TimeSigCombo.h"
#include "model/BarConfig.h"
#include "playback/TuneSequence.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <functional>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::CrotchetTune;
using testing::EditedTune;
using Answer = std::function<QDialogButtonBox::StandardButton(CBarProperties&)>;

// `answer` fills the bar's dialog in and names the button that closes it.
void EditBar(EditedTune& tune, CBarEx& bar, const Answer& answer)
{
    tune.AnswerProperties<CBarProperties>(&bar, [&](CBarProperties& dialog) {
        dialog.findChild<QDialogButtonBox*>()->button(answer(dialog))->click();
    });
}

QRadioButton* LineButton(CBarProperties& dialog, const QString& box, const QString& caption)
{
    for (auto* group : dialog.findChildren<QGroupBox*>()) {
        if (group->title() != box)
            continue;
        for (auto* button : group->findChildren<QRadioButton*>()) {
            if (button->text() == caption)
                return button;
        }
    }
    ADD_FAILURE() << "no " << caption.toStdString() << " under " << box.toStdString();
    return nullptr;
}

void ChooseLines(CBarProperties& dialog, const QString& start, const QString& end)
{
    LineButton(dialog, QStringLiteral("Start of bar"), start)->click();
    LineButton(dialog, QStringLiteral("End of bar"), end)->click();
}

struct CustomControls {
    QSpinBox* Beats;
    QSpinBox* Unit;
};

CustomControls Custom(CBarProperties& dialog)
{
    const auto boxes = dialog.findChildren<QSpinBox*>();
    return {boxes.at(0), boxes.at(1)};
}

TEST(BarProperties, OpensOnTheColumnAndOkWritesEveryFieldForAllStavesOfTheSystem)
{
    EditedTune tune(CrotchetTune(1, 4, 2));
    CBarEx& bar = tune.Bar(0, 1);
    CBarConfig& config = *bar.Config;
    config.StartRepeat = true;
    config.EndBarLine = true;
    config.TimeSig.SetType(6); // 2/4

    EditBar(tune, bar, [](CBarProperties& dialog) {
        EXPECT_TRUE(
            LineButton(dialog, QStringLiteral("Start of bar"), QStringLiteral("Repeat"))->isChecked());
        EXPECT_TRUE(LineButton(dialog, QStringLiteral("End of bar"), QStringLiteral("End"))->isChecked());
        auto* combo = dialog.findChild<CTimeSigCombo*>();
        EXPECT_EQ(combo->currentText(), QStringLiteral("Two Four"));
        EXPECT_FALSE(Custom(dialog).Beats->isEnabled());

        ChooseLines(dialog, QStringLiteral("Start"), QStringLiteral("Repeat"));
        combo->setCurrentText(QStringLiteral("Custom"));
        EXPECT_TRUE(Custom(dialog).Beats->isEnabled());
        Custom(dialog).Beats->setValue(12);
        Custom(dialog).Unit->setValue(8);
        return QDialogButtonBox::Ok;
    });

    // The plain start line replaces the repeat and the repeat end the plain end line.
    EXPECT_TRUE(config.StartBarLine);
    EXPECT_FALSE(config.StartRepeat);
    EXPECT_TRUE(config.EndRepeat);
    EXPECT_FALSE(config.EndBarLine);
    EXPECT_EQ(config.TimeSig.Type, CTimeSig::Custom);
    EXPECT_EQ(config.TimeSig.UpperGlyphs[0].Code, 50); // 1 and 2 over 8
    EXPECT_EQ(config.TimeSig.UpperGlyphs[1].Code, 51);
    EXPECT_EQ(config.TimeSig.LowerGlyphs[0].Code, 57);
    // The second stave's bar of the column shares the change, and the bar after it counts in 12/8.
    auto& lower = static_cast<CStave&>(*bar.Parent()->Parent()->ChildAt(1));
    CTimeSig after = static_cast<CBarEx&>(*lower.ChildAt(2)).GetActiveTimeSig();
    EXPECT_EQ(after.GetBeats(), 12);
    EXPECT_EQ(after.GetBeatUnit(), 8);

    EditBar(tune, bar, [](CBarProperties& dialog) {
        ChooseLines(dialog, QStringLiteral("None"), QStringLiteral("None"));
        dialog.findChild<CTimeSigCombo*>()->setCurrentText(QStringLiteral("None"));
        return QDialogButtonBox::Ok;
    });
    EXPECT_FALSE(config.StartBarLine || config.StartRepeat || config.EndBarLine || config.EndRepeat);
    EXPECT_EQ(config.TimeSig.Type, CTimeSig::None);
}

TEST(BarProperties, CancelLeavesTheTuneAsItWas)
{
    EditedTune tune(CrotchetTune());
    const QByteArray before = tune.Bytes();
    EditBar(tune, tune.Bar(0, 2), [](CBarProperties& dialog) {
        ChooseLines(dialog, QStringLiteral("Repeat"), QStringLiteral("End"));
        dialog.findChild<CTimeSigCombo*>()->setCurrentText(QStringLiteral("Custom"));
        Custom(dialog).Beats->setValue(5);
        return QDialogButtonBox::Cancel;
    });
    EXPECT_EQ(tune.Bytes(), before);
}

TEST(BarProperties, APartBetweenRepeatLinesSetHerePlaysTwiceFromTheSavedTune)
{
    EditedTune tune(CrotchetTune());
    EditBar(tune, tune.Bar(0, 0), [](CBarProperties& dialog) {
        ChooseLines(dialog, QStringLiteral("Repeat"), QStringLiteral("None"));
        return QDialogButtonBox::Ok;
    });
    EditBar(tune, tune.Bar(0, 3), [](CBarProperties& dialog) {
        ChooseLines(dialog, QStringLiteral("None"), QStringLiteral("Repeat"));
        return QDialogButtonBox::Ok;
    });

    const auto saved = ReadScore(tune.Bytes(), QStringLiteral("tune.skb"));
    CTuneSequence sequence(saved.get());
    sequence.Build(nullptr);
    const CNoteSampleArray& played = sequence.PlayList(0);
    ASSERT_EQ(played.size(), 16U); // four bars of two notes, twice
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_EQ(played[i]->Note, played[i + 8]->Note) << i;
}

} // namespace
} // namespace corrieval
