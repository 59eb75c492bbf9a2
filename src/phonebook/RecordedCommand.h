#pragma once

#include "KeyedList.h"
#include "LxContact.h"
#include "LxContactList.h"
#include "LxGroup.h"
#include "LxGroupList.h"

#include <QSet>
#include <QString>

#include <memory>
#include <vector>

/// What one command changed in a phone book: for each contact and group that it touched, how that was before. Contacts
/// and groups that it took away stay as they are, with their identities. All is linear in what was touched.
class RecordedCommand final
{
public:
    /// What reverting changed.
    struct Effect
    {
        /// Contacts that are in the phone book again.
        LxContactList came;
        /// How many contacts are in it no more.
        int goneCount = 0;
        /// Contacts of which details or groups are other ones.
        LxContactList altered;
        /// The first group that is in it again, or null.
        const LxGroup *group = nullptr;
    };

    [[nodiscard]] const QString &Name() const { return m_name; }
    void SetName(const QString &name) { m_name = name; }

    /// Come each before the first such change; what is kept of a later one is not looked at.
    void KeepMembership(LxContact &contact);
    void KeepDetails(LxContact &contact);
    void KeepName(LxGroup &group);

    /// Come after the change, in the order of the changes. The place is counted from 0.
    void KeepNewGroup(LxGroup &group, int place);
    void KeepOldGroup(std::unique_ptr<LxGroup> group, int place);
    void KeepOldGroups(LxGroupList groups);

    /// Comes once all has changed: drops what is as it was. Returns whether anything is left.
    [[nodiscard]] bool Settle();

    /// How many contacts it keeps, in the phone book or not.
    [[nodiscard]] size_t ContactCount() const;

    /// Puts all back as it was, in a phone book that is as the command left it, whose list of groups this is. The
    /// record then holds what was put aside, so that reverting it once more does the command again.
    Effect Revert(LxGroupList &groups);

private:
    struct Membership
    {
        [[nodiscard]] bool operator==(const Membership &other) const = default;

        LxGroup *group;
        ListPlace place;
    };
    struct Moved
    {
        LxContactPtr contact;
        /// How many of m_memberships are this contact's; they lie in the order of m_moved.
        size_t membershipCount;
    };
    struct Changed
    {
        LxContactPtr contact;
        LxContact::Details details;
    };
    struct Renamed
    {
        LxGroup *group;
        QString name;
    };
    /// One group that came or went, or all that went for others.
    struct Step
    {
        LxGroup *group = nullptr;
        int place = 0;
        /// The group while it is not in the phone book.
        std::unique_ptr<LxGroup> away = {};
        std::unique_ptr<LxGroupList> others = {};
    };

    [[nodiscard]] static std::vector<Membership> MembershipsOf(const LxContact &contact);
    void SettleMemberships();
    void RevertGroups(LxGroupList &groups, Effect &effect);
    void RevertMemberships(Effect &effect);

    QString m_name;
    std::vector<Moved> m_moved;
    std::vector<Membership> m_memberships;
    std::vector<Changed> m_changed;
    std::vector<Renamed> m_renamed;
    std::vector<Step> m_steps;
    /// While the command goes on: the identities of the contacts in m_moved and in m_changed.
    QSet<int> m_areMoved;
    QSet<int> m_areChanged;
};
