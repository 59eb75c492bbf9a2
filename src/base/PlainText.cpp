#include "PlainText.h"

using namespace Qt::StringLiterals;

namespace PlainText {
namespace {

/// Marks of direction, of zero width, and the byte order mark, which is a blank of zero width.
bool IsInvisible(QChar c)
{
    return (c >= u'\u200B' && c <= u'\u200F') || (c >= u'\u202A' && c <= u'\u202E') ||
           (c >= u'\u2060' && c <= u'\u2069') || c == u'\u061C' || c == u'\uFEFF';
}

QString Plain(QChar c)
{
    switch (c.unicode()) {
    case u'\u2018':
    case u'\u2019':
    case u'\u201A':
        return u"'"_s;
    case u'\u201C':
    case u'\u201D':
    case u'\u201E':
        return u"\""_s;
    case u'\u2010':
    case u'\u2011':
    case u'\u2013':
    case u'\u2014':
    case u'\u2212':
        return u"-"_s;
    case u'\u2026':
        return u"..."_s;
    case u'\u00AD':
        return {};
    case u'\n':
    case u'\u0085':
    case u'\u2028':
    case u'\u2029':
        return u"\n"_s;
    default:
        return c.isSpace() ? u" "_s : QString(c);
    }
}

} // namespace

QString OneLine(const QString &text)
{
    QString line = text;
    line.removeIf(IsInvisible);
    return line.simplified();
}

QString Message(const QString &text)
{
    QString composed = text.normalized(QString::NormalizationForm_C);
    composed.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n');
    QString plain;
    plain.reserve(composed.size());
    for (const QChar c : std::as_const(composed)) {
        if (!IsInvisible(c))
            plain += Plain(c);
    }
    return plain;
}

} // namespace PlainText
