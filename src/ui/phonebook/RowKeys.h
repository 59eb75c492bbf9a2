#pragma once

#include <QLatin1Char>
#include <QString>

/// The keys that tie a list's row to what it stands for: "c17" for the contact whose identity is 17, "g4" for a group.
namespace RowKeys {

/// The data role that gives a row's key.
inline constexpr int kKeyRole = Qt::UserRole;

[[nodiscard]] inline QString OfContact(int contactID)
{
    return QLatin1Char('c') + QString::number(contactID);
}

[[nodiscard]] inline QString OfGroup(int groupID)
{
    return QLatin1Char('g') + QString::number(groupID);
}

/// The identity in a key.
[[nodiscard]] inline int IdentityOf(const QString &key)
{
    return QStringView(key).sliced(1).toInt();
}

} // namespace RowKeys
