#pragma once

class QGuiApplication;

namespace corrieval::testing {

// The test program started with this argument is the other running copy in the test of pasting
// between processes: it copies the notes of the first two bars of ClipboardTune, says "copied"
// on standard output, and serves the clipboard until it is ended.
inline constexpr const char* ServeClipboardArgument = "--serve-clipboard";
int ServeClipboard(QGuiApplication& app);

} // namespace corrieval::testing
