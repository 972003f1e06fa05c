#include "editor/CommandIds.h"
#include "shell/ribbon/LookPalette.h"
#include "shell/ribbon/Ribbon.h"
#include "shell/ribbon/RibbonGallery.h"
#include "shell/ribbon/RibbonIcons.h"
#include "shell/ribbon/RibbonPanel.h"
#include "shell/ribbon/RibbonSlider.h"

#include <QAction>
#include <QCheckBox>
#include <QImage>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleFactory>
#include <QToolButton>
#include <gtest/gtest.h>
#include <memory>

namespace corrieval::ribbon {
namespace {

QAction* MakeAction(const QString& text, const QString& icon, QObject* owner, bool checkable = false)
{
    auto* action = new QAction(text, owner);
    action->setProperty(kIconProperty, icon);
    action->setCheckable(checkable);
    return action;
}

// How many pixels of `icon` at `size` are drawn close to `colour`.
int PixelsNear(const QIcon& icon, int size, const QColor& colour)
{
    const QImage image = icon.pixmap(size, size).toImage().convertToFormat(QImage::Format_ARGB32);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() > 200 && qAbs(pixel.red() - colour.red()) < 24 &&
                qAbs(pixel.green() - colour.green()) < 24 && qAbs(pixel.blue() - colour.blue()) < 24)
                ++count;
        }
    }
    return count;
}

TEST(RibbonPanel, ControlsMirrorTheirActions)
{
    RibbonPanel panel(QStringLiteral("Actions"));
    QAction* lock = MakeAction(QStringLiteral("&Lock"), QStringLiteral("lock"), &panel, true);
    QAction* properties = MakeAction(QStringLiteral("Properties"), QStringLiteral("properties"), &panel);
    QAction* margins = MakeAction(QStringLiteral("Show page margins"), {}, &panel, true);
    properties->setToolTip(QStringLiteral("Properties of Selected Item"));
    QToolButton* large = panel.AddLargeButton(lock);
    QToolButton* small = panel.AddSmallButton(properties);
    QCheckBox* box = panel.AddCheckBox(margins);

    EXPECT_EQ(large->accessibleName(), QStringLiteral("Lock"));
    EXPECT_EQ(small->toolTip(), QStringLiteral("Properties of Selected Item"));
    lock->setChecked(true);
    properties->setEnabled(false);
    margins->setChecked(true);
    EXPECT_TRUE(large->isChecked());
    EXPECT_FALSE(small->isEnabled());
    EXPECT_TRUE(box->isChecked());
    margins->setEnabled(false);
    EXPECT_FALSE(box->isEnabled());
    margins->setEnabled(true);
    box->click();
    EXPECT_FALSE(margins->isChecked());
    EXPECT_FALSE(box->isChecked());

    // A caption changed by the program reaches the button, two lines when long.
    lock->setText(QStringLiteral("Lock all &areas"));
    EXPECT_EQ(large->accessibleName(), QStringLiteral("Lock all areas"));
    EXPECT_EQ(large->text(), QStringLiteral("Lock all\nareas"));
}

TEST(RibbonGallery, ChoiceIsSignalledAndShownOnTheFace)
{
    RibbonPanel panel(QStringLiteral("Notation"));
    QAction* notes = MakeAction(QStringLiteral("Notes"), QStringLiteral("notes"), &panel);
    RibbonGallery* gallery = panel.AddGallery(notes, 3);
    gallery->AddGroup(QStringLiteral("Long"));
    gallery->AddRibbonItem(QStringLiteral("notes"), QStringLiteral("Crotchet"));
    gallery->AddRibbonItem(QStringLiteral("dot"), QStringLiteral("Dotted"));
    gallery->AddGroup(QStringLiteral("Short"));
    gallery->AddRibbonItem(QStringLiteral("cut-note"), QStringLiteral("Semiquaver"));
    ASSERT_EQ(gallery->Count(), 3);

    QSignalSpy chosen(gallery, &RibbonGallery::ItemChosen);
    QList<QToolButton*> items = gallery->menu()->findChildren<QToolButton*>();
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(items[2]->toolTip(), QStringLiteral("Semiquaver"));
    items[2]->click();
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen.at(0).at(0).toInt(), 2);
    EXPECT_EQ(gallery->Face(), 2);
    const qint64 face = gallery->icon().cacheKey();
    EXPECT_NE(face, notes->icon().cacheKey());
    // The program greying the command must not put the gallery's own picture back.
    notes->setEnabled(false);
    EXPECT_EQ(gallery->icon().cacheKey(), face);
    EXPECT_FALSE(gallery->isEnabled());

    gallery->SetFace(7);
    EXPECT_EQ(gallery->Face(), 2);
    gallery->Clear();
    EXPECT_EQ(gallery->Count(), 0);
    EXPECT_EQ(gallery->Face(), -1);
    EXPECT_TRUE(gallery->menu()->findChildren<QToolButton*>().isEmpty());
}

