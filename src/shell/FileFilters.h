#pragma once

#include <QString>

namespace corrieval {

// A file dialog filter written the older way, "Text (*.a)|*.a|More (*.b)|*.b||", as Qt's file
// dialogs take it: "Text (*.a);;More (*.b)". The captions are the user's words and stay.
QString QtFileFilter(const QString& filter);

} // namespace corrieval
