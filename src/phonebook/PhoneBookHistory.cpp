#include "PhoneBookHistory.h"

#include <utility>

PhoneBookHistory::Recording::Recording(PhoneBookHistory &history, QString name)
    : m_history(history)
    , m_name(std::move(name))
{
    ++m_history.m_nesting;
}

PhoneBookHistory::Recording::~Recording()
{
    if (--m_history.m_nesting == 0)
        m_history.Commit(m_name);
}

void PhoneBookHistory::Commit(const QString &name)
{
    RecordedCommand command = std::exchange(m_recorded, {});
    if (!command.Settle())
        return;
    command.SetName(name);
    m_undone.clear();
    m_done.push_back(std::move(command));
    size_t contacts = 0;
    for (const RecordedCommand &done : m_done)
        contacts += done.ContactCount();
    while (m_done.size() > kDepth || (m_done.size() > 1 && contacts > m_mostContacts)) {
        contacts -= m_done.front().ContactCount();
        m_done.pop_front();
    }
}

std::optional<PhoneBookHistory::Outcome> PhoneBookHistory::Turn(Commands &from, Commands &to)
{
    RecordedCommand command = std::move(from.back());
    from.pop_back();
    Outcome outcome{command.Name(), command.Revert(m_groups)};
    to.push_back(std::move(command));
    return outcome;
}

std::optional<PhoneBookHistory::Outcome> PhoneBookHistory::Undo()
{
    return CanUndo() ? Turn(m_done, m_undone) : std::nullopt;
}

std::optional<PhoneBookHistory::Outcome> PhoneBookHistory::Redo()
{
    return CanRedo() ? Turn(m_undone, m_done) : std::nullopt;
}

void PhoneBookHistory::Clear()
{
    m_recorded = {};
    m_done.clear();
    m_undone.clear();
}

RecordedCommand *PhoneBookHistory::Recorded()
{
    if (m_nesting > 0)
        return &m_recorded;
    if (!m_done.empty() || !m_undone.empty())
        Clear();
    return nullptr;
}

void PhoneBookHistory::MembershipChanges(LxContact &contact)
{
    if (RecordedCommand *command = Recorded())
        command->KeepMembership(contact);
}

void PhoneBookHistory::DetailsChange(LxContact &contact)
{
    if (RecordedCommand *command = Recorded())
        command->KeepDetails(contact);
}

void PhoneBookHistory::NameChanges(LxGroup &group)
{
    if (RecordedCommand *command = Recorded())
        command->KeepName(group);
}

void PhoneBookHistory::GroupCame(LxGroup &group, int place)
{
    if (RecordedCommand *command = Recorded())
        command->KeepNewGroup(group, place);
}

void PhoneBookHistory::GroupWent(std::unique_ptr<LxGroup> group, int place)
{
    if (RecordedCommand *command = Recorded())
        command->KeepOldGroup(std::move(group), place);
}

void PhoneBookHistory::AllWent(LxGroupList groups)
{
    if (RecordedCommand *command = Recorded())
        command->KeepOldGroups(std::move(groups));
}
