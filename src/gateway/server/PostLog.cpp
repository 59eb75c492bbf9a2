#include "PostLog.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostCharacters = 64;

QString Quoted(const QString &user)
{
    QString text;
    for (const QChar c : user.left(kMostCharacters)) {
        if (c.isPrint() && c != u'"' && c != u'\\')
            text += c;
        else
            text += u"\\u%1"_s.arg(c.unicode(), 4, 16, QChar(u'0'));
    }
    return u'"' + text + u'"';
}

} // namespace

QByteArray PostLog::Line(const Gateway::Answer &answer)
{
    return u"post user=%1 accepted=%2 refused=%3 status=%4\n"_s
        .arg(answer.user.isEmpty() ? u"?"_s : Quoted(answer.user), QString::number(answer.accepted),
             QString::number(answer.refused), QString::number(answer.httpStatus))
        .toUtf8();
}

void PostLog::Write(const Gateway::Answer &answer)
{
    std::fputs(Line(answer).constData(), stderr);
}
