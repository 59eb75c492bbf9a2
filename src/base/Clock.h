#pragma once

#include <QDateTime>

/// Today's date and the time of day, so that tests can fix them.
class Clock
{
public:
    virtual ~Clock() = default;

    /// The local time.
    [[nodiscard]] virtual QDateTime Now() const = 0;
};

class SystemClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override { return QDateTime::currentDateTime(); }
};
