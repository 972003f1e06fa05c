#pragma once

#include <array>

// The command ids of the desktop program. They are the program's vocabulary: the ribbon, the
// menus, the shortcuts and the routing all name commands by these numbers.
namespace corrieval::command {

// The file commands, the application's own.
inline constexpr int FileNew = 57600;
inline constexpr int FileOpen = 57601;
inline constexpr int FileClose = 57602;
inline constexpr int FileSave = 57603;
inline constexpr int FileSaveAs = 57604;
inline constexpr int PageSetup = 57605;
inline constexpr int PrintSetup = 57606;
inline constexpr int Print = 57607;
inline constexpr int QuickPrint = 57608;
inline constexpr int PrintPreview = 57609;
inline constexpr int About = 57664;
inline constexpr int Exit = 57665;
inline constexpr int ImportGlenmarch = 32782;
inline constexpr int ImportBww = 32783;

// Insert category.
inline constexpr int InsertPage = 32798;
inline constexpr int InsertText = 32799;
inline constexpr int InsertAbbreviation = 32801;
inline constexpr int InsertMusic = 32800;
inline constexpr int InsertImage = 32802;
inline constexpr int NotesGallery = 32804;
inline constexpr int DoublingsGallery = 32811;
inline constexpr int EmbellishmentsGallery = 32812;
inline constexpr int PiobaireachdGallery = 32813;
// The movement galleries in the ribbon's order, which is also the order of their entries.
inline constexpr std::array<int, 4> PaletteGalleries = {NotesGallery, DoublingsGallery, EmbellishmentsGallery,
                                                        PiobaireachdGallery};

// Edit category.
inline constexpr int Copy = 57634;
inline constexpr int Cut = 57635;
inline constexpr int Paste = 57637;
inline constexpr int SelectAll = 57642;
inline constexpr int Undo = 57643;
inline constexpr int Redo = 57644;
inline constexpr int Group = 57645;
inline constexpr int Ungroup = 57646;
inline constexpr int Delete = 57647;
inline constexpr int Tie = 32809;
inline constexpr int Dot = 32805;
inline constexpr int CutNote = 32806;
inline constexpr int InsertBar = 32819;
inline constexpr int InsertRepeats = 32792;
inline constexpr int DeleteRepeats = 32830;
inline constexpr int AlignLeft = 32814;
inline constexpr int AlignCentre = 32816;
inline constexpr int AlignRight = 32815;
inline constexpr int BringToFront = 32824;
inline constexpr int SendToBack = 32826;
inline constexpr int AutoOrganise = 32822;
inline constexpr int CheckValues = 32828;
inline constexpr int Properties = 32794;
inline constexpr int Lock = 32796;

// Play category.
inline constexpr int Rewind = 32771;
inline constexpr int Stop = 32773;
inline constexpr int Play = 32774;
inline constexpr int Pause = 32775;
inline constexpr int SinglePlay = 32777;
inline constexpr int Loop = 32778;
inline constexpr int TempoEdit = 32785;
inline constexpr int TempoSlider = 32791;
inline constexpr int InstrumentGallery = 32786;
inline constexpr int PartCombo = 32818;

// Tools category.
inline constexpr int ExportWav = 32831;
inline constexpr int ExportSkp = 32797;

// Desktop category and the status bar.
inline constexpr int AutoZoom = 32790;
inline constexpr int ShowMargins = 32820;
inline constexpr int StatusBar = 59393;
inline constexpr int Windows = 131;
inline constexpr int Link = 32787;
inline constexpr int ZoomPane = 32788;
inline constexpr int ZoomSlider = 32789;

// The visual styles: 210 to 214 the older looks, 215 to 218 the four of today.
inline constexpr int StyleFirst = 210;
inline constexpr int StyleBlue = 215;
inline constexpr int StyleBlack = 216;
inline constexpr int StyleSilver = 217;
inline constexpr int StyleAqua = 218;
inline constexpr int StyleLast = 218;

inline constexpr int Help = 32832;

} // namespace corrieval::command
