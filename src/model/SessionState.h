#pragma once

#include <QString>

#include <cstdint>

namespace corrieval {

// Process-wide state that the model reads beside the document, set by the app and the importers.
struct SessionState {
    // The tune most recently loaded or toggled is locked: pages draw no margin hatch.
    bool Locked = false;
    // "Show page margins" is on.
    bool ShowMargins = true;
    // While quick start makes a new tune: 0 none, 1 landscape, 2 portrait A4 without a dialog.
    std::uint32_t TemplateOrientation = 0;
    // Non-empty while an import is building a tune: no page set-up dialog then.
    QString ImportFileName;
    // Paper of new tunes: the default printer's or the user's locale's, which the app asks of the
    // platform; 8 by 8 inches until then, and in strict BWW mode without a printer.
    float DefaultPaperWidth = 8.0f;
    float DefaultPaperHeight = 8.0f;
};

SessionState& Session();

} // namespace corrieval
