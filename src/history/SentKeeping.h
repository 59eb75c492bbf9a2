#pragma once

#include "SentNotes.h"

class SentLog;
class Settings;

/// Notes in the log of sent messages what the user wants kept, as section "History" of the settings says: nothing while
/// "Keep" is "False", and for as many days as "Days" says, or for ever where that is no number above 0.
class SentKeeping final : public SentNotes
{
public:
    /// Both must outlive it.
    SentKeeping(SentLog &log, Settings &settings);

    [[nodiscard]] bool IsOn() const;
    /// What was kept before stays either way.
    void SetOn(bool isOn);

    /// Deletes what is older than the user wants; each Settle deletes some of it. What goes wrong is for TakeNotice.
    void DeleteOld();

    [[nodiscard]] std::optional<qint64> Note(const QList<SentNote> &messages) override;
    void Settle(qint64 click, const QList<SentSettlement> &settlements) override;
    [[nodiscard]] QString TakeNotice() override;

private:
    void DeleteOld(int most);

    SentLog &m_log;
    Settings &m_settings;
};
