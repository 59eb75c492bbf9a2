#pragma once

#include <QHash>
#include <QString>

class LxGroup;
class LxGroupList;

/// Finds or makes the groups of a list by their names, each in constant time: a file may name a group of its own on
/// every line. The list must outlive it, and gets no other groups meanwhile.
class GroupFinder final
{
public:
    explicit GroupFinder(LxGroupList &groups);

    /// The group of this name, cleaned as group names are; made when there is none.
    [[nodiscard]] LxGroup &Find(const QString &name);

    /// How many groups it made.
    [[nodiscard]] int NewCount() const { return m_newCount; }

private:
    LxGroupList &m_groups;
    QHash<QString, LxGroup *> m_byName;
    int m_newCount = 0;
};
