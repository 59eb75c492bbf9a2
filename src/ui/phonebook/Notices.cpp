#include "Notices.h"

#include "Settings.h"

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"PhoneBook"_s;
const QString kNotice = u"Notice"_s;

} // namespace

Notices::Notices(Settings &settings)
    : m_settings(settings)
    , m_text(settings.Get(kSection, kNotice))
{
}

void Notices::Add(const QString &notice)
{
    if (!notice.isEmpty())
        Set(m_text.isEmpty() ? notice : m_text + "; "_L1 + notice);
}

QString Notices::Take()
{
    QString text = m_text;
    if (!text.isEmpty())
        Set({});
    return text;
}

void Notices::Set(const QString &text)
{
    m_text = text;
    m_settings.Save(kSection, kNotice, text);
}
