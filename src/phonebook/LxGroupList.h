#pragma once

#include <QList>
#include <QSharedData>
#include <QString>

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

class LxGroup;
class PhoneBookHistory;

/// An insertion-ordered list of groups, each once, by identity. It owns the groups that it created and merely refers
/// to the others, so a phone book's own list keeps its groups alive, and a contact's list or a selection does not.
class LxGroupList final
{
    /// Apart, and shared between the contacts of the same groups as they were loaded, so that a list is but a pointer.
    struct Data : QSharedData
    {
        Data();
        /// Owns nothing.
        Data(const Data &other);
        ~Data();

        QList<LxGroup *> groups;
        std::vector<std::unique_ptr<LxGroup>> owned;
        PhoneBookHistory *history = nullptr;
    };

public:
    LxGroupList();
    ~LxGroupList();
    LxGroupList(LxGroupList &&other) noexcept;
    LxGroupList &operator=(LxGroupList &&other) noexcept;

    /// The group of this name, cleaned as group names are; made and added when there is none.
    LxGroup &CreateGroup(const QString &name);
    /// Makes and adds a group of a name of which the caller knows that no group has it.
    LxGroup &CreateNewGroup(const QString &name);

    /// Empties the group, removes it from the list and ends it when this list owns it. Its contacts stay in the
    /// phone book.
    void DestroyGroup(LxGroup &group);

    /// From now on what changes in these groups and their contacts, and which groups there are, goes to the history of
    /// the phone book whose list this is. The history must outlive the groups.
    void ReportTo(PhoneBookHistory &history);

    /// Takes a group that this list owns out, as it is; the history does not hear of it. Gives the group and its place,
    /// counted from 0.
    [[nodiscard]] std::pair<std::unique_ptr<LxGroup>, int> TakeOut(const LxGroup &group);
    /// Puts a group back to where it was taken out.
    void PutIn(std::unique_ptr<LxGroup> group, int place);

    void Add(LxGroup &group);
    /// Adds a group of which the caller knows that it is not in the list.
    void AddNew(LxGroup &group) { Changing().groups.append(&group); }
    void Remove(const LxGroup &group);
    /// Refers to the same groups as the other list, which owns none and of which it then shares the storage until
    /// either changes.
    void ShareGroupsOf(const LxGroupList &other)
    {
        Q_ASSERT(!other.m_data || other.m_data->owned.empty());
        m_data = other.m_data;
    }
    [[nodiscard]] bool Contains(const LxGroup &group) const;

    /// Raises number 5, source "Corvane.GroupList", when no group has this identity.
    [[nodiscard]] LxGroup &GetGroup(int id) const;
    [[nodiscard]] bool ExistsID(int id) const;

    /// By exact name, "Work" and "work" being two.
    [[nodiscard]] bool Exists(const QString &name) const { return Lookup(name) != nullptr; }

    /// The first group of exactly this name, or null.
    [[nodiscard]] LxGroup *Lookup(const QString &name) const;

    /// The wanted name, cleaned as group names are, or, where another group than `except` has it, that name cut to fit
    /// and followed by " (2)", " (3)" and so on.
    [[nodiscard]] QString UniqueName(const QString &wanted, const LxGroup *except = nullptr) const;

    /// Null when the list is empty.
    [[nodiscard]] LxGroup *GetFirstGroup() const;

    /// The names joined by the separator, which is removed from each name; `excluded` is left out.
    [[nodiscard]] QString AsString(const QString &separator, const LxGroup *excluded = nullptr) const;

    [[nodiscard]] int Count() const { return static_cast<int>(Groups().size()); }
    [[nodiscard]] auto begin() const { return Groups().begin(); }
    [[nodiscard]] auto end() const { return Groups().end(); }
    /// What this list shares since ShareGroupsOf: the same for lists of the same groups that do. Null where it shares
    /// nothing.
    [[nodiscard]] const void *SharedStorage() const
    {
        return m_data && m_data->ref.loadRelaxed() > 1 ? m_data.constData() : nullptr;
    }

    /// Takes a group off many lists; those that share their storage go on sharing it.
    class Removal final
    {
    public:
        explicit Removal(const LxGroup &group)
            : m_group(group)
        {
        }

        void From(LxGroupList &list);

    private:
        struct Shared
        {
            QSharedDataPointer<Data> before;
            QSharedDataPointer<Data> after;
        };

        const LxGroup &m_group;
        std::unordered_map<const void *, Shared> m_sharedAt;
    };

private:
    [[nodiscard]] const QList<LxGroup *> &Groups() const { return m_data ? m_data->groups : kNone; }
    /// This list's own, for a change.
    [[nodiscard]] Data &Changing();
    [[nodiscard]] LxGroup *Find(int id) const;

    inline static const QList<LxGroup *> kNone;
    /// Null until it is needed.
    QSharedDataPointer<Data> m_data;
};
