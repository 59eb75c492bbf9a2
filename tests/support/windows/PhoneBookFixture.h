#pragma once

#include "Mirror.h"
#include "WindowFixture.h"

#include <QHeaderView>
#include <QMenu>
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

    ~PhoneBookFixture()
    {
        for (const Mirror *mirror : mirrors)
            QTest::qCompare(mirror->Stale(), QString(), "told", "shown", __FILE__, __LINE__);
    }

    void Open()
    {
        phoneBook.show();
        for (const QTreeView *list : {&Groups(), &Contacts()})
            mirrors += new Mirror(list->model());
        QVERIFY(QTest::qWaitForWindowActive(&phoneBook));
    }

    [[nodiscard]] QString Status() const { return Control<QStatusBar>(phoneBook, "sbStatusBar").currentMessage(); }

    /// Which of the commands that are not always there can be given, by letters, and how each twin in a pop-up differs.
    [[nodiscard]] QString Enabled() const
    {
        const std::pair<QChar, const char *> entries[] = {
            {u'D', "mnuDelete"},
            {u'P', "mnuEditContact mnuPopupEditContact mnuPopupDeleteContacts mnuAddContactsTo mnuPopupAddContactsTo "
                   "mnuAddContactsToNewGroup mnuPopupAddContactsToNewGroup"},
            {u'E', "mnuAddContactsToExistingGroup mnuPopupAddContactsToExistingGroup"},
            {u'A', "mnuRemoveContactsFrom mnuPopupRemoveContactsFrom mnuRemoveContactsFromAllGroups "
                   "mnuPopupRemoveContactsFromAllGroups"},
            {u'T', "mnuRemoveContactsFromThisGroup mnuPopupRemoveContactsFromThisGroup"},
            {u'S', "mnuSelectAllContacts"},
            {u's', "mnuPopupSelectAllContacts"},
            {u'R', "mnuEditGroupName mnuPopupRenameGroup mnuPopupDeleteGroup"},
            {u'N', "mnuAddContact mnuNewGroup actNewContact actProperties actNewGroup actImport mnuContactsImport "
                   "mnuContactsImportOther "
                   "mnuContactsExport mnuBackup mnuRestore mnuMergeDuplicates mnuExclude mnuExit mnuOnlineHelp"}};
        QString letters;
        for (const auto &[letter, names] : entries) {
            const QStringList twins = QString::fromLatin1(names).split(u' ');
            const auto isEnabled = [this](const QString &name) {
                const auto *menu = phoneBook.findChild<QMenu *>(name);
                return menu ? menu->menuAction()->isEnabled()
                            : Control<QAction>(phoneBook, name.toLatin1()).isEnabled();
            };
            const auto count = std::count_if(twins.begin(), twins.end(), isEnabled);
            letters += count == 0 ? QString() : count == twins.size() ? QString(letter) : letter + QStringLiteral("?");
        }
        return letters;
    }

    /// The next box must ask whether to delete; Enter would answer No.
    void ExpectDeleteQuestion(const QString &what, PromptAnswer answer)
    {
        prompts.ExpectCarefulQuestion(QStringLiteral("Are you sure you want to %1 your phone book?").arg(what),
                                      PromptIcon::Question, answer, QStringLiteral("Delete Contacts?"));
    }

    /// Presses and lets go of a button over a row's name.
    void Click(const QTreeView &list, int row, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::mouseClick(list.viewport(), button, modifiers, Place(list, row));
    }
    [[nodiscard]] static QPoint Place(const QTreeView &list, int row)
    {
        return list.visualRect(list.model()->index(row, 0)).center();
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

    QList<Mirror *> mirrors;
    LxGroup &work = Book().Groups().CreateGroup(QStringLiteral("Work"));
};

/// The same, shown, with the group of this row chosen.
struct OpenPhoneBook : PhoneBookFixture
{
    explicit OpenPhoneBook(int group = 0)
    {
        Open();
        ChooseGroup(group);
    }
};
