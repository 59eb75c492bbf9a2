#include "Files.h"
#include "PhoneBookFixture.h"

#include <QComboBox>
#include <QMenu>
#include <QPushButton>

using namespace Qt::StringLiterals;

class TestPhoneBookWindow final : public QObject
{
    Q_OBJECT

private slots:
    void everyStarterRunsItsCommand()
    {
        const QString rest = u" Zoe: Élan: | Work"_s;
        const std::pair<QString, QString> rows[] = {
            {u"mnuNewGroup mnuPopupNewGroup actNewGroup"_s, u"Bob:Work Ann:Work"_s + rest + u",New Group"_s},
            {u"mnuAddContactsToNewGroup mnuPopupAddContactsToNewGroup"_s,
             u"Bob:Work+New Group Ann:Work"_s + rest + u",New Group"_s},
            {u"mnuRemoveContactsFromAllGroups mnuPopupRemoveContactsFromAllGroups mnuRemoveContactsFromThisGroup "
             "mnuPopupRemoveContactsFromThisGroup"_s,
             u"Bob: Ann:Work"_s + rest},
        };
        for (const auto &[starters, result] : rows) {
            for (const QString &starter : starters.split(u' ')) {
                PhoneBookFixture f;
                f.Open();
                f.ChooseGroup(1);
                f.Select({1});
                f.Action(starter).trigger();
                QCOMPARE(f.Print(), result);
            }
        }
    }

    void nothingIsDeletedWithoutAYes()
    {
        const auto contacts = u"Are you sure you want to permanently delete 'Bob' from your phone book?"_s;
        const auto group = u"Are you sure you want to remove the group \"Work\" from your Phone Book?"_s;
        const std::tuple<QString, bool> rows[] = {{u"mnuDelete"_s, false},
                                                  {u"mnuPopupDeleteContacts"_s, false},
                                                  {u"mnuDelete"_s, true},
                                                  {u"mnuPopupDeleteGroup"_s, true}};
        for (const auto &[starter, isGroup] : rows) {
            PhoneBookFixture f;
            f.Open();
            f.ChooseGroup(1);
            if (!isGroup)
                f.Select({1});
            (isGroup ? f.Groups() : f.Contacts()).setFocus();
            const QString before = f.Print();
            for (const PromptAnswer answer : {PromptAnswer::No, PromptAnswer::Yes}) {
                QCOMPARE(f.Print(), before);
                f.prompts.ExpectBox(isGroup ? group : contacts, PromptIcon::Question, answer,
                                    isGroup ? u"Delete Group?"_s : u"Delete Contacts?"_s);
                f.Action(starter).trigger();
            }
            QCOMPARE(f.Print(), isGroup ? u"Bob: Ann: Zoe: Élan: | "_s : u"Ann:Work Zoe: Élan: | Work"_s);
        }
    }

    void contactsComeAndChangeThroughTheDialog()
    {
        PhoneBookFixture f;
        f.Open();
        f.ChooseGroup(1);
        const auto answer = [](const QString &name, bool ok) {
            WhenDialogOpens(u"ContactProperties"_s, [name, ok](QDialog &dialog) {
                Control<QLineEdit>(dialog, "txtName").setText(name);
                Control<QLineEdit>(dialog, "txtMobile").setText(u"07700900009"_s);
                ok ? dialog.accept() : dialog.reject();
            });
        };
        for (const QString &starter :
             {u"mnuAddContact"_s, u"actNewContact"_s, u"actProperties"_s}) { // none is selected
            answer(u"Carl"_s, starter != u"mnuAddContact");
            f.Contacts().clearSelection();
            f.Action(starter).trigger();
        }
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Carl Carl*<"_s);
        answer(u"Aaron"_s, true);
        f.Contacts().setFocus();
        QTest::keyClick(&f.Contacts(), Qt::Key_Return);
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Carl Aaron*<"_s); // keeps its place
        QCOMPARE(f.Print(), u"Bob:Work Ann:Work Zoe: Élan: Carl:Work Aaron:Work | Work"_s);
        QVERIFY(ReadBytes(f.Book().FileName()).endsWith("\"Aaron\",44,\"07700900009\",\"Work\"\r\n"));
    }

