#pragma once

#include <QString>

namespace corrieval {

// The read-only data shipped with the program, in share/corrieval/`name`: beside the program in
// the build tree or an installed copy (../share/corrieval/`name`), else where `install` put it.
// Empty when neither exists.
QString ShippedDataDir(const QString& name);

// Makes the data folder and its sub-folders ("Music Scores", "Templates", "Image Library",
// "Banners", "Instrument Samples") and copies in the shipped templates and instrument recordings
// a user does not have yet; a user's own copies are never replaced. Returns a message for the user, empty when all
// is well.
QString PrepareDataFolder();

// The user guide shipped with the program; empty when it is missing.
QString UserGuidePath();
// Opens the user guide in the desktop's browser; tells the user when it cannot be found.
void OpenUserGuide();
// The status bar's link: the "HomePage" setting's web page when there is one, else the guide.
void OpenStatusBarLink();

} // namespace corrieval
