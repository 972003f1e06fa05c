#include "editor/CommandIds.h"
#include "shell/CommandCatalogue.h"
#include "shell/CommandTable.h"
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

// A screen reader names every control, so none may be left without a name, and no panel is built
// empty. The captions themselves are the catalogue's and are not repeated here.
TEST_F(BuiltRibbon, EveryPanelHasControlsAndEveryControlAName)
{
    EXPECT_EQ(m_ribbon.CategoryCount(), 5);
    int controls = 0;
    for (const RibbonPanel* panel : m_ribbon.findChildren<RibbonPanel*>()) {
        int inPanel = 0;
        for (const QWidget* widget : panel->findChildren<QWidget*>()) {
            if (IsControl(widget)) {
                ++inPanel;
                EXPECT_FALSE(widget->accessibleName().isEmpty()) << panel->Caption().toStdString();
            }
        }
        EXPECT_GT(inPanel, 0) << panel->Caption().toStdString();
        controls += inPanel;
    }
    EXPECT_GT(controls, 40);
}

TEST_F(BuiltRibbon, SpecialControlsStartAsTheProgramExpects)
{
    EXPECT_EQ(m_controls.TempoEdit->text(), QStringLiteral("74 bpm"));
    EXPECT_EQ(m_controls.TempoSlider->Value(), 74);
    EXPECT_EQ(m_controls.InstrumentGallery->Count(), 6);
    EXPECT_EQ(m_controls.PartCombo->itemText(4), QStringLiteral("Part 4"));
    EXPECT_EQ(m_controls.PartCombo->currentIndex(), 0);
    EXPECT_TRUE(m_ribbon.ApplicationMenu()->actions().contains(m_controls.RecentDocuments->menuAction()));
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
    m_controls.TempoSlider->findChildren<QToolButton*>().last()->click();
    EXPECT_EQ(triggered, 1);
}

} // namespace
} // namespace corrieval::ribbon
