// Draws the program's ribbon, every category in every look, into PNG files for a person to look
// at: ribbon-preview <folder>. It runs without a display.

#include "editor/CommandIds.h"
#include "shell/CommandCatalogue.h"
#include "shell/CommandTable.h"
#include "shell/ribbon/LookPalette.h"
#include "shell/ribbon/Ribbon.h"
#include "shell/ribbon/RibbonGallery.h"
#include "shell/ribbon/RibbonIcons.h"
#include "shell/ribbon/RibbonLayout.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QPainter>
#include <QStyleFactory>
#include <cstdio>

using namespace corrieval;

namespace {

const std::pair<int, const char*> kLooks[] = {
    {command::StyleBlue, "blue"}, {command::StyleBlack, "black"},  {command::StyleSilver, "silver"},
    {command::StyleAqua, "aqua"}, {command::StyleFirst, "fusion"},
};

// Stand-ins for the movements the program puts into the palette galleries.
void FillPaletteGalleries(const ribbon::RibbonControls& controls)
{
    const char* icons[] = {"notes", "doublings", "embellishments", "piobaireachd"};
    for (size_t i = 0; i < controls.PaletteGalleries.size(); ++i) {
        ribbon::RibbonGallery* gallery = controls.PaletteGalleries[i];
        gallery->AddGroup(QStringLiteral("Group"));
        for (int item = 0; item < 9; ++item)
            gallery->AddRibbonItem(QLatin1String(icons[i]), QStringLiteral("Item %1").arg(item));
    }
}

// Every ribbon icon, large over small, on the window's colour.
QPixmap IconSheet(const QPalette& palette)
{
    const QStringList names = QDir(QStringLiteral(":/ribbon/icons/32")).entryList();
    constexpr int kCell = 40;
    constexpr int kPerRow = 20;
    const int rows = (static_cast<int>(names.size()) + kPerRow - 1) / kPerRow;
    QPixmap sheet(kPerRow * kCell, rows * kCell * 2);
    sheet.fill(palette.color(QPalette::Window));
    QPainter painter(&sheet);
    for (int i = 0; i < names.size(); ++i) {
        const QIcon icon = ribbon::RibbonIcon(QFileInfo(names[i]).baseName(), palette);
        const QPoint cell((i % kPerRow) * kCell, (i / kPerRow) * kCell * 2);
        painter.drawPixmap(cell + QPoint(4, 4), icon.pixmap(32));
        painter.drawPixmap(cell + QPoint(12, kCell + 8), icon.pixmap(16));
    }
    return sheet;
}

bool Save(const QPixmap& picture, const QString& path)
{
    if (picture.save(path))
        return true;
    std::fprintf(stderr, "Cannot write %s\n", qPrintable(path));
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: ribbon-preview <folder>\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));

    CommandTable table;
    DefineCommands(table);
    // A few states worth seeing: greyed commands and lit toggles.
    for (int id : {command::SelectAll, command::Undo, command::Paste, command::ExportSkp})
        table.Action(id)->setEnabled(false);
    for (int id : {command::Loop, command::StyleBlue, command::AutoZoom, command::StatusBar})
        table.Action(id)->setChecked(true);

    ribbon::Ribbon ribbon;
    const ribbon::RibbonControls controls =
        ribbon::BuildRibbon(ribbon, [&table](int id) { return table.Action(id); });
    controls.RecentDocuments->addAction(QStringLiteral("Corrieval_Reel.skb"));
    FillPaletteGalleries(controls);
    controls.PaletteGalleries[1]->SetFace(2);
    controls.PaletteGalleries[2]->SetLit(true);

    ribbon.resize(1180, ribbon.sizeHint().height());
    bool saved = true;
    for (const auto& [look, name] : kLooks) {
        QApplication::setPalette(ribbon::LookPalette(look));
        // Widgets learn of a new application palette through posted events.
        QApplication::processEvents();
        for (int i = 0; i < ribbon.CategoryCount(); ++i) {
            ribbon.SetCurrentCategory(i);
            const QString category = ribbon.Category(i)->Caption().remove(QLatin1Char('&')).toLower();
            saved &= Save(ribbon.grab(),
                          folder.filePath(QStringLiteral("%1-%2.png").arg(QLatin1String(name), category)));
        }
        saved &= Save(IconSheet(QApplication::palette()),
                      folder.filePath(QStringLiteral("%1-icons.png").arg(QLatin1String(name))));
        QMenu* file = ribbon.ApplicationMenu();
        file->adjustSize();
        saved &=
            Save(file->grab(), folder.filePath(QStringLiteral("%1-file-menu.png").arg(QLatin1String(name))));
        QMenu* instruments = controls.InstrumentGallery->menu();
        instruments->adjustSize();
        saved &= Save(instruments->grab(),
                      folder.filePath(QStringLiteral("%1-instruments.png").arg(QLatin1String(name))));
    }
    return saved ? 0 : 1;
}
