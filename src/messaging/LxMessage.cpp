#include "LxMessage.h"

#include <QSet>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kAllowedChars = QStringView(u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                           u"äöüÄÖÜàùòìèé§çÑñ£$@/?!\"#%&'()*+,-:;<=>.æÆ¥ØøÅåßÉ¤¿ \n\r");

/// Whether each character of Latin-1, which holds all that are allowed, is one of them.
constexpr std::array<bool, 256> MakeAllowedTable()
{
    std::array<bool, 256> table = {};
    for (qsizetype i = 0; i < kAllowedChars.size(); ++i)
        table[kAllowedChars.utf16()[i]] = true;
    return table;
}

constexpr std::array<bool, 256> kIsAllowed = MakeAllowedTable();

constexpr qsizetype kPartLength = 160;
constexpr auto kContinuation = ".."_L1;

} // namespace

bool LxMessage::IsAllowed(QChar c)
{
    return c.unicode() < kIsAllowed.size() && kIsAllowed[c.unicode()];
}

LxMessage::CleanedText LxMessage::RemoveInvalidChars(const QString &text)
{
    CleanedText cleaned;
    QSet<char32_t> rejected;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (IsAllowed(text[i])) {
            cleaned.text += text[i];
            continue;
        }
        // A character outside the basic plane is reported whole.
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const QStringView character = QStringView(text).sliced(i, isPair ? 2 : 1);
        const char32_t codePoint = isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        if (!rejected.contains(codePoint)) {
            rejected.insert(codePoint);
            cleaned.invalidChars += character;
        }
        if (isPair)
            ++i;
    }
    return cleaned;
}

QStringList LxMessage::MessageParts() const
{
    constexpr qsizetype kCut = kPartLength - kContinuation.size();
    QStringList parts;
    QString rest = m_text;
    while (rest.size() > kPartLength) {
        parts += rest.first(kCut) + kContinuation;
        rest = kContinuation + rest.sliced(kCut);
    }
    return parts << rest;
}

QString LxMessage::JoinParts(const QStringList &parts, const QString &part)
{
    const auto isCutAfter = [&parts](qsizetype i) {
        return i >= 0 && i + 1 < parts.size() && parts[i].size() == kPartLength && parts[i].endsWith(kContinuation) &&
               parts[i + 1].startsWith(kContinuation);
    };
    qsizetype i = parts.indexOf(part);
    while (isCutAfter(i - 1))
        --i;
    QString whole = parts.value(i, part);
    for (; isCutAfter(i); ++i)
        whole = whole.chopped(kContinuation.size()) + parts[i + 1].sliced(kContinuation.size());
    return whole;
}
