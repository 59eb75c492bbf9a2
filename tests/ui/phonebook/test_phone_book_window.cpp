#include "Files.h"
#include "PhoneBookFixture.h"

#include <QComboBox>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>

using namespace Qt::StringLiterals;

class TestPhoneBookWindow final : public QObject
{
    Q_OBJECT

private slots:
    void entriesAreEnabledByFocusAndSelection()
    {
        // Each entry with the letter that stands for it and its twins in the rows.
        const QStringList entries =
            u"D:mnuDelete S:mnuSelectAllContacts G:mnuEditGroupName G:mnuPopupDeleteGroup "
            "G:mnuPopupRenameGroup P:mnuEditContact P:mnuPopupEditContact "
            "A:mnuAddContactsToNewGroup A:mnuPopupAddContactsToNewGroup "
            "E:mnuAddContactsToExistingGroup E:mnuPopupAddContactsToExistingGroup "
            "R:mnuRemoveContactsFromAllGroups R:mnuPopupRemoveContactsFromAllGroups"_s.split(u' ');
        const std::tuple<const char *, int, QString, bool, bool, QString> rows[] = {
            {"txtFind", 0, {}, false, true, u"S"_s},          {"txtFind", 0, {}, true, true, u"DSPAER"_s},
            {"lvwContacts", 1, {}, true, true, u"DSGPAER"_s}, {"lvwContacts", 1, {}, false, true, u"SG"_s},
            {"lvwContacts", 0, u"q"_s, false, true, {}},      {"lvwGroups", 0, {}, true, true, u"PAER"_s},
            {"lvwGroups", 1, {}, false, true, u"DG"_s},       {"lvwGroups", 1, {}, true, true, u"DGPAER"_s},
            {"lvwContacts", 0, {}, true, false, u"DSPA"_s},
        };
        for (const auto &[focus, group, find, selects, hasGroups, enabled] : rows) {
            PhoneBookFixture f;
            if (!hasGroups)
                f.Book().Groups().DestroyGroup(f.work);
            f.Open();
            f.ChooseGroup(group);
            QTest::keyClicks(&f.Find(), find);
            Control<QWidget>(f.phoneBook, focus).setFocus();
            if (selects)
                f.Select({0});
            for (const QString &entry : entries)
                QVERIFY2(f.Action(entry.mid(2)).isEnabled() == enabled.contains(entry[0]), qPrintable(enabled + entry));
            QVERIFY(!f.Action(u"mnuSendText"_s).isVisible() && !f.Action(u"mnuPopupSendText"_s).isVisible());
        }
    }