TEST(RibbonGallery, InksPicturesInTheLooksTextColourAndIsLitByItsCheckedAction)
{
    // A picture drawn in a colour of its own, as the note pictures are.
    QPixmap drawn(32, 32);
    drawn.fill(Qt::transparent);
    QPainter(&drawn).fillRect(8, 8, 16, 16, QColor(0x20, 0x20, 0x80));
    RibbonPanel panel(QStringLiteral("Notation"));
    QAction* notes = MakeAction(QStringLiteral("Notes"), QStringLiteral("notes"), &panel);
    notes->setCheckable(true);
    RibbonGallery* gallery = panel.AddGallery(notes, 7);
    gallery->AddInkItem(QIcon(drawn), QStringLiteral("Crotchet"));
    gallery->SetFace(0);
    for (int look : {command::StyleBlue, command::StyleBlack}) {
        const QPalette palette = LookPalette(look);
        panel.setPalette(palette);
        gallery->FollowPalette(palette);
        const QToolButton* item = gallery->menu()->findChildren<QToolButton*>().front();
        EXPECT_EQ(PixelsNear(item->icon(), 32, palette.color(QPalette::ButtonText)), 16 * 16) << look;
        EXPECT_EQ(PixelsNear(gallery->icon(), 32, palette.color(QPalette::ButtonText)), 16 * 16) << look;
    }
    EXPECT_FALSE(gallery->IsLit());
    notes->setChecked(true);
    EXPECT_TRUE(gallery->IsLit());
    notes->setChecked(false);
    EXPECT_FALSE(gallery->IsLit());
}

TEST(RibbonSlider, ButtonsStepByOneAndSetValueIsQuiet)
{
    RibbonSlider slider(50, 300, 299, 100);
    QSignalSpy changed(&slider, &RibbonSlider::ValueChanged);
    slider.SetValue(100);
    EXPECT_EQ(changed.count(), 0);
    QList<QToolButton*> buttons = slider.findChildren<QToolButton*>();
    ASSERT_EQ(buttons.size(), 2);
    buttons[0]->click();
    EXPECT_EQ(slider.Value(), 99);
    buttons[1]->click();
    buttons[1]->click();
    EXPECT_EQ(slider.Value(), 101);
    ASSERT_EQ(changed.count(), 3);
    EXPECT_EQ(changed.last().at(0).toInt(), 101);
    slider.SetValue(300);
    buttons[1]->click();
    EXPECT_EQ(slider.Value(), 300);
}

TEST(Ribbon, TabsSwitchCategories)
{
    Ribbon ribbon;
    ribbon.AddCategory(QStringLiteral("Insert"));
    ribbon.AddCategory(QStringLiteral("Edit"));
    EXPECT_EQ(ribbon.CurrentCategory(), 0);
    QSignalSpy switched(&ribbon, &Ribbon::CurrentCategoryChanged);
    ribbon.SetCurrentCategory(1);
    ribbon.SetCurrentCategory(5);
    EXPECT_EQ(ribbon.CurrentCategory(), 1);
    EXPECT_EQ(switched.count(), 1);
    const QList<QToolButton*> tabs = ribbon.findChildren<QToolButton*>(QStringLiteral("ribbonTab"));
    ASSERT_EQ(tabs.size(), 2);
    tabs[0]->click();
    EXPECT_EQ(ribbon.CurrentCategory(), 0);
    EXPECT_TRUE(tabs[0]->isChecked());
    EXPECT_FALSE(tabs[1]->isChecked());
}

// Icons are drawn in the look's colours, and redrawn when it changes: on the panels and in the
// application menu, where the program adds its own commands.
TEST(Ribbon, DrawsItsIconsInThePalettesColoursAndFollowsAChange)
{
    for (int look : {command::StyleBlue, command::StyleBlack}) {
        const QPalette palette = LookPalette(look);
        const QIcon icon = RibbonIcon(QStringLiteral("help"), palette);
        for (int size : {16, 32}) {
            EXPECT_GT(PixelsNear(icon, size, palette.color(QPalette::ButtonText)), 0) << look << " " << size;
            EXPECT_GT(PixelsNear(icon, size, palette.color(QPalette::Highlight)), 0) << look << " " << size;
        }
    }
    EXPECT_TRUE(RibbonIcon(QStringLiteral("no-such-icon"), QPalette()).isNull());

    Ribbon ribbon;
    QAction* lock = MakeAction(QStringLiteral("Lock"), QStringLiteral("lock"), &ribbon);
    ribbon.AddCategory(QStringLiteral("Edit"))->AddPanel(QStringLiteral("Actions"))->AddLargeButton(lock);
    QAction* quick = MakeAction(QStringLiteral("&Quick Print"), QStringLiteral("quick-print"), &ribbon);
    ribbon.ApplicationMenu()->addMenu(QStringLiteral("Print"))->addAction(quick);
    EXPECT_FALSE(quick->icon().isNull());
    const QPalette dark = LookPalette(command::StyleBlack);
    ribbon.setPalette(dark);
    EXPECT_GT(PixelsNear(lock->icon(), 32, dark.color(QPalette::ButtonText)), 0);
    EXPECT_GT(PixelsNear(quick->icon(), 16, dark.color(QPalette::ButtonText)), 0);
    EXPECT_TRUE(ribbon.styleSheet().contains(dark.color(QPalette::Window).name()));
}

TEST(LookPalette, GivesEachLookItsColours)
{
    auto lightness = [](int look, QPalette::ColorRole role) {
        return LookPalette(look).color(role).lightnessF();
    };
    EXPECT_LT(lightness(command::StyleBlack, QPalette::Window), 0.3);
    EXPECT_GT(lightness(command::StyleBlack, QPalette::WindowText), 0.7);
    for (int look : {command::StyleBlue, command::StyleSilver, command::StyleAqua}) {
        EXPECT_GT(lightness(look, QPalette::Window), 0.85) << look;
        EXPECT_LT(lightness(look, QPalette::WindowText), 0.25) << look;
    }
    const QPalette fusion =
        std::unique_ptr<QStyle>(QStyleFactory::create(QStringLiteral("Fusion")))->standardPalette();
    for (int look = command::StyleFirst; look < command::StyleBlue; ++look)
        EXPECT_EQ(LookPalette(look), fusion) << look;
}

} // namespace
} // namespace corrieval::ribbon
