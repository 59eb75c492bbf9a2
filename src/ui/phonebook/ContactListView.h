#pragma once

#include "LxContact.h"
#include "LxContactList.h"
#include "NameListView.h"

class ContactModel;
class LxGroup;
class LxPhoneBook;
class Settings;

/// The list of contacts: the members of a group that answer to a find text, in the order of the column whose header
/// was clicked. Any number of rows can be selected.
class ContactListView final : public NameListView
{
    Q_OBJECT

public:
    explicit ContactListView(QWidget *parent);

    /// Comes once, before anything else. The phone book must outlive the list.
    void SetPhoneBook(const LxPhoneBook &phoneBook);

    /// Shows the members of the group, as they are now, that answer to the find text, from the first row on.
    void Fill(const LxGroup &group, const QString &findText);
    /// The same, where the scroll position stays. Those of these contacts that get rows are selected, the first of them
    /// current and in sight; without such ones selection and current row stay with their contacts.
    void FillInPlace(const LxGroup &group, const QString &findText, const LxContactList &toSelect = {});
    /// Shows those of the group's members that answer to another find text, from the first row on.
    void Find(const LxGroup &group, const QString &findText);

    /// Adds the row of a new member of the group, where it answers to the find text.
    void Insert(const LxContactPtr &contact);
    /// Says that the rows of these contacts changed. They keep their places until the next fill.
    void RowsChanged(const LxContactList &contacts);
    /// Drops the rows of contacts who have left the group. Nothing is selected then, and the next row is current.
    void Remove(const LxContactList &contacts, const LxGroup &group);

    /// In the order of their rows.
    [[nodiscard]] LxContactList Selected() const;
    [[nodiscard]] bool HasSelected() const { return selectionModel()->hasSelection(); }
    [[nodiscard]] int RowCount() const;
    /// Makes the contact's row the only selected one and scrolls to it; selects nothing when it has none.
    void Select(const LxContact &contact);
    /// Makes the first row the only selected one, where there is one.
    void SelectFirst();

    /// The order and the widths of the columns, as the settings keep them.
    void RestoreColumns(const Settings &settings);
    void SaveColumns(Settings &settings) const;

signals:
    void SelectionChanged();
    /// The user pressed Enter on the list, or clicked a row twice, which alone is selected then.
    void OpenAsked();

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// Returns the first of their rows, or -1.
    int SelectAll(const LxContactList &contacts);
    void SortByClick(int column);
    void ApplySort();

    ContactModel *m_model = nullptr;
    /// Counted from 1, as stored. 0 is left 0, so that the first click on Name then sorts ascending; that is meant.
    int m_sortBy = 0;
    bool m_reverseSort = false;
};