    void namesAreEditedInPlace()
    {
        const std::tuple<bool, QString, QString> rows[] = {
            {false, u"  Al \"A\"\nLee "_s, u"Al 'A' Lee"_s},
            {false, u"   "_s, u"Ann"_s},
            {false, QString(49, u'x') + u"😀"_s, QString(49, u'x')},
            {true, u" Jo \"J\"\u2028b "_s, u"Jo 'J' b"_s},
            {true, u"; ;"_s, u"Work"_s},
            {true, u"a;b"_s, u"ab"_s},
            {true, u"Choir"_s, u"Choir (2)"_s},
            {true, u"Everyone"_s, u"Everyone (2)"_s},
            {true, QString(60, u'x'), QString(46, u'x') + u" (2)"_s},
        };
        for (const auto &[isGroup, typed, name] : rows) {
            PhoneBookFixture f;
            f.Book().Groups().CreateGroup(u"Choir"_s);
            f.Book().Groups().CreateGroup(QString(50, u'x'));
            f.Open();
            f.ChooseGroup(1);
            f.Select({0});
            QTreeView &list = isGroup ? f.Groups() : f.Contacts();
            list.setCurrentIndex(list.currentIndex().siblingAtColumn(list.model()->columnCount() - 1));
            list.setFocus();
            QTest::keyClick(&list, Qt::Key_F2);
            QTest::keyClick(f.Editor(list), Qt::Key_Delete); // text, which is selected
            f.Editor(list)->insert(typed);
            QTest::keyClick(f.Editor(list), Qt::Key_Return);
            QTRY_VERIFY(!f.Editor(list));
            QTRY_COMPARE(list.currentIndex().siblingAtColumn(0).data().toString(), name);
            QCOMPARE(f.Rows(f.Contacts()), (isGroup ? u"Ann"_s : name) + u"*< Bob"_s); // the selection stays
            QCOMPARE(f.Contacts().model()->index(0, 2).data().toString(), isGroup ? name : u"Work"_s);
        }
    }

    void commandsTakeWhatTheEditorHolds()
    {
        PhoneBookFixture f;
        f.Open();
        f.Action(u"mnuNewGroup"_s).trigger();
        f.Editor(f.Groups())->setText(u"Club"_s);
        f.Action(u"mnuNewGroup"_s).trigger();
        f.phoneBook.CreateNewGroup(false);
        QCOMPARE(f.Rows(f.Groups()), u"Everyone Work Club New Group New Group (2)*<"_s);
        f.ChooseGroup(1);
        f.Select({0});
        f.Contacts().setFocus();
        QTest::keyClick(&f.Contacts(), Qt::Key_F2);
        f.Editor(f.Contacts())->setText(u"Abe"_s);
        QVERIFY(f.phoneBook.close());
        QVERIFY(ReadBytes(f.Book().FileName()).contains("\"Abe\""));
    }

    void deletingLeavesTheNextRowCurrent()
    {
        // Many rows go another way than few.
        for (const int count : {2, 20}) {
            PhoneBookFixture f;
            for (int i = 10; i < 40; ++i)
                f.Add(u"M%1"_s.arg(i), u"0770091"_s);
            f.Open();
            for (int row = 4 + count; row > 4; --row) // upwards: the current row is the first
                f.SelectRow(row);
            f.prompts.ExpectBox(u"Are you sure you want to permanently delete the %1 selected contacts "
                                "from your phone book?"_s.arg(count),
                                PromptIcon::Question, PromptAnswer::Yes, u"Delete Contacts?"_s);
            f.Contacts().setFocus();
            QTest::keyClick(&f.Contacts(), Qt::Key_Delete);
            QCOMPARE(f.Status(), u"%1 contacts"_s.arg(34 - count));
            QVERIFY(f.Contacts().hasFocus() && !f.Contacts().selectionModel()->hasSelection());
            QCOMPARE(f.Contacts().currentIndex().data().toString(), u"M%1"_s.arg(12 + count));
        }
    }

