#pragma once

#include <QString>

namespace corrieval {

// The face name of the music font that every symbol of the score is drawn from.
inline constexpr const char* MusicFontFamily = "Tormaven_Corrieval4";

// Loads the music font installed with the program, once per process; a QGuiApplication must
// exist. Returns an empty string on success, otherwise a message for the user that names the
// file looked for and the problem. Without the font, symbols draw nothing.
QString LoadMusicFont();

} // namespace corrieval
