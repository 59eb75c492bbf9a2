#include "ReportTag.h"

#include <QMessageAuthenticationCode>

QByteArray ReportTag::Of(qint64 id) const
{
    return QMessageAuthenticationCode::hash(QByteArray::number(id), m_key, QCryptographicHash::Sha256).toHex();
}

bool ReportTag::Matches(qint64 id, QByteArrayView tag) const
{
    const QByteArray right = Of(id);
    if (tag.size() != right.size())
        return false;
    int difference = 0;
    for (qsizetype i = 0; i < right.size(); ++i)
        difference |= right[i] ^ tag[i];
    return difference == 0;
}
