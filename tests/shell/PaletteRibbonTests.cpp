// The note and movement galleries of the Insert category as the program builds them from the
// shipped definitions, and a choice there reaching the active view.

#include "ShellTestSupport.h"
#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "editor/ViewHost.h"
#include "model/SessionState.h"
#include "notation/FixedNoteGroup.h"
#include "notation/TextArea.h"
#include "platform/MovementDefinitions.h"
#include "shell/CommandTable.h"
#include "shell/MainFrame.h"
#include "shell/ribbon/RibbonGallery.h"
#include "support/TempConfigDir.h"

#include <QMenu>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace corrieval;
using namespace corrieval::testing;

namespace {

// The shipped definitions in a settings store of the test's own, before the frame reads them.
struct InstalledDefinitions {
    InstalledDefinitions() { EXPECT_EQ(InstallMovementDefinitions(), QString()); }
    TempConfigDir Config;
};

class PaletteRibbon : public ::testing::Test {
protected:
    void SetUp() override { Session().TemplateOrientation = 2; }
    void TearDown() override { Session().TemplateOrientation = 0; }

    // The four galleries in the ribbon's order.
    std::vector<ribbon::RibbonGallery*> Galleries() const
    {
        std::vector<ribbon::RibbonGallery*> galleries;
        for (const char* name : MovementPalettes) {
            for (auto* gallery : frame.findChildren<ribbon::RibbonGallery*>()) {
                if (gallery->accessibleName() == QLatin1String(name))
                    galleries.push_back(gallery);
            }
        }
        return galleries;
    }
    static QList<QToolButton*> Items(const ribbon::RibbonGallery& gallery)
    {
        return gallery.menu()->findChildren<QToolButton*>();
    }
    CommandState State(int id) { return frame.Commands().State(id); }

    InstalledDefinitions definitions;
    CMainFrame frame{NullDevice, SamplesFolder()};
};

TEST_F(PaletteRibbon, GalleriesShowTheirEntriesInToolbarIndexOrderNamedByTheirTooltips)
{
    const std::vector<ribbon::RibbonGallery*> galleries = Galleries();
    ASSERT_EQ(galleries.size(), 4u);
    for (std::size_t g = 0; g < galleries.size(); ++g) {
        const std::vector<PaletteEntry> entries = ReadPalette(QLatin1String(MovementPalettes[g]));
        QStringList expected;
        for (const PaletteEntry& entry : entries)
            expected.append(entry.Name);
        QStringList shown;
        for (const QToolButton* item : Items(*galleries[g]))
            shown.append(item->toolTip());
        EXPECT_EQ(shown, expected) << MovementPalettes[g];
        EXPECT_GE(galleries[g]->Face(), 0) << "a face to show before any choice";
    }
    // The shipped notes run from the longest to the shortest, not from A to Z.
    EXPECT_EQ(Items(*galleries[0]).front()->toolTip(), QStringLiteral("Semibreve"));
    EXPECT_EQ(Items(*galleries[0])[2]->toolTip(), QStringLiteral("Crotchet"));
}

TEST_F(PaletteRibbon, AChoicePlacesItsEntryInTheActiveViewAndLightsItsGalleryOnly)
{
    CCorrievalView* view = frame.NewDocument();
    ASSERT_NE(view, nullptr);
    for (int id : command::PaletteGalleries) {
        EXPECT_TRUE(State(id).enabled);
        EXPECT_FALSE(State(id).checked);
    }
    // An area waiting to be drawn gives way to the entry chosen.
    view->EditState().PendingArea = &CTextArea::Class;
    const std::vector<ribbon::RibbonGallery*> galleries = Galleries();
    ASSERT_EQ(galleries.size(), 4u);
    ribbon::RibbonGallery& doublings = *galleries[1];
    QToolButton* item = Items(doublings)[5];
    item->click();
    const int notes = galleries[0]->Count();
    EXPECT_EQ(view->EditState().PaletteEntry, notes + 5);
    EXPECT_EQ(view->EditState().PendingArea, nullptr);
    EXPECT_EQ(doublings.Face(), 5);
    auto* prototype = dynamic_cast<CFixedNoteGroup*>(view->Host().PalettePrototype(notes + 5));
    ASSERT_NE(prototype, nullptr);
    EXPECT_EQ(prototype->Name, item->toolTip());

    frame.Commands().UpdateAll();
    for (std::size_t g = 0; g < galleries.size(); ++g) {
        EXPECT_EQ(State(command::PaletteGalleries[g]).checked, g == 1) << g;
        EXPECT_EQ(galleries[g]->IsLit(), g == 1) << g;
    }

    // Placing ends with a right click; nothing is lit then.
    view->EditState().PaletteEntry = -1;
    frame.Commands().UpdateAll();
    EXPECT_FALSE(galleries[1]->IsLit());

    // Locked as a saved tune can be (the Lock command itself waits for a sound device).
    view->Document()->Locked = 1;
    frame.Commands().UpdateAll();
    for (int id : command::PaletteGalleries)
        EXPECT_FALSE(State(id).enabled) << "locked";
    Items(*galleries[0])[3]->click();
    EXPECT_EQ(view->EditState().PaletteEntry, -1);
}

} // namespace
