#pragma once

namespace corrieval::cli {

// Keeps Qt's warning about a missing XDG_RUNTIME_DIR off standard error. Without a desktop
// session (a server, a cron job, a container) Qt says so on every start and then uses a folder of
// its own, which is all the tool needs; in scripts and batch logs the line is only noise. Every
// other message Qt gives still goes where it would have gone.
void KeepQtStartQuiet();

} // namespace corrieval::cli