    void everyoneStaysAndNothingIsDoneToNobody()
    {
        PhoneBookFixture f;
        f.Open();
        for (const QString &entry : u"mnuDelete mnuEditContact mnuEditGroupName mnuPopupDeleteGroup "
                                    "mnuAddContactsToNewGroup mnuRemoveContactsFromAllGroups"_s.split(u' '))
            QVERIFY2(!f.Action(entry).isEnabled(), qPrintable(entry));
        f.Select({0});
        f.Groups().setFocus();
        QTest::keyClick(&f.Groups(), Qt::Key_Delete);
        QTest::keyClick(&f.Groups(), Qt::Key_F2);
        QVERIFY(!f.Editor(f.Groups()));
        QTest::mouseClick(f.Groups().viewport(), Qt::LeftButton, Qt::ControlModifier,
                          f.Groups().visualRect(f.Groups().currentIndex()).center());
        QCOMPARE(f.Rows(f.Groups()), u"Everyone*< Work"_s); // chosen, and visibly so
    }

    void findsWithinTheChosenGroup()
    {
        PhoneBookFixture f;
        f.Open();
        QVERIFY(f.Find().hasFocus());
        const std::tuple<int, QString, QString> rows[] = {{0, u""_s, u"Ann Bob Élan Zoe, 4 contacts"_s},
                                                          {0, u"079"_s, u"Élan, 1 contacts found"_s},
                                                          {0, u"qq"_s, u", 0 contacts found"_s},
                                                          {1, u"B"_s, u"Bob, 1 contacts found"_s}};
        for (const auto &[group, typed, found] : rows) {
            f.ChooseGroup(group);
            f.Find().setText(typed);
            QCOMPARE(f.Rows(f.Contacts()) + u", "_s + f.Status(), found);
        }
        QTest::mouseClick(f.Groups().viewport(), Qt::LeftButton, {},
                          f.Groups().visualRect(f.Groups().currentIndex()).center());
        QCOMPARE(f.Find().text() + f.Rows(f.Contacts()), u"Ann Bob"_s);
        f.Find().setText(u"q"_s);
        QTest::keyClick(&f.Find(), Qt::Key_Escape);
        QCOMPARE(f.Find().text() + f.Status(), u"2 contacts"_s);
        f.Select({1});
        f.Action(u"mnuRemoveContactsFromThisGroup"_s).trigger();
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob*<"_s); // until the list is filled again
        f.Find().setText(u"b"_s);
        QCOMPARE(f.Status(), u"0 contacts found"_s);
    }

