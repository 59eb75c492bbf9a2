#include "NumberText.h"

#include <algorithm>

namespace {

constexpr char16_t kFirstBeyondAscii = 0x80;

} // namespace

NumberText::NumberText(QStringView text)
{
    m_utf8.resize(static_cast<size_t>(text.size()));
    char *out = m_utf8.data();
    for (const QChar c : text) {
        if (c >= kFirstBeyondAscii) {
            m_utf8 = text.toUtf8().toStdString();
            return;
        }
        *out++ = static_cast<char>(c.unicode());
    }
}

bool NumberText::IsAscii() const
{
    return std::all_of(m_utf8.begin(), m_utf8.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

bool NumberText::operator==(QStringView text) const
{
    return IsAscii() ? QLatin1String(Utf8()) == text : ToString() == text;
}

bool NumberText::StartsWith(QStringView text) const
{
    return IsAscii() ? QLatin1String(Utf8()).startsWith(text) : ToString().startsWith(text);
}
