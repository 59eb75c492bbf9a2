#pragma once

#include "KeyedList.h"
#include "LxContact.h"

#include <QString>

/// A plain ordered set of contacts, each once, by identity: a selection, an import, the recipients of a message.
class LxContactList final
{
public:
    /// What the list stands for: a contact's or a group's name.
    [[nodiscard]] const QString &Name() const { return m_name; }
    void SetName(const QString &name) { m_name = name; }

    void ClearAll() { m_contacts.Clear(); }
    void Add(const LxContactPtr &contact) { m_contacts.Add(contact); }
    /// Adds a contact of which the caller knows that it is not in the list.
    void AddNew(const LxContactPtr &contact) { m_contacts.AddNew(contact); }
    void Remove(const LxContact &contact) { m_contacts.Remove(contact.ContactID()); }
    [[nodiscard]] bool Contains(const LxContact &contact) const { return m_contacts.Contains(contact.ContactID()); }

    /// Raises number 5, source "Corvane.ContactList", when no contact has this identity.
    [[nodiscard]] LxContactPtr GetContact(int id) const;

    /// The contact at a position counted from 1. Raises number 5, source "Corvane.ContactList", outside the list.
    [[nodiscard]] LxContactPtr Item(int index);

    [[nodiscard]] int Count() const { return m_contacts.Count(); }
    /// In insertion order; the list must not change meanwhile.
    [[nodiscard]] auto begin() const { return m_contacts.begin(); }
    [[nodiscard]] auto end() const { return m_contacts.end(); }

private:
    QString m_name;
    KeyedList<LxContact, &LxContact::ContactID> m_contacts;
};
