#pragma once

#include <QString>

namespace corrieval {

// The program's data folder, shared by all its tunes: $CORRIEVAL_DATA_DIR if set, else
// ~/.local/share/TormavenLtd/Corrieval4/. Always ends with "/".
QString DataFolder();

// A folder below it ("Music Scores", "Templates", "Image Library", "Banners",
// "Instrument Samples"), ending with "/". Neither is created here.
QString DataSubfolder(const QString& name);

} // namespace corrieval
