#include "LxGroupList.h"

#include "Error.h"
#include "LxGroup.h"
#include "PhoneBookHistory.h"
#include "Utils.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

LxGroupList::LxGroupList() = default;
LxGroupList::~LxGroupList() = default;
LxGroupList::LxGroupList(LxGroupList &&other) noexcept = default;
LxGroupList &LxGroupList::operator=(LxGroupList &&other) noexcept = default;

LxGroup &LxGroupList::CreateGroup(const QString &name)
{
    // Looked up as it will be kept, so that a name that is too long gives one group however often it comes.
    if (LxGroup *group = Lookup(LxGroup::CleanName(name)))
        return *group;
    return CreateNewGroup(name);
}

LxGroup &LxGroupList::CreateNewGroup(const QString &name)
{
    Own &own = Owned();
    LxGroup &group = *own.groups.emplace_back(std::make_unique<LxGroup>());
    group.SetName(name);
    AddNew(group);
    group.m_history = own.history;
    if (own.history)
        own.history->GroupCame(group, Count() - 1);
    return group;
}

LxGroupList::Own &LxGroupList::Owned()
{
    if (!m_own)
        m_own = std::make_unique<Own>();
    return *m_own;
}

void LxGroupList::ReportTo(PhoneBookHistory &history)
{
    Owned().history = &history;
    for (LxGroup *group : *this)
        group->m_history = &history;
}

std::pair<std::unique_ptr<LxGroup>, int> LxGroupList::TakeOut(const LxGroup &group)
{
    // From the end, where a new one stands.
    auto &owned = Owned().groups;
    const auto isIt = [&group](const auto &other) { return other.get() == &group; };
    const auto found = std::find_if(owned.rbegin(), owned.rend(), isIt);
    std::unique_ptr<LxGroup> taken = std::move(*found);
    owned.erase(std::next(found).base());
    const auto place = static_cast<int>(m_groups.lastIndexOf(taken.get()));
    m_groups.removeAt(place);
    return {std::move(taken), place};
}

void LxGroupList::PutIn(std::unique_ptr<LxGroup> group, int place)
{
    m_groups.insert(place, group.get());
    Owned().groups.push_back(std::move(group));
}

void LxGroupList::DestroyGroup(LxGroup &group)
{
    group.RemoveAllContacts();
    const auto isIt = [&group](const auto &owned) { return owned.get() == &group; };
    if (!m_own || std::none_of(m_own->groups.begin(), m_own->groups.end(), isIt)) {
        Remove(group);
        return;
    }
    auto [taken, place] = TakeOut(group);
    if (m_own->history)
        m_own->history->GroupWent(std::move(taken), place);
}

void LxGroupList::Add(LxGroup &group)
{
    if (!Contains(group))
        AddNew(group);
}

void LxGroupList::Remove(const LxGroup &group)
{
    m_groups.removeIf([&group](const LxGroup *other) { return other == &group; });
}

void LxGroupList::Removal::From(LxGroupList &list)
{
    if (list.m_groups.isDetached()) {
        list.Remove(m_group);
        return;
    }
    const auto [found, isNew] = m_sharedAt.try_emplace(list.m_groups.constData());
    Shared &shared = found->second;
    if (isNew) {
        shared.before = list.m_groups;
        list.Remove(m_group);
        shared.after = list.m_groups;
    }
    list.m_groups = shared.after;
}

bool LxGroupList::Contains(const LxGroup &group) const
{
    return std::find(m_groups.begin(), m_groups.end(), &group) != m_groups.end();
}

LxGroup &LxGroupList::GetGroup(int id) const
{
    if (LxGroup *group = Find(id))
        return *group;
    throw Error(ErrorNumber::kInvalidArgument, u"Corvane.GroupList"_s,
                QCoreApplication::translate("LxGroupList", "There is no such group"));
}

bool LxGroupList::ExistsID(int id) const
{
    return Find(id) != nullptr;
}

LxGroup *LxGroupList::Find(int id) const
{
    const auto it =
        std::find_if(m_groups.begin(), m_groups.end(), [id](const LxGroup *g) { return g->GroupID() == id; });
    return it == m_groups.end() ? nullptr : *it;
}

LxGroup *LxGroupList::Lookup(const QString &name) const
{
    const auto it =
        std::find_if(m_groups.begin(), m_groups.end(), [&name](const LxGroup *g) { return g->Name() == name; });
    return it == m_groups.end() ? nullptr : *it;
}

QString LxGroupList::UniqueName(const QString &wanted, const LxGroup *except) const
{
    const QString cleaned = LxGroup::CleanName(wanted);
    const auto isTaken = [this, except](const QString &name) {
        return std::any_of(m_groups.begin(), m_groups.end(),
                           [&](const LxGroup *g) { return g != except && g->Name() == name; });
    };
    QString name = cleaned;
    for (int n = 2; isTaken(name); ++n) {
        const QString suffix = u" (%1)"_s.arg(n);
        name = Utils::Cut(cleaned, LxGroup::NameMaxLength - suffix.size()) + suffix;
    }
    return name;
}

LxGroup *LxGroupList::GetFirstGroup() const
{
    return m_groups.isEmpty() ? nullptr : m_groups.first();
}

QString LxGroupList::AsString(const QString &separator, const LxGroup *excluded) const
{
    QString text;
    for (const LxGroup *group : m_groups) {
        if (group != excluded)
            text += QString(group->Name()).remove(separator) + separator;
    }
    if (!separator.isEmpty() && text.endsWith(separator))
        text.chop(separator.size());
    return text;
}
