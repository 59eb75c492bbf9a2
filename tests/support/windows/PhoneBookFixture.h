#pragma once

#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QStatusBar>
#include <QTest>

/// The phone book window with the contacts Ann, Bob, Élan and Zoe, of whom Ann and Bob work.
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
        for (const QTreeView *list : {&Groups(), &Contacts()})
            new QAbstractItemModelTester(list->model(), list->model());
        QVERIFY(QTest::qWaitForWindowActive(&phoneBook));
    }

    [[nodiscard]] QString Status() const { return Control<QStatusBar>(phoneBook, "sbStatusBar").currentMessage(); }

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

    LxGroup &work = Book().Groups().CreateGroup(QStringLiteral("Work"));
};