    void everyStarterRunsItsCommand()
    {
        struct Row
        {
            QString starters, result, box, caption;
            const char *focus = "lvwContacts";
        };
        const QString rest = u" Zoe: Élan: | Work"_s;
        const Row rows[] = {
            {u"mnuDelete mnuPopupDeleteContacts"_s, u"Ann:Work"_s + rest,
             u"Are you sure you want to permanently delete 'Bob' from your phone book?"_s, u"Delete Contacts?"_s},
            {u"mnuDelete mnuPopupDeleteGroup"_s, u"Bob: Ann: Zoe: Élan: | "_s,
             u"Are you sure you want to remove the group \"Work\" from your Phone Book?"_s, u"Delete Group?"_s,
             "lvwGroups"},
            {u"mnuNewGroup mnuPopupNewGroup actNewGroup"_s, u"Bob:Work Ann:Work"_s + rest + u",New Group"_s, {}, {}},
            {u"mnuAddContactsToNewGroup mnuPopupAddContactsToNewGroup"_s,
             u"Bob:Work+New Group Ann:Work"_s + rest + u",New Group"_s,
             {},
             {}},
            {u"mnuRemoveContactsFromAllGroups mnuPopupRemoveContactsFromAllGroups mnuRemoveContactsFromThisGroup "
             "mnuPopupRemoveContactsFromThisGroup"_s,
             u"Bob: Ann:Work"_s + rest,
             {},
             {}},
        };
        for (const Row &row : rows) {
            for (const QString &starter : row.starters.split(u' ')) {
                PhoneBookFixture f;
                f.Open();
                f.ChooseGroup(1);
                f.Select({1});
                Control<QWidget>(f.phoneBook, row.focus).setFocus();
                if (!row.box.isEmpty()) {
                    const QString before = f.Print();
                    f.prompts.ExpectBox(row.box, PromptIcon::Question, PromptAnswer::No, row.caption);
                    f.Action(starter).trigger();
                    QCOMPARE(f.Print(), before);
                    f.prompts.ExpectBox(row.box, PromptIcon::Question, PromptAnswer::Yes, row.caption);
                }
                f.Action(starter).trigger();
                QCOMPARE(f.Print(), row.result);
            }
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
            {false, u"A;B"_s, u"A;B"_s},
            {true, u" Jo \"J\"\u2028b "_s, u"Jo 'J' b"_s},
            {true, u"  "_s, u"Work"_s},
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
        for (const QString &starter : {u"mnuNewGroup"_s, u"mnuPopupNewGroup"_s, u"actNewGroup"_s}) {
            PhoneBookFixture f;
            f.Open();
            f.Action(u"mnuNewGroup"_s).trigger();
            f.Editor(f.Groups())->setText(u"Club"_s);
            f.Action(starter).trigger();
            f.phoneBook.CreateNewGroup(false);
            QCOMPARE(f.Rows(f.Groups()), u"Everyone Work Club New Group New Group (2)*<"_s);
        }
        PhoneBookFixture f;
        f.Open();
        f.Select({0});
        f.Contacts().setFocus();
        QTest::keyClick(&f.Contacts(), Qt::Key_F2);
        f.Editor(f.Contacts())->setText(u"Abe"_s);
        QVERIFY(f.phoneBook.close());
        QVERIFY(ReadBytes(f.Book().FileName()).contains("\"Abe\""));
    }

    void deletingLeavesTheNextRowCurrent()
    {
        const auto name = [](int number) { return u"M%1"_s.arg(number, 2, 10, QLatin1Char('0')); };
        for (const int count : {1, 19, 20}) {
            PhoneBookFixture f;
            for (int i = 0; i < 30; ++i)
                f.Add(name(i), u"0770091"_s);
            f.Open();
            QSignalSpy refills(f.Contacts().model(), &QAbstractItemModel::modelReset);
            for (int row = 4 + count; row > 4; --row) // upwards: the current row is the first
                f.SelectRow(row);
            const QString whom = count == 1 ? u"'M02'"_s : u"the %1 selected contacts"_s.arg(count);
            f.prompts.ExpectBox(u"Are you sure you want to permanently delete "_s + whom + u" from your phone book?"_s,
                                PromptIcon::Question, PromptAnswer::Yes, u"Delete Contacts?"_s);
            f.Contacts().setFocus();
            QTest::keyClick(&f.Contacts(), Qt::Key_Delete);
            QCOMPARE(refills.count(), count < 20 ? 0 : 1);
            QCOMPARE(f.Status(), u"%1 contacts"_s.arg(34 - count));
            QVERIFY(f.Contacts().hasFocus() && !f.Contacts().selectionModel()->hasSelection());
            QCOMPARE(f.Contacts().currentIndex().data().toString(), name(2 + count));
        }
    }

    void everyoneStays()
    {
        PhoneBookFixture f;
        f.Open();
        f.Groups().setFocus();
        QTest::keyClick(&f.Groups(), Qt::Key_Delete);
        QTest::keyClick(&f.Groups(), Qt::Key_F2);
        f.Action(u"mnuPopupRenameGroup"_s).trigger();
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
        const std::array<QString, 4> rows[] = {
            {u"0"_s, u""_s, u"Ann Bob Élan Zoe"_s, u"4 contacts found"_s},
            {u"0"_s, u"079"_s, u"Élan"_s, u"1 contacts found"_s},
            {u"0"_s, u"qq"_s, u""_s, u"0 contacts found"_s},
            {u"1"_s, u"B"_s, u"Bob"_s, u"1 contacts found"_s},
        };
        for (const auto &[group, typed, found, status] : rows) {
            f.ChooseGroup(group.toInt());
            f.Find().setText(typed);
            QCOMPARE(f.Rows(f.Contacts()), found);
            QCOMPARE(f.Status(), typed.isEmpty() ? u"4 contacts"_s : status);
        }
        QTest::keyClick(&f.Find(), Qt::Key_Return);
        QVERIFY(f.Contacts().hasFocus());
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
            {0, {}, u"Ann*< Bob Élan Zoe"_s, u"0False"_s},    {0, {0}, u"Ann*< Bob Élan Zoe"_s, u"1False"_s},
            {7, {}, u"Ann*< Bob Élan Zoe"_s, u"7False"_s},    {-1, {}, u"Ann*< Bob Élan Zoe"_s, u"-1False"_s},
            {2, {}, u"Zoe Bob Ann*< Élan"_s, u"2False"_s},    {2, {1}, u"Élan Ann*< Bob Zoe"_s, u"2True"_s},
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
        f.phoneBook.resize(700, 500);
        f.Contacts().setColumnWidth(0, 211);
        f.Contacts().setColumnWidth(1, 99);
        Control<QSplitter>(f.phoneBook, "Splitter1").setSizes({250, 430});
        const QList<int> sizes = Control<QSplitter>(f.phoneBook, "Splitter1").sizes();
        f.ChooseGroup(1);
        QVERIFY(f.phoneBook.close());
        PhoneBook again({f.countries, f.clock, f.prompts, f.shell, f.settings});
        again.show();
        QCOMPARE(again.size(), QSize(700, 500));
        const auto &list = Control<QTreeView>(again, "lvwContacts");
        QCOMPARE(list.columnWidth(0) * 1000 + list.columnWidth(1), 211099);
        QTRY_COMPARE(Control<QSplitter>(again, "Splitter1").sizes(), sizes);
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
        const std::pair<QString, const char *> rows[] = {{u"mnuAddContactsToExistingGroup"_s, "cmdOK"},
                                                         {u"mnuPopupAddContactsToExistingGroup"_s, "cmdOK"},
                                                         {u"mnuAddContactsToExistingGroup"_s, "cmdCancel"}};
        for (const auto &[starter, button] : rows) {
            PhoneBookFixture f;
            f.Book().Groups().CreateGroup(u"Choir"_s);
            f.Open();
            f.Select({2});
            WhenDialogOpens(u"ChooseGroup"_s, [button = button](QDialog &dialog) {
                QCOMPARE(dialog.windowTitle(), u"Select Group to Add Contacts to"_s);
                QCOMPARE(Control<QComboBox>(dialog, "cboGroup").currentText(), u"Work"_s);
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