    void sortsByTheClickedColumn()
    {
        const std::tuple<int, QList<int>, QString, QString> rows[] = {
            {7, {}, u"Ann*< Bob Élan Zoe"_s, u"7False"_s},    {2, {}, u"Zoe Bob Ann*< Élan"_s, u"2False"_s},
            {2, {1}, u"Élan Ann*< Bob Zoe"_s, u"2True"_s},    {0, {0}, u"Ann*< Bob Élan Zoe"_s, u"1False"_s},
            {0, {0, 0}, u"Zoe Élan Bob Ann*<"_s, u"1True"_s}, {0, {0, 0, 1}, u"Zoe Bob Ann*< Élan"_s, u"2False"_s},
            {1, {2}, u"Zoe Élan Bob Ann*<"_s, u"3False"_s},   {1, {2, 2}, u"Bob Ann*< Zoe Élan"_s, u"3True"_s},
        };
        for (const auto &[stored, clicks, order, kept] : rows) {
            PhoneBookFixture f;
            f.settings.Save(u"Contact Columns"_s, u"SortBy"_s, QString::number(stored));
            f.Open();
            f.phoneBook.SelectContact(*f.work.FindContactByMobile(u"+447700900003"_s));
            QHeaderView &header = *f.Contacts().header();
            for (const int column : clicks)
                QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                                  {header.sectionViewportPosition(column) + 20, header.height() / 2});
            QCOMPARE(f.Rows(f.Contacts()), order);
            f.phoneBook.close();
            const auto get = [&f](const QString &key) { return f.settings.Get(u"Contact Columns"_s, key); };
            QCOMPARE(get(u"SortBy"_s) + get(u"ReverseSort"_s), kept);
        }
    }

    void layoutComesBack()
    {
        PhoneBookFixture f;
        f.Open();
        f.Contacts().setColumnWidth(0, 211);
        f.ChooseGroup(1);
        QVERIFY(f.phoneBook.close());
        PhoneBook again({f.countries, f.clock, f.prompts, f.shell, f.settings});
        again.show();
        QCOMPARE(Control<QTreeView>(again, "lvwContacts").columnWidth(0), 211);
        f.Open();
        QCOMPARE(f.Rows(f.Groups()), u"Everyone*< Work"_s);
    }

    void failedSaveIsToldOnceForEachCommand()
    {
        PhoneBookFixture f;
        f.Open();
        f.Select({0});
        const QString folder = QFileInfo(f.Book().FileName()).path();
        QVERIFY(QDir(folder).removeRecursively());
        const auto expectFailure = [&f] {
            f.prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        };
        expectFailure();
        f.Action(u"mnuAddContactsToNewGroup"_s).trigger();
        f.prompts.VerifyAllCame();
        f.Editor(f.Groups())->setText(u"Club"_s);
        expectFailure(); // one for the name and the closing
        QVERIFY(!f.phoneBook.close() && f.phoneBook.isVisible());
        f.prompts.VerifyAllCame();
        QCOMPARE(f.Rows(f.Groups()) + f.Rows(f.Contacts()), u"Everyone Work Club*<Ann"_s);
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(f.phoneBook.close());
        QVERIFY(ReadBytes(f.Book().FileName()).contains("\"Ann\",44,\"07700900003\",\"Work;Club\""));
    }

    void everythingGoesByKeyboard()
    {
        PhoneBookFixture f;
        f.Open();
        QTest::keyClick(&f.Find(), Qt::Key_Return);
        QTest::keyClick(&f.Contacts(), Qt::Key_Return); // nothing is selected
        QTest::keyClick(&f.phoneBook, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.Contacts().selectionModel()->selectedRows().size(), 4);
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {5, 5}, f.Contacts().mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&f.Contacts(), &byKey);
        auto &menu = Control<QMenu>(f.phoneBook, "mnuPopupContacts");
        QVERIFY(menu.isVisible());
        QTest::keyClick(&menu, Qt::Key_Escape);
        f.Groups().setFocus();
        QTest::keyClick(&f.Groups(), Qt::Key_Down);
        QCOMPARE(f.Status(), u"2 contacts"_s);
        QTest::keyClick(&f.phoneBook, Qt::Key_A, Qt::ControlModifier); // not for the groups
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob"_s);
        QTest::keyClick(&f.phoneBook, Qt::Key_F1);
        QCOMPARE(f.shell.opened, QStringList(u"http://www.corvane.example/brevio/help.html"_s));
    }

    void addsToTheGroupOfTheList()
    {
        for (const auto &[starter, button] : {std::pair(u"mnuAddContactsToExistingGroup"_s, "cmdOK"),
                                              {u"mnuPopupAddContactsToExistingGroup"_s, "cmdOK"},
                                              {u"mnuAddContactsToExistingGroup"_s, "cmdCancel"}}) {
            PhoneBookFixture f;
            f.Book().Groups().CreateGroup(u"Choir"_s);
            f.Open();
            f.Select({2});
            WhenDialogOpens(u"ChooseGroup"_s, [button = button](QDialog &dialog) {
                Control<QComboBox>(dialog, "cboGroup").setCurrentIndex(1);
                Control<QPushButton>(dialog, button).click();
            });
            f.Action(starter).trigger();
            QCOMPARE(f.Print().contains(u"Élan:Choir"_s), button == "cmdOK"_ba);
            QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Élan*< Zoe"_s);
        }
    }
};

QTEST_MAIN(TestPhoneBookWindow)
#include "test_phone_book_window.moc"
