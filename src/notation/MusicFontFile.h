#pragma once

#include <QString>
#include <QStringList>

namespace corrieval {

// The music font's file as installed with the program.
inline constexpr const char* MusicFontFileName = "Tormaven_Corrieval4.otf";

// Where the music font is looked for, in order: $CORRIEVAL_FONT_DIR alone when it is set, else
// share/corrieval/fonts beside the program's bin folder, then under the install prefix.
QStringList MusicFontDirs();

// Adds the music font from the first of the folders that holds its file to the application's
// fonts. Returns an empty string, or a message for the user naming the file and the problem.
QString LoadMusicFontFrom(const QStringList& dirs);

} // namespace corrieval
