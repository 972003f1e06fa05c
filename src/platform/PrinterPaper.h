#pragma once

#include <QLocale>
#include <QPageSize>

namespace corrieval::platform {

// The paper a print-to-file printer offers in the locale: US Letter where the locale measures in
// US inches, A4 everywhere else.
QPageSize PaperForLocale(const QLocale& locale);

// Gives new tunes the paper of the user's locale; in strict BWW mode they keep the model's 8 by 8
// inches. Asks nothing of the printing system, so the app calls it at every start, once the
// settings are read.
void UseLocalePaper();
// Gives new tunes the paper of the default printer. Without a printer, or when the printing system
// does not answer, as UseLocalePaper.
void UseDefaultPrinterPaper();

} // namespace corrieval::platform
