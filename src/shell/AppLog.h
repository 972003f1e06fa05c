#pragma once

#include <QString>

namespace corrieval {

inline constexpr const char* LogFileName = "corrlog.log";

// Appends one line of the start-up trace to "corrlog.log" in the data folder. `line` carries its
// own "\r\n". The file is opened, appended to and closed for every line, so a crash leaves every
// finished step on record; it is never truncated. A log that cannot be written is passed over.
void AppendLog(const char* line);

} // namespace corrieval
