#pragma once

#include "LxGroupList.h"
#include "RecordedCommand.h"

#include <QString>

#include <deque>
#include <memory>
#include <optional>

class LxContact;
class LxGroup;

/// The last commands that changed a phone book, to be taken back, the last one first, and done again. Contacts and
/// groups come back with their identities, their details, their memberships and their places in every list, in time
/// linear in what the command changed.
///
/// A command is whatever changes while a Recording lives; the contacts, groups and lists of the phone book report each
/// change. A change that no command makes cannot be taken back, nor what was before it: it clears the history.
class PhoneBookHistory final
{
public:
    /// How many commands it keeps.
    static constexpr size_t kDepth = 20;
    /// How many contacts the commands that it keeps may touch together, as those that an import brought in, or a
    /// restore replaced, take memory: as many commands on a phone book of 100,000. Beyond, the oldest commands can no
    /// longer be taken back; the last one always can.
    static constexpr size_t kMostContacts = kDepth * 100'000;

    /// Records what changes while it lives as one command, also where an error ends it. Where nothing is other than
    /// before, nothing is recorded; else what could be done again no longer can. One within another is part of it.
    class Recording final
    {
    public:
        /// The name is the user's. The history must outlive the recording.
        explicit Recording(PhoneBookHistory &history, QString name = {});
        ~Recording();
        Recording(const Recording &) = delete;
        Recording &operator=(const Recording &) = delete;

        void SetName(const QString &name) { m_name = name; }

    private:
        PhoneBookHistory &m_history;
        QString m_name;
    };

    /// What was taken back or done again.
    struct Outcome
    {
        QString command;
        RecordedCommand::Effect effect;
    };

    /// Of the phone book of these groups, which must outlive it.
    explicit PhoneBookHistory(LxGroupList &groups)
        : m_groups(groups)
    {
    }

    /// Sets another limit than kMostContacts, from the next command on.
    void KeepAtMost(size_t contacts) { m_mostContacts = contacts; }

    /// Never while a command is being recorded.
    [[nodiscard]] bool CanUndo() const { return m_nesting == 0 && !m_done.empty(); }
    [[nodiscard]] bool CanRedo() const { return m_nesting == 0 && !m_undone.empty(); }
    /// The name of the command that would be taken back or done again; empty where there is none.
    [[nodiscard]] QString UndoName() const { return CanUndo() ? m_done.back().Name() : QString(); }
    [[nodiscard]] QString RedoName() const { return CanRedo() ? m_undone.back().Name() : QString(); }

    /// Takes the last command back, in memory; the caller saves. None where nothing can be taken back.
    std::optional<Outcome> Undo();
    /// Does the command that was taken back last again, likewise.
    std::optional<Outcome> Redo();

    void Clear();

    /// What the model reports: before a change,
    void MembershipChanges(LxContact &contact);
    void DetailsChange(LxContact &contact);
    void NameChanges(LxGroup &group);
    /// after it, with the place in the list of groups, counted from 0,
    void GroupCame(LxGroup &group, int place);
    void GroupWent(std::unique_ptr<LxGroup> group, int place);
    /// and after all groups, "Everyone" too, went for others.
    void AllWent(LxGroupList groups);

private:
    using Commands = std::deque<RecordedCommand>;

    /// The command that is being recorded. Without one the history is cleared, and it is null.
    [[nodiscard]] RecordedCommand *Recorded();
    std::optional<Outcome> Turn(Commands &from, Commands &to);
    void Commit(const QString &name);

    LxGroupList &m_groups;
    size_t m_mostContacts = kMostContacts;
    int m_nesting = 0;
    RecordedCommand m_recorded;
    /// Both with the next one to turn last.
    Commands m_done;
    Commands m_undone;
};
