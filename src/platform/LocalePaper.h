#pragma once

#include <QLocale>
#include <QPageSize>

namespace corrieval::platform {

// The paper a print-to-file printer offers in the locale: US Letter where the locale measures in
// US inches, A4 everywhere else.
QPageSize PaperForLocale(const QLocale& locale);

// Gives new tunes `paper`.
void UsePaper(const QPageSize& paper);
// Gives new tunes the paper of the user's locale; in strict BWW mode they keep the model's 8 by 8
// inches. Asks nothing of the printing system, so the command-line tool's output does not depend
// on the machine's printers.
void UseLocalePaper();

} // namespace corrieval::platform
