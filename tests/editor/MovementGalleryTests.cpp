#include "editor/MovementGalleries.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "platform/MovementDefinitions.h"
#include "platform/SettingsStore.h"
#include "support/TempConfigDir.h"

#include <QImage>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

// Ink in the picture, and none on its outermost ring of pixels: nothing was cut off.
void ExpectInkWithin(const QImage& image)
{
    int inside = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 0)
                continue;
            const bool edge = x == 0 || y == 0 || x == image.width() - 1 || y == image.height() - 1;
            EXPECT_FALSE(edge) << "ink on the edge at " << x << "," << y;
            ++inside;
        }
    }
    EXPECT_GT(inside, image.width() / 4);
}

TEST(MovementGalleries, ShowTheShippedDefinitionsInTheirOrderWithAPictureForEach)
{
    const testing::TempConfigDir config;
    ASSERT_EQ(InstallMovementDefinitions(), "");
    const MovementGalleries galleries;
    ASSERT_EQ(galleries.Galleries().size(), MovementPalettes.size());
    int entry = 0;
    for (std::size_t g = 0; g < MovementPalettes.size(); ++g) {
        const PaletteGallery& gallery = galleries.Galleries()[g];
        EXPECT_EQ(gallery.Name, MovementPalettes[g]);
        const std::vector<PaletteEntry> entries = ReadPalette(gallery.Name);
        ASSERT_EQ(gallery.Buttons.size(), entries.size());
        ASSERT_FALSE(entries.empty());
        for (std::size_t i = 0; i < entries.size(); ++i, ++entry) {
            const PaletteButton& button = gallery.Buttons[i];
            SCOPED_TRACE(button.Name.toStdString());
            EXPECT_EQ(button.Name, entries[i].Name);
            EXPECT_EQ(button.EntryIndex, entry);
            EXPECT_EQ(galleries.EntryIndex(static_cast<int>(g), static_cast<int>(i)), entry);
            EXPECT_EQ(galleries.GalleryOf(entry), static_cast<int>(g));
            for (int size : MovementGalleries::IconSizes)
                EXPECT_FALSE(button.Icon.pixmap(size).isNull());
            ExpectInkWithin(button.Icon.pixmap(32).toImage());
        }
    }
    EXPECT_EQ(galleries.EntryCount(), entry);
    EXPECT_EQ(galleries.Prototype(entry), nullptr);
    EXPECT_EQ(galleries.GalleryOf(entry), -1);
}

TEST(MovementGalleries, FollowToolbarIndexAndBuildTheirPrototypes)
{
    const testing::TempConfigDir config;
    {
        SettingsStore palette = SettingsStore(QString::fromLatin1(MovementsKeyPath)).Subkey("Doublings");
        const struct {
            const char* Name;
            const char* Chars;
            const char* Positions;
            int Index;
        } entries[] = {{"Alpha", "JKK", "847", 2}, {"Beta", "K", "5", 0}, {"Gamma", "(", "", 1}};
        for (const auto& e : entries) {
            SettingsStore key = palette.Subkey(e.Name);
            key.WriteString("Chars", e.Chars);
            key.WriteString("RelativeNotePositions", e.Positions);
            key.WriteInt("ToolbarIndex", e.Index);
        }
        ASSERT_EQ(palette.Sync(), "");
    }
    const MovementGalleries galleries;
    EXPECT_TRUE(galleries.Galleries()[0].Buttons.empty());
    const auto& doublings = galleries.Galleries()[1].Buttons;
    ASSERT_EQ(doublings.size(), 3u);
    EXPECT_EQ(doublings[0].Name, "Beta");
    EXPECT_EQ(doublings[1].Name, "Gamma");
    EXPECT_EQ(doublings[2].Name, "Alpha");

    const auto* alpha = dynamic_cast<const CFixedNoteGroup*>(galleries.Prototype(2));
    ASSERT_NE(alpha, nullptr);
    EXPECT_EQ(alpha->Name, "Alpha");
    EXPECT_EQ(alpha->GetNoteCount(), 3);
    EXPECT_NE(dynamic_cast<const CNoteEx*>(galleries.Prototype(1)), nullptr);
}

} // namespace
} // namespace corrieval
