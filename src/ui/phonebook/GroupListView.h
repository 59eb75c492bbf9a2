#pragma once

#include "NameListView.h"

class GroupModel;
class LxGroup;
class LxPhoneBook;

/// The list of groups: "Everyone" and then the user's, of which one is always chosen.
class GroupListView final : public NameListView
{
    Q_OBJECT

public:
    explicit GroupListView(QWidget *parent);

    /// Comes once, before anything else. The phone book must outlive the list.
    void SetPhoneBook(const LxPhoneBook &phoneBook);

    /// Shows the groups that the phone book has now, from where the list is scrolled to. The chosen group stays chosen
    /// while it exists, else "Everyone" is, and is in sight.
    void Fill();

    /// Chooses the group, or "Everyone" where it has no row, without telling.
    void Choose(const LxGroup &group);

    [[nodiscard]] LxGroup &ChosenGroup() const;
    [[nodiscard]] bool HasRow(const LxGroup &group) const;
    /// Whether there is a group besides "Everyone".
    [[nodiscard]] bool HasOtherGroups() const;

    /// Says that the group's row changed.
    void RowChanged(const LxGroup &group);

signals:
    /// The user chose a group, be it the chosen one once more.
    void GroupChosen();

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void KeepSelected();
    void ChooseRow(int row);

    GroupModel *m_model = nullptr;
    int m_chosenID = 0;
};
