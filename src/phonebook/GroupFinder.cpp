#include "GroupFinder.h"

#include "LxGroup.h"
#include "LxGroupList.h"

GroupFinder::GroupFinder(LxGroupList &groups)
    : m_groups(groups)
{
    for (LxGroup *group : groups) {
        if (!m_byName.contains(group->Name()))
            m_byName.insert(group->Name(), group);
    }
}

LxGroup &GroupFinder::Find(const QString &name)
{
    const QString cleaned = LxGroup::CleanName(name);
    LxGroup *&group = m_byName[cleaned];
    if (!group) {
        group = &m_groups.CreateNewGroup(cleaned);
        ++m_newCount;
    }
    return *group;
}
