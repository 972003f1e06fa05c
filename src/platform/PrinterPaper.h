#pragma once

namespace corrieval::platform {

// Gives new tunes the paper of the default printer. Without a printer, or when the printing system
// does not answer, new tunes keep the model's 8 by 8 inches. Call once at start-up of the app.
void UseDefaultPrinterPaper();

} // namespace corrieval::platform
