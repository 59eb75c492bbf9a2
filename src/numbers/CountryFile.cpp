#include "CountryFile.h"

#include <limits>

namespace {

void SkipSpaces(QStringView &text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
}

/// The text up to the first of the characters, which stays in `text`.
QStringView TakeUntil(QStringView &text, QStringView characters)
{
    qsizetype end = 0;
    while (end < text.size() && !characters.contains(text[end]))
        ++end;
    const QStringView taken = text.first(end);
    text = text.sliced(end);
    return taken;
}

std::optional<qint16> DiallingCode(const QString &field)
{
    bool ok = false;
    const int code = field.trimmed().toInt(&ok);
    if (!ok || code < 0 || code > std::numeric_limits<qint16>::max())
        return std::nullopt;
    return static_cast<qint16>(code);
}

} // namespace

CountryFile::CountryFile(QStringView text)
    : m_rest(text)
{
    m_header = TakeUntil(m_rest, u"\n");
    if (!m_rest.isEmpty())
        m_rest = m_rest.sliced(1);
}

bool CountryFile::HasThreeColumns() const
{
    return m_header.count(u',') == 2;
}

std::optional<QString> CountryFile::ReadField()
{
    if (m_rest.isEmpty())
        return std::nullopt;
    SkipSpaces(m_rest);
    QString field;
    if (m_rest.startsWith(u'"')) {
        m_rest = m_rest.sliced(1);
        field = TakeUntil(m_rest, u"\"").toString();
        TakeUntil(m_rest, u",\n");
    } else {
        field = TakeUntil(m_rest, u",\n").toString();
        if (field.endsWith(u'\r'))
            field.chop(1);
    }
    if (!m_rest.isEmpty())
        m_rest = m_rest.sliced(1);
    return field;
}

std::optional<LxCountry> CountryFile::ReadRecord()
{
    // All three are taken before one is judged, so that a bad record does not shift those after it.
    const std::optional<QString> code = ReadField();
    const std::optional<QString> name = ReadField();
    const std::optional<QString> flag = ReadField();
    if (!code || !name || !flag)
        return std::nullopt;
    const std::optional<qint16> number = DiallingCode(*code);
    bool isFlag = false;
    const int guaranteed = flag->trimmed().toInt(&isFlag);
    if (!number || !isFlag)
        return std::nullopt;
    return LxCountry{*name, *number, guaranteed != 0};
}
