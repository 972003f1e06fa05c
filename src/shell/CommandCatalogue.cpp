#include "shell/CommandCatalogue.h"

#include "editor/CommandIds.h"
#include "shell/CommandTable.h"

#include <QAction>
#include <QActionGroup>

namespace corrieval {

namespace {

struct CommandInfo {
    int Id;
    const char* Caption;
    const char* Icon;
    QKeySequence::StandardKey Key = QKeySequence::UnknownKey;
    bool Checkable = false;
};

using namespace command;
using Key = QKeySequence;

// The captions are the program's own words, mnemonics and descriptions included.
const CommandInfo kCommands[] = {
    {FileNew, "&New", "new", Key::New},
    {FileOpen, "&Open...", "open", Key::Open},
    {FileSave, "&Save", "save", Key::Save},
    {FileSaveAs, "Save &As...", "save-as", Key::SaveAs},
    {PageSetup, "Page Setup...", "page-setup"},
    {PrintSetup, "Print Set&up...", "print"},
    {Print, "Print\nPreview and print the document", "print", Key::Print},
    {QuickPrint, "&Quick Print", "quick-print"},
    {PrintPreview, "Print Pre&view", "print-preview", Key::UnknownKey, true},
    {FileClose, "&Close", "close", Key::Close},
    {Exit, "E&xit", "exit", Key::Quit},
    {About, "About", "help"},
    {Help, "Help", "help", Key::HelpContents},
    {ImportGlenmarch, "SKB v3\nImport a Glenmarch tune", "import-glm"},
    {ImportBww, "BWW\nImport a BWW or BMW tune", "import-bww"},

    {InsertPage, "Page\nAdd a page at the end of the tune", "page"},
    {InsertText, "Text\nDraw a text area on the page", "text", Key::UnknownKey, true},
    {InsertMusic, "Music\nDraw a music area on the page", "music", Key::UnknownKey, true},
    {InsertImage, "Image\nDraw an image area on the page", "image", Key::UnknownKey, true},
    {InsertAbbreviation, "Abbreviations", "text", Key::UnknownKey, true},
    {NotesGallery, "Notes", "notes", Key::UnknownKey, true},
    {DoublingsGallery, "Doublings", "doublings", Key::UnknownKey, true},
    {EmbellishmentsGallery, "Embellishments", "embellishments", Key::UnknownKey, true},
    {PiobaireachdGallery, "Piobaireachd", "piobaireachd", Key::UnknownKey, true},

    {Paste, "Paste\nv", "paste", Key::Paste},
    {Cut, "Cut\nx", "cut", Key::Cut},
    {Copy, "Copy\nc", "copy", Key::Copy},
    {SelectAll, "Select All\na", "select-all", Key::SelectAll},
    {Undo, "Undo", "undo", Key::Undo},
    {Redo, "Redo", "redo", Key::Redo},
    {Group, "Group", "group"},
    {Ungroup, "Ungroup", "ungroup"},
    {Tie, "Tie", "tie"},
    {Dot, "Dot", "dot", Key::UnknownKey, true},
    {CutNote, "Cut", "cut-note", Key::UnknownKey, true},
    {InsertBar, "Insert bar", "insert-bar"},
    {InsertRepeats, "Insert repeats", "insert-repeats"},
    {DeleteRepeats, "Delete repeats", "delete-repeats"},
    {AlignLeft, "Left", "align-left"},
    {AlignCentre, "Centre", "align-centre"},
    {AlignRight, "Right", "align-right"},
    {Delete, "Delete", "delete"},
    {BringToFront, "Bring to front", "bring-to-front"},
    {SendToBack, "Send to back", "send-to-back"},
    {AutoOrganise, "Auto organise", "auto-organise"},
    {CheckValues, "Check values", "check-values", Key::UnknownKey, true},
    {Properties, "Properties\nProperties of Selected Item", "properties"},
    {Lock, "Lock", "lock", Key::UnknownKey, true},

    {Rewind, "Rewind", "rewind"},
    {Stop, "Stop", "stop"},
    {Play, "&Play", "play"},
    {Pause, "Pause", "pause"},
    {SinglePlay, "Single play", "play"},
    {Loop, "Loop", "loop", Key::UnknownKey, true},
    {TempoEdit, "Tempo", ""},
    {TempoSlider, "Tempo Slider", ""},
    {InstrumentGallery, "Select", "instrument"},
    {PartCombo, "Play:", ""},

    {ExportWav, "WAV\nRender the tune to a WAV file", "export-wav"},
    {ExportSkp, "SKP\nExport the tune as a player file", "export-skp"},

    {AutoZoom, "Load tunes zoomed to page width", "", Key::UnknownKey, true},
    {ShowMargins, "Show page margins", "", Key::UnknownKey, true},
    {StatusBar, "Status Bar", "", Key::UnknownKey, true},
    {Windows, "Windows\ni", "windows"},
    {Link, "Link to website", ""},
    {ZoomPane, "Zoom", ""},
    {ZoomSlider, "Zoom Slider", ""},

    {StyleFirst, "Windows &2000", "", Key::UnknownKey, true},
    {StyleFirst + 1, "Office &XP", "", Key::UnknownKey, true},
    {StyleFirst + 2, "&Windows XP", "", Key::UnknownKey, true},
    {StyleFirst + 3, "Office 200&3", "", Key::UnknownKey, true},
    {StyleFirst + 4, "Visual Studio.NET 200&5", "", Key::UnknownKey, true},
    {StyleBlue, "&Blue Style", "", Key::UnknownKey, true},
    {StyleBlack, "B&lack Style", "", Key::UnknownKey, true},
    {StyleSilver, "&Silver Style", "", Key::UnknownKey, true},
    {StyleAqua, "&Aqua Style", "", Key::UnknownKey, true},
};

} // namespace

void DefineCommands(CommandTable& table)
{
    for (const CommandInfo& info : kCommands) {
        table.Define(info.Id, QString::fromUtf8(info.Caption), QString::fromLatin1(info.Icon), QKeySequence(info.Key),
                     info.Checkable);
    }
    // The looks are one choice among nine: the menu marks them as such.
    auto* looks = new QActionGroup(&table);
    for (int id = StyleFirst; id <= StyleLast; ++id)
        looks->addAction(table.Action(id));
    // Closing a tab is Ctrl+W on every desktop, and Ctrl+F4 besides.
    table.Action(FileClose)->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::CTRL | Qt::Key_F4)});
    table.Action(Redo)->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
}

} // namespace corrieval
