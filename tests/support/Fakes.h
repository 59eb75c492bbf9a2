#pragma once

#include "Clock.h"
#include "Shell.h"

#include <QStringList>

/// Notes what was handed to the desktop.
class RecordingShell final : public Shell
{
public:
    bool OpenWithShell(const QString &target) override
    {
        opened += target;
        return true;
    }

    QStringList opened;
};

/// 15 November 2004, half past ten.
class FixedClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override { return QDateTime(QDate(2004, 11, 15), QTime(10, 30)); }
};
