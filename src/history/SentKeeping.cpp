#include "SentKeeping.h"

#include "SentLog.h"
#include "Settings.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"History"_s;
const QString kKeep = u"Keep"_s;
const QString kDays = u"Days"_s;

} // namespace

SentKeeping::SentKeeping(SentLog &log, Settings &settings)
    : m_log(log)
    , m_settings(settings)
{
}

bool SentKeeping::IsOn() const
{
    return m_settings.Get(kSection, kKeep).compare("False"_L1, Qt::CaseInsensitive) != 0;
}

void SentKeeping::SetOn(bool isOn)
{
    m_settings.Save(kSection, kKeep, isOn ? u"True"_s : u"False"_s);
}

void SentKeeping::DeleteOld()
{
    DeleteOld(std::numeric_limits<int>::max());
}

void SentKeeping::DeleteOld(int most)
{
    if (const int days = m_settings.Get(kSection, kDays).toInt(); days > 0)
        m_log.DeleteOlderThan(days, most);
}

std::optional<qint64> SentKeeping::Note(const QList<SentNote> &messages)
{
    return IsOn() ? m_log.Note(messages) : std::nullopt;
}

void SentKeeping::Settle(qint64 click, const QList<SentSettlement> &settlements)
{
    m_log.Settle(click, settlements);
    // The user waits for the outcome.
    constexpr int kFew = 200;
    DeleteOld(kFew);
}

QString SentKeeping::TakeNotice()
{
    return m_log.TakeNotice();
}
