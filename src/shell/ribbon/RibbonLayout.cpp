#include "shell/ribbon/RibbonLayout.h"

#include "editor/CommandIds.h"
#include "shell/ribbon/Ribbon.h"
#include "shell/ribbon/RibbonGallery.h"
#include "shell/ribbon/RibbonIcons.h"
#include "shell/ribbon/RibbonPanel.h"
#include "shell/ribbon/RibbonSlider.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>

namespace corrieval::ribbon {

namespace {

using ActionFor = std::function<QAction*(int id)>;
using namespace command;

QMenu* BuildApplicationMenu(Ribbon& ribbon, const ActionFor& actionFor)
{
    QMenu* menu = ribbon.ApplicationMenu();
    for (int id : {FileNew, FileOpen, FileSave, FileSaveAs, PageSetup})
        menu->addAction(actionFor(id));
    QAction* print = actionFor(Print);
    auto* printMenu = new QMenu(print->text(), menu);
    printMenu->menuAction()->setProperty(kIconProperty, print->property(kIconProperty));
    menu->addMenu(printMenu);
    printMenu->setToolTipsVisible(true);
    printMenu->setToolTip(print->toolTip());
    for (int id : {Print, QuickPrint, PrintPreview})
        printMenu->addAction(actionFor(id));
    menu->addSeparator();
    menu->addAction(actionFor(FileClose));
    QMenu* recent = menu->addMenu(QObject::tr("Recent Documents"));
    menu->addSeparator();
    menu->addAction(actionFor(Exit));
    return recent;
}

// A button of the tab row that owns no command, only a menu of commands.
QAction* MenuButtonAction(Ribbon& ribbon, const QString& text, const QString& toolTip, const QString& icon,
                          const QList<QAction*>& items)
{
    auto* action = new QAction(text, &ribbon);
    action->setToolTip(toolTip);
    action->setProperty(kIconProperty, icon);
    auto* menu = new QMenu(&ribbon);
    menu->setAttribute(Qt::WA_WindowPropagation);
    menu->addActions(items);
    action->setMenu(menu);
    return action;
}

void BuildTabRow(Ribbon& ribbon, const ActionFor& actionFor)
{
    for (int id : {FileNew, FileOpen, FileSave, QuickPrint, Undo, Redo})
        ribbon.AddQuickAccess(actionFor(id));
    QList<QAction*> looks;
    for (int id = StyleFirst; id <= StyleLast; ++id)
        looks.append(actionFor(id));
    ribbon.AddTabRowButton(MenuButtonAction(ribbon, QObject::tr("Style"), QObject::tr("Modify Visual Style"),
                                            QStringLiteral("style"), looks));
    ribbon.AddTabRowButton(MenuButtonAction(ribbon, {}, QObject::tr("Help"), QStringLiteral("help"),
                                            {actionFor(Help), actionFor(About)}));
}

void BuildInsert(Ribbon& ribbon, const ActionFor& actionFor, RibbonControls& controls)
{
    RibbonCategory* insert = ribbon.AddCategory(QObject::tr("Insert"));
    RibbonPanel* area = insert->AddPanel(QObject::tr("Area"));
    area->AddLargeButton(actionFor(InsertPage));
    area->AddSeparator();
    for (int id : {InsertText, InsertMusic, InsertImage})
        area->AddLargeButton(actionFor(id));
    RibbonPanel* notation = insert->AddPanel(QObject::tr("Notation"));
    // Icons per row of each drop-down: the plain notes in one row, the movements in a block.
    const int columns[] = {7, 3, 4, 4};
    for (size_t i = 0; i < controls.PaletteGalleries.size(); ++i)
        controls.PaletteGalleries[i] = notation->AddGallery(actionFor(PaletteGalleries[i]), columns[i]);
}

void BuildEdit(Ribbon& ribbon, const ActionFor& actionFor)
{
    RibbonCategory* edit = ribbon.AddCategory(QObject::tr("Edit"));
    RibbonPanel* clipboard = edit->AddPanel(QObject::tr("Clipboard\nd"));
    clipboard->AddLargeButton(actionFor(Paste));
    for (int id : {Cut, Copy, SelectAll})
        clipboard->AddSmallButton(actionFor(id));

    RibbonPanel* notation = edit->AddPanel(QObject::tr("Notation"));
    for (int id : {Group, Ungroup})
        notation->AddSmallButton(actionFor(id));
    for (int id : {Tie, Dot, CutNote})
        notation->AddLargeButton(actionFor(id));

    RibbonPanel* bars = edit->AddPanel(QObject::tr("Bars"));
    for (int id : {InsertBar, InsertRepeats, DeleteRepeats})
        bars->AddLargeButton(actionFor(id));

    RibbonPanel* text = edit->AddPanel(QObject::tr("Text"));
    for (int id : {AlignLeft, AlignCentre, AlignRight})
        text->AddSmallButton(actionFor(id));

    RibbonPanel* actions = edit->AddPanel(QObject::tr("Actions"));
    actions->AddLargeButton(actionFor(Delete));
    for (int id : {BringToFront, SendToBack, AutoOrganise})
        actions->AddSmallButton(actionFor(id));
    for (int id : {CheckValues, Properties, Lock})
        actions->AddLargeButton(actionFor(id));
}

void BuildPlay(Ribbon& ribbon, const ActionFor& actionFor, RibbonControls& controls)
{
    RibbonCategory* play = ribbon.AddCategory(QObject::tr("&Play"));
    RibbonPanel* control = play->AddPanel(QObject::tr("Control"));
    for (int id : {Rewind, Stop, Play, Pause})
        control->AddLargeButton(actionFor(id));
    control->AddSeparator();
    control->AddLargeButton(actionFor(Loop));

    RibbonPanel* tempo = play->AddPanel(QObject::tr("Tempo"));
    tempo->BeginRow();
    controls.TempoEdit = tempo->AddEdit(actionFor(TempoEdit), QStringLiteral(":"), 50);
    controls.TempoEdit->setText(QObject::tr("74 bpm"));
    tempo->AddLabel({});
    controls.TempoSlider = tempo->AddSlider(actionFor(TempoSlider), 20, 200, 74, 100);

    RibbonPanel* instrument = play->AddPanel(QObject::tr("Instrument Selection"));
    RibbonGallery* gallery = instrument->AddGallery(actionFor(InstrumentGallery), 2);
    gallery->AddGroup(QObject::tr("Pipes"));
    gallery->AddRibbonItem(QStringLiteral("bagpipes"), QObject::tr("Bagpipes"));
    gallery->AddRibbonItem(QStringLiteral("chanter"), QObject::tr("Chanter"));
    gallery->AddGroup(QObject::tr("Smallpipes"));
    for (const char* key : {"Bb", "A", "C", "D"})
        gallery->AddRibbonItem(QStringLiteral("smallpipes"),
                               QObject::tr("Smallpipes %1").arg(QLatin1String(key)));
    controls.InstrumentGallery = gallery;
    instrument->AddLabel({});
    QStringList parts{QObject::tr("All")};
    for (int part = 1; part <= 4; ++part)
        parts.append(QObject::tr("Part %1").arg(part));
    controls.PartCombo = instrument->AddCombo(actionFor(PartCombo), QObject::tr("Play:"), parts, 60);
}

void BuildTools(Ribbon& ribbon, const ActionFor& actionFor)
{
    RibbonCategory* tools = ribbon.AddCategory(QObject::tr("Tools"));
    RibbonPanel* import = tools->AddPanel(QObject::tr("Import"));
    for (int id : {ImportGlenmarch, ImportBww})
        import->AddLargeButton(actionFor(id));
    RibbonPanel* exports = tools->AddPanel(QObject::tr("Export"));
    for (int id : {ExportWav, ExportSkp})
        exports->AddLargeButton(actionFor(id));
}

void BuildDesktop(Ribbon& ribbon, const ActionFor& actionFor)
{
    RibbonCategory* desktop = ribbon.AddCategory(QObject::tr("&Desktop"));
    RibbonPanel* configuration = desktop->AddPanel(QObject::tr("Configuration"));
    for (int id : {AutoZoom, ShowMargins})
        configuration->AddCheckBox(actionFor(id));
    desktop->AddPanel(QObject::tr("View"))->AddCheckBox(actionFor(StatusBar));
    desktop->AddPanel(QObject::tr("Window\nw"))->AddLargeButton(actionFor(Windows));
}

} // namespace

RibbonControls BuildRibbon(Ribbon& ribbon, const std::function<QAction*(int id)>& actionFor)
{
    RibbonControls controls;
    controls.RecentDocuments = BuildApplicationMenu(ribbon, actionFor);
    BuildTabRow(ribbon, actionFor);
    BuildInsert(ribbon, actionFor, controls);
    BuildEdit(ribbon, actionFor);
    BuildPlay(ribbon, actionFor, controls);
    BuildTools(ribbon, actionFor);
    BuildDesktop(ribbon, actionFor);
    return controls;
}

} // namespace corrieval::ribbon
