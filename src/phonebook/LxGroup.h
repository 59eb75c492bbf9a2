#pragma once

#include "KeyedList.h"
#include "LxContact.h"

#include <QString>

class LxContactList;
class PhoneBookHistory;

/// A named set of contacts in the order in which they joined. Membership is by object, not by name or number, and is
/// kept in step with each contact's own list of groups. A group that ends leaves its contacts' lists.
class LxGroup final
{
public:
    static constexpr int NameMaxLength = 50;

    LxGroup();
    ~LxGroup();
    LxGroup(const LxGroup &) = delete;
    LxGroup &operator=(const LxGroup &) = delete;

    /// Unique among all groups of the process, never stored.
    [[nodiscard]] int GroupID() const { return m_id; }

    [[nodiscard]] const QString &Name() const { return m_name; }

    /// Takes CleanName(name).
    void SetName(const QString &name);

    /// The name without ";", by which the phone-book file joins group names, and cut to NameMaxLength.
    [[nodiscard]] static QString CleanName(QString name);

    /// Adding a member again does nothing.
    void Add(const LxContactPtr &contact);
    /// Adds a contact that is in no group yet to all of these, at least one, whose list it then shares until either
    /// changes.
    static void AddNew(LxContactPtr contact, const LxGroupList &groups);
    /// Removing what is no member does nothing.
    void Remove(const LxContactPtr &contact);
    void RemoveAllContacts();

    /// Raises number 5, source "Corvane.Group", when no member has this identity.
    [[nodiscard]] LxContactPtr GetContact(int id) const;

    /// The first member whose number in international form is exactly this text, or null.
    [[nodiscard]] LxContactPtr FindContactByMobile(const QString &mobile) const;

    /// Gives back the room that is kept for members to come.
    void Squeeze() { m_members.Squeeze(); }

    [[nodiscard]] bool IsMember(const LxContact &contact) const;

    /// A group of the same name and members, who thereby join it.
    [[nodiscard]] std::unique_ptr<LxGroup> Clone() const;

    /// The members in order, under the group's name.
    [[nodiscard]] LxContactList ContactList() const;

    [[nodiscard]] int Count() const { return m_members.Count(); }
    /// In the order in which they joined; the group must not change meanwhile.
    [[nodiscard]] auto begin() const { return m_members.begin(); }
    [[nodiscard]] auto end() const { return m_members.end(); }

private:
    friend class LxContact;
    friend class LxGroupList;
    friend class RecordedCommand;

    /// Leaves the contact's list of groups to the caller.
    void AddMember(LxContactPtr contact);

    /// Takes all off without a word to the history.
    void Empty();

    int m_id;
    QString m_name;
    /// Of the phone book that the group belongs to; null for any other group.
    PhoneBookHistory *m_history = nullptr;
    KeyedList<LxContact, &LxContact::ContactID> m_members;
};
