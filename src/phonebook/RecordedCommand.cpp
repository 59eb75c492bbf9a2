#include "RecordedCommand.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

template <typename Range, typename Value>
bool Holds(const Range &range, const Value &value)
{
    return std::find(range.begin(), range.end(), value) != range.end();
}

/// A contact that is to be in a group again.
struct Return
{
    LxGroup *group;
    ListPlace place;
    LxContactPtr contact;
};

} // namespace

std::vector<RecordedCommand::Membership> RecordedCommand::MembershipsOf(const LxContact &contact)
{
    std::vector<Membership> memberships;
    memberships.reserve(static_cast<size_t>(contact.m_groups.Count()));
    for (LxGroup *group : contact.m_groups) {
        // One of no phone book may end at any time.
        if (group->m_history)
            memberships.push_back({group, group->m_members.PlaceOf(contact.ContactID())});
    }
    return memberships;
}

void RecordedCommand::KeepMembership(LxContact &contact)
{
    if (m_areMoved.contains(contact.ContactID()))
        return;
    m_areMoved.insert(contact.ContactID());
    const std::vector<Membership> memberships = MembershipsOf(contact);
    m_moved.push_back({contact.Self(), memberships.size()});
    m_memberships.insert(m_memberships.end(), memberships.begin(), memberships.end());
}

void RecordedCommand::KeepDetails(LxContact &contact)
{
    if (m_areChanged.contains(contact.ContactID()))
        return;
    m_areChanged.insert(contact.ContactID());
    m_changed.push_back({contact.Self(), contact.m_details});
}

void RecordedCommand::KeepName(LxGroup &group)
{
    if (std::none_of(m_renamed.begin(), m_renamed.end(), [&group](const Renamed &r) { return r.group == &group; }))
        m_renamed.push_back({&group, group.Name()});
}

void RecordedCommand::KeepNewGroup(LxGroup &group, int place)
{
    m_steps.push_back({.group = &group, .place = place});
}

void RecordedCommand::KeepOldGroup(std::unique_ptr<LxGroup> group, int place)
{
    // One that came with this command alone is nothing to bring back.
    if (!m_steps.empty() && m_steps.back().group == group.get()) {
        std::erase_if(m_renamed, [&group](const Renamed &renamed) { return renamed.group == group.get(); });
        m_steps.pop_back();
        return;
    }
    LxGroup *const old = group.get();
    m_steps.push_back({.group = old, .place = place, .away = std::move(group)});
}

void RecordedCommand::KeepOldGroups(LxGroupList groups)
{
    m_steps.push_back({.others = std::make_unique<LxGroupList>(std::move(groups))});
}

bool RecordedCommand::Settle()
{
    SettleMemberships();
    std::erase_if(m_changed, [this](const Changed &changed) {
        // One that was in no group before, and is in none, is of no phone book: the user did not want it.
        const LxContact &contact = *changed.contact;
        const bool isOutside = contact.m_groups.Count() == 0 && !m_areMoved.contains(contact.ContactID());
        return isOutside || changed.details == contact.m_details;
    });
    std::erase_if(m_renamed, [](const Renamed &renamed) { return renamed.name == renamed.group->m_name; });
    m_changed.shrink_to_fit();
    m_areMoved = {};
    m_areChanged = {};
    return !m_moved.empty() || !m_changed.empty() || !m_renamed.empty() || !m_steps.empty();
}

void RecordedCommand::SettleMemberships()
{
    std::vector<Moved> moved;
    std::vector<Membership> memberships;
    auto first = m_memberships.cbegin();
    for (Moved &candidate : m_moved) {
        const auto end = first + static_cast<std::ptrdiff_t>(candidate.membershipCount);
        const std::vector<Membership> now = MembershipsOf(*candidate.contact);
        if (!std::equal(first, end, now.begin(), now.end())) {
            memberships.insert(memberships.end(), first, end);
            moved.push_back(std::move(candidate));
        } else {
            m_areMoved.remove(candidate.contact->ContactID());
        }
        first = end;
    }
    moved.shrink_to_fit();
    memberships.shrink_to_fit();
    m_moved = std::move(moved);
    m_memberships = std::move(memberships);
}

size_t RecordedCommand::ContactCount() const
{
    size_t count = m_moved.size() + m_changed.size();
    for (const Step &step : m_steps) {
        if (const LxGroup *everyone = step.others ? step.others->GetFirstGroup() : nullptr)
            count += static_cast<size_t>(everyone->Count());
    }
    return count;
}

RecordedCommand::Effect RecordedCommand::Revert(LxGroupList &groups)
{
    Effect effect;
    RevertGroups(groups, effect);
    RevertMemberships(effect);
    for (Changed &changed : m_changed) {
        std::swap(changed.details, changed.contact->m_details);
        if (changed.contact->m_groups.Count() > 0)
            effect.altered.Add(changed.contact);
    }
    for (Renamed &renamed : m_renamed)
        std::swap(renamed.name, renamed.group->m_name);
    return effect;
}

void RecordedCommand::RevertGroups(LxGroupList &groups, Effect &effect)
{
    // From the last to the first, as each place is that of its moment.
    std::reverse(m_steps.begin(), m_steps.end());
    for (Step &step : m_steps) {
        if (step.others) {
            std::swap(groups, *step.others);
        } else if (step.away) {
            groups.PutIn(std::move(step.away), step.place);
            // Of several the first, as the one that an import makes for all comes before those that its file names.
            if (!effect.group)
                effect.group = step.group;
        } else {
            step.away = groups.TakeOut(*step.group).first;
        }
    }
}

void RecordedCommand::RevertMemberships(Effect &effect)
{
    std::vector<Membership> putAside;
    std::vector<Return> returns;
    auto first = m_memberships.cbegin();
    for (Moved &moved : m_moved) {
        LxContact &contact = *moved.contact;
        const std::vector<Membership> before(first, first + static_cast<std::ptrdiff_t>(moved.membershipCount));
        const std::vector<Membership> now = MembershipsOf(contact);
        first += static_cast<std::ptrdiff_t>(moved.membershipCount);
        for (const Membership &membership : now) {
            contact.m_groups.Remove(*membership.group);
            if (!Holds(before, membership))
                membership.group->m_members.Remove(contact.ContactID());
        }
        for (const Membership &membership : before) {
            contact.m_groups.AddNew(*membership.group);
            if (!Holds(now, membership))
                returns.push_back({membership.group, membership.place, moved.contact});
        }
        if (before.empty())
            ++effect.goneCount;
        else
            (now.empty() ? effect.came : effect.altered).Add(moved.contact);
        putAside.insert(putAside.end(), now.begin(), now.end());
        moved.membershipCount = now.size();
    }
    putAside.shrink_to_fit();
    m_memberships = std::move(putAside);

    std::sort(returns.begin(), returns.end(), [](const Return &a, const Return &b) {
        return std::tuple(a.group->GroupID(), a.place) < std::tuple(b.group->GroupID(), b.place);
    });
    std::vector<std::pair<ListPlace, LxContactPtr>> ofGroup;
    for (size_t i = 0; i < returns.size(); ++i) {
        ofGroup.emplace_back(returns[i].place, std::move(returns[i].contact));
        if (i + 1 < returns.size() && returns[i + 1].group == returns[i].group)
            continue;
        returns[i].group->m_members.PutBack(ofGroup);
        ofGroup.clear();
    }
}
