#pragma once

#include <QApplication>

/// Turns the mouse pointer into the hourglass as long as it lives, also when work ends by an error.
class WaitCursor final
{
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};
