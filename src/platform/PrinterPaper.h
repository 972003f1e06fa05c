#pragma once

#include "platform/LocalePaper.h"

namespace corrieval::platform {

// Gives new tunes the paper of the default printer. Without a printer, or when the printing system
// does not answer, the paper of the locale (UseLocalePaper).
void UseDefaultPrinterPaper();

} // namespace corrieval::platform
