#pragma once

#include "Dialogs.h"
#include "WindowFixture.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QStatusBar>
#include <QTreeView>

/// The phone book window with the contacts Ann, Bob, Élan and Zoe, of whom Ann and Bob work. Its controls are there
/// once it was opened.
struct PhoneBookFixture : WindowFixture
{
    PhoneBookFixture()
    {
        work.Add(Add(QStringLiteral("Bob"), QStringLiteral("07700900002")));
        work.Add(Add(QStringLiteral("Ann"), QStringLiteral("07700900003")));
        Add(QStringLiteral("Zoe"), QStringLiteral("07700900004"))->SetMobile(QStringLiteral("+33612345678"));
        Add(QStringLiteral("Élan"), QStringLiteral("07971001234"));
    }

    void Open()
    {
        phoneBook.show();
        QVERIFY(QTest::qWaitForWindowActive(&phoneBook));
    }

    [[nodiscard]] QTreeView &Groups() const { return Control<QTreeView>(phoneBook, "lvwGroups"); }
    [[nodiscard]] QTreeView &Contacts() const { return Control<QTreeView>(phoneBook, "lvwContacts"); }
    [[nodiscard]] QLineEdit &Find() const { return Control<QLineEdit>(phoneBook, "txtFind"); }
    [[nodiscard]] QAction &Action(const QString &name) const { return Control<QAction>(phoneBook, name.toLatin1()); }
    [[nodiscard]] QString Status() const { return Control<QStatusBar>(phoneBook, "sbStatusBar").currentMessage(); }

    /// The first column of a list, the selected rows marked by "*", the current one by "<".
    [[nodiscard]] static QString Rows(const QTreeView &list)
    {
        QStringList rows;
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            const QModelIndex index = list.model()->index(row, 0);
            const QString selected = list.selectionModel()->isRowSelected(row) ? QStringLiteral("*") : QString();
            const QString current = list.currentIndex().row() == row ? QStringLiteral("<") : QString();
            rows += index.data().toString() + selected + current;
        }
        return rows.join(u' ');
    }

    void ChooseGroup(int row) const { Groups().setCurrentIndex(Groups().model()->index(row, 0)); }

    void SelectRow(int row) const
    {
        Contacts().selectionModel()->setCurrentIndex(Contacts().model()->index(row, 0),
                                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    void Select(std::initializer_list<int> rows) const
    {
        Contacts().clearSelection();
        for (const int row : rows)
            SelectRow(row);
    }

    /// Every contact in the order of "Everyone", with its groups, and the names of the groups.
    [[nodiscard]] QString Print()
    {
        QStringList text;
        for (const LxContactPtr &contact : Book().AllContacts())
            text += contact->Name() + u':' + contact->Groups().AsString(QStringLiteral("+"), &Book().AllContacts());
        return text.join(u' ') + QStringLiteral(" | ") +
               Book().GroupsExcludingAllContacts().AsString(QStringLiteral(","));
    }

    /// The editor that is open in a list, or null.
    [[nodiscard]] static QLineEdit *Editor(const QTreeView &list) { return list.viewport()->findChild<QLineEdit *>(); }

    LxGroup &work = Book().Groups().CreateGroup(QStringLiteral("Work"));
};
