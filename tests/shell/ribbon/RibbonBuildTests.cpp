#include "editor/CommandIds.h"
#include "shell/CommandCatalogue.h"
#include "shell/CommandTable.h"
#include "shell/ribbon/ActionMirror.h"
#include "shell/ribbon/Ribbon.h"
#include "shell/ribbon/RibbonButton.h"
#include "shell/ribbon/RibbonGallery.h"
#include "shell/ribbon/RibbonIcons.h"
#include "shell/ribbon/RibbonLayout.h"
#include "shell/ribbon/RibbonPanel.h"
#include "shell/ribbon/RibbonSlider.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <gtest/gtest.h>

namespace corrieval::ribbon {
namespace {

struct PanelCaptions {
    const char* Panel;
    QStringList Controls;
};
struct CategoryCaptions {
    const char* Category;
    std::vector<PanelCaptions> Panels;
};

// The whole ribbon as a user reads it: tabs, panels and the name of every control.
const std::vector<CategoryCaptions> kExpected = {
    {"Insert",
     {{"Area", {"Page", "Text", "Music", "Image"}},
      {"Notation", {"Notes", "Doublings", "Embellishments", "Piobaireachd"}}}},
    {"Edit",
     {{"Clipboard", {"Paste", "Cut", "Copy", "Select All"}},
      {"Notation", {"Group", "Ungroup", "Tie", "Dot", "Cut"}},
      {"Bars", {"Insert bar", "Insert repeats", "Delete repeats"}},
      {"Text", {"Left", "Centre", "Right"}},
      {"Actions",
       {"Delete", "Bring to front", "Send to back", "Auto organise", "Check values", "Properties", "Lock"}}}},
    {"&Play",
     {{"Control", {"Rewind", "Stop", "Play", "Pause", "Loop"}},
      {"Tempo", {"Tempo", "Tempo Slider"}},
      {"Instrument Selection", {"Select", "Play:"}}}},
    {"Tools", {{"Import", {"SKB v3", "BWW"}}, {"Export", {"WAV", "SKP"}}}},
    {"&Desktop",
     {{"Configuration", {"Load tunes zoomed to page width", "Show page margins"}},
      {"View", {"Status Bar"}},
      {"Window", {"Windows"}}}},
};

bool IsControl(const QWidget* widget)
{
    return qobject_cast<const RibbonButton*>(widget) || qobject_cast<const QCheckBox*>(widget) ||
           qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const RibbonSlider*>(widget);
}

class BuiltRibbon : public ::testing::Test {
protected:
    BuiltRibbon()
    {
        DefineCommands(m_table);
        m_controls = BuildRibbon(m_ribbon, [this](int id) { return m_table.Action(id); });
    }

    CommandTable m_table;
    Ribbon m_ribbon;
    RibbonControls m_controls;
};

TEST_F(BuiltRibbon, EveryControlIsNamedByItsCaption)
{
    ASSERT_EQ(m_ribbon.CategoryCount(), static_cast<int>(kExpected.size()));
    for (int c = 0; c < m_ribbon.CategoryCount(); ++c) {
        RibbonCategory* category = m_ribbon.Category(c);
        const CategoryCaptions& expected = kExpected[c];
        EXPECT_EQ(category->Caption(), QLatin1String(expected.Category));
        const QList<RibbonPanel*> panels = category->findChildren<RibbonPanel*>(Qt::FindDirectChildrenOnly);
        ASSERT_EQ(panels.size(), static_cast<qsizetype>(expected.Panels.size())) << expected.Category;
        for (qsizetype p = 0; p < panels.size(); ++p) {
            EXPECT_EQ(panels[p]->Caption(), QLatin1String(expected.Panels[p].Panel));
            QStringList names;
            for (const QWidget* widget : panels[p]->findChildren<QWidget*>()) {
                if (IsControl(widget))
                    names.append(widget->accessibleName());
            }
            EXPECT_EQ(names, expected.Panels[p].Controls) << expected.Panels[p].Panel;
        }
    }
}

TEST_F(BuiltRibbon, SpecialControlsStartAsTheProgramExpects)
{
    EXPECT_EQ(m_controls.TempoEdit->text(), QStringLiteral("74 bpm"));
    EXPECT_EQ(m_controls.TempoSlider->Value(), 74);
    EXPECT_EQ(m_controls.InstrumentGallery->Count(), 6);
    EXPECT_EQ(m_controls.PartCombo->count(), 5);
    EXPECT_EQ(m_controls.PartCombo->itemText(4), QStringLiteral("Part 4"));
    EXPECT_EQ(m_controls.PartCombo->currentIndex(), 0);
    QStringList galleries;
    for (const RibbonGallery* gallery : m_controls.PaletteGalleries)
        galleries.append(gallery->accessibleName());
    EXPECT_EQ(galleries, (QStringList{"Notes", "Doublings", "Embellishments", "Piobaireachd"}));

    QStringList file;
    for (const QAction* action : m_ribbon.ApplicationMenu()->actions())
        file.append(action->isSeparator() ? QStringLiteral("-") : CaptionOf(action));
    EXPECT_EQ(file, (QStringList{"New", "Open...", "Save", "Save As...", "Page Setup...", "Print", "-",
                                 "Close", "Recent Documents", "-", "Exit"}));
    EXPECT_EQ(m_controls.RecentDocuments->title(), QStringLiteral("Recent Documents"));
}

TEST_F(BuiltRibbon, EveryIconItShowsExistsInBothSizes)
{
    QList<QAction*> actions;
    for (const RibbonButton* button : m_ribbon.findChildren<RibbonButton*>()) {
        actions.append(button->defaultAction());
        if (button->menu())
            actions.append(button->menu()->actions());
    }
    for (const QAction* action : m_ribbon.ApplicationMenu()->actions()) {
        actions.append(const_cast<QAction*>(action));
        if (action->menu())
            actions.append(action->menu()->actions());
    }
    int named = 0;
    for (const QAction* action : actions) {
        const QString name = action->property(kIconProperty).toString();
        if (name.isEmpty())
            continue;
        ++named;
        EXPECT_TRUE(HasRibbonIcon(name)) << name.toStdString();
        EXPECT_FALSE(action->icon().isNull()) << name.toStdString();
    }
    EXPECT_GT(named, 50);
    for (const char* item : {"bagpipes", "chanter", "smallpipes"})
        EXPECT_TRUE(HasRibbonIcon(QLatin1String(item))) << item;
}

TEST_F(BuiltRibbon, ControlsTriggerTheirCommands)
{
    QAction* tempo = m_table.Action(command::TempoSlider);
    int triggered = 0;
    QObject::connect(tempo, &QAction::triggered, [&triggered] { ++triggered; });
    m_controls.TempoSlider->SetValue(90);
    EXPECT_EQ(triggered, 0);
    m_controls.TempoSlider->findChildren<QToolButton*>().last()->click();
    EXPECT_EQ(triggered, 1);
    EXPECT_EQ(m_controls.TempoSlider->Value(), 91);
}

} // namespace
} // namespace corrieval::ribbon
