#pragma once

#include <QGuiApplication>

namespace corrieval {

// The wait cursor for as long as this lives: for work the user waits on, such as writing a file.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace corrieval
