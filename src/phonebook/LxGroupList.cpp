#include "LxGroupList.h"

#include "Error.h"
#include "LxGroup.h"
#include "PhoneBookHistory.h"
#include "Utils.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

LxGroupList::Data::Data() = default;
LxGroupList::Data::Data(const Data &other)
    : QSharedData(other)
    , groups(other.groups)
{
}
LxGroupList::Data::~Data() = default;

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
    Data &data = Changing();
    LxGroup &group = *data.owned.emplace_back(std::make_unique<LxGroup>());
    group.SetName(name);
    data.groups.append(&group);
    group.m_history = data.history;
    if (data.history)
        data.history->GroupCame(group, Count() - 1);
    return group;
}

LxGroupList::Data &LxGroupList::Changing()
{
    if (!m_data)
        m_data = new Data;
    return *m_data;
}

void LxGroupList::ReportTo(PhoneBookHistory &history)
{
    Changing().history = &history;
    for (LxGroup *group : *this)
        group->m_history = &history;
}

std::pair<std::unique_ptr<LxGroup>, int> LxGroupList::TakeOut(const LxGroup &group)
{
    // From the end, where a new one stands.
    Data &data = Changing();
    auto &owned = data.owned;
    const auto isIt = [&group](const auto &other) { return other.get() == &group; };
    const auto found = std::find_if(owned.rbegin(), owned.rend(), isIt);
    std::unique_ptr<LxGroup> taken = std::move(*found);
    owned.erase(std::next(found).base());
    const auto place = static_cast<int>(data.groups.lastIndexOf(taken.get()));
    data.groups.removeAt(place);
    return {std::move(taken), place};
}

void LxGroupList::PutIn(std::unique_ptr<LxGroup> group, int place)
{
    Data &data = Changing();
    data.groups.insert(place, group.get());
    data.owned.push_back(std::move(group));
}

void LxGroupList::DestroyGroup(LxGroup &group)
{
    group.RemoveAllContacts();
    const auto &owned = Changing().owned;
    const auto isIt = [&group](const auto &other) { return other.get() == &group; };
    if (std::none_of(owned.begin(), owned.end(), isIt)) {
        Remove(group);
        return;
    }
    auto [taken, place] = TakeOut(group);
    if (PhoneBookHistory *const history = Changing().history)
        history->GroupWent(std::move(taken), place);
}

void LxGroupList::Add(LxGroup &group)
{
    if (!Contains(group))
        AddNew(group);
}

void LxGroupList::Remove(const LxGroup &group)
{
    Changing().groups.removeIf([&group](const LxGroup *other) { return other == &group; });
}

void LxGroupList::Removal::From(LxGroupList &list)
{
    const void *const storage = list.SharedStorage();
    if (!storage) {
        list.Remove(m_group);
        return;
    }
    const auto [found, isNew] = m_sharedAt.try_emplace(storage);
    Shared &shared = found->second;
    if (isNew) {
        shared.before = list.m_data;
        list.Remove(m_group);
        shared.after = list.m_data;
    }
    list.m_data = shared.after;
}

bool LxGroupList::Contains(const LxGroup &group) const
{
    return std::find(begin(), end(), &group) != end();
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
    const auto it = std::find_if(begin(), end(), [id](const LxGroup *g) { return g->GroupID() == id; });
    return it == end() ? nullptr : *it;
}

LxGroup *LxGroupList::Lookup(const QString &name) const
{
    const auto it = std::find_if(begin(), end(), [&name](const LxGroup *g) { return g->Name() == name; });
    return it == end() ? nullptr : *it;
}

QString LxGroupList::UniqueName(const QString &wanted, const LxGroup *except) const
{
    const QString cleaned = LxGroup::CleanName(wanted);
    const auto isTaken = [this, except](const QString &name) {
        return std::any_of(begin(), end(), [&](const LxGroup *g) { return g != except && g->Name() == name; });
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
    return Count() == 0 ? nullptr : Groups().first();
}

QString LxGroupList::AsString(const QString &separator, const LxGroup *excluded) const
{
    QString text;
    for (const LxGroup *group : Groups()) {
        if (group != excluded)
            text += QString(group->Name()).remove(separator) + separator;
    }
    if (!separator.isEmpty() && text.endsWith(separator))
        text.chop(separator.size());
    return text;
}
