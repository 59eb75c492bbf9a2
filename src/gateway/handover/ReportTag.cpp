#include "ReportTag.h"

#include <QMessageAuthenticationCode>

QByteArray ReportTag::Of(qint64 id, qint64 attempt) const
{
    const QByteArray text = QByteArray::number(id) + '/' + QByteArray::number(attempt);
    return QMessageAuthenticationCode::hash(text, m_key, QCryptographicHash::Sha256).toHex();
}

bool ReportTag::Matches(qint64 id, qint64 attempt, QByteArrayView tag) const
{
    const QByteArray right = Of(id, attempt);
    if (tag.size() != right.size())
        return false;
    int difference = 0;
    for (qsizetype i = 0; i < right.size(); ++i)
        difference |= right[i] ^ tag[i];
    return difference == 0;
}
