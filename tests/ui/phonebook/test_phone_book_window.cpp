#include "ChooseGroup.h"
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

    using Fixture = PhoneBookFixture;

private slots:
    void entriesAreEnabledByFocusAndSelection()
    {
        const std::pair<const char *, QString> twins[] = {
            {"mnuEditContact", u"mnuPopupEditContact"_s},
            {"mnuAddContactsToNewGroup", u"mnuPopupAddContactsToNewGroup"_s},
            {"mnuAddContactsToExistingGroup", u"mnuPopupAddContactsToExistingGroup"_s},
            {"mnuRemoveContactsFromAllGroups", u"mnuPopupRemoveContactsFromAllGroups"_s},
            {"mnuEditGroupName", u"mnuPopupDeleteGroup"_s},
            {"mnuEditGroupName", u"mnuPopupRenameGroup"_s},
        };
        struct Row
        {
            const char *focus;
            int group;
            const char *find;
            bool selects;
            bool hasGroups;
            /// Delete, Select All, Rename Group, Properties, Add, Add to Existing, Remove.
            QString enabled;
        };
        const Row rows[] = {
            {"txtFind", 0, "", false, true, u".S....."_s},      {"txtFind", 0, "", true, true, u"DS.PAER"_s},
            {"lvwContacts", 1, "", true, true, u"DSGPAER"_s},   {"lvwContacts", 1, "", false, true, u".SG...."_s},
            {"lvwContacts", 0, "q", false, true, u"......."_s}, {"lvwGroups", 0, "", true, true, u"...PAER"_s},
            {"lvwGroups", 1, "", false, true, u"D.G...."_s},    {"lvwGroups", 1, "", true, true, u"D.GPAER"_s},
            {"lvwContacts", 0, "", true, false, u"DS.PA.."_s},
        };
        for (const Row &row : rows) {
            Fixture f;
            if (!row.hasGroups)
                f.Book().Groups().DestroyGroup(f.work);
            f.Open();
            f.ChooseGroup(row.group);
            QTest::keyClicks(&f.Find(), QString::fromLatin1(row.find));
            Control<QWidget>(f.phoneBook, row.focus).setFocus();
            if (row.selects)
                f.Select({0});
            QString enabled = u"DSGPAER"_s;
            const char *entries[] = {"mnuDelete",
                                     "mnuSelectAllContacts",
                                     "mnuEditGroupName",
                                     "mnuEditContact",
                                     "mnuAddContactsToNewGroup",
                                     "mnuAddContactsToExistingGroup",
                                     "mnuRemoveContactsFromAllGroups"};
            for (qsizetype i = 0; i < enabled.size(); ++i) {
                if (!f.Action(entries[i]).isEnabled())
                    enabled[i] = u'.';
            }
            QCOMPARE(enabled, row.enabled);
            for (const auto &[entry, twin] : twins)
                QCOMPARE(f.Action(twin.toLatin1()).isEnabled(), f.Action(entry).isEnabled());
            QVERIFY(!f.Action("mnuSendText").isVisible() && !f.Action("mnuPopupSendText").isVisible());
        }
    }

    void everyStarterRunsItsCommand()
    {
        const QString deleteBox = u"Are you sure you want to permanently delete 'Bob' from your phone book?"_s;
        const QString groupBox = u"Are you sure you want to remove the group \"Work\" from your Phone Book?"_s;
        struct Row
        {
            QList<const char *> starters;
            QString result;
            QString box = {};
            QString caption = {};
            const char *focus = "lvwContacts";
        };
        const QString rest = u" Zoe: Élan: | Work"_s;
        const Row rows[] = {
            {{"mnuDelete", "mnuPopupDeleteContacts"}, u"Ann:Work"_s + rest, deleteBox, u"Delete Contacts?"_s},
            {{"mnuDelete", "mnuPopupDeleteGroup"},
             u"Bob: Ann: Zoe: Élan: | "_s,
             groupBox,
             u"Delete Group?"_s,
             "lvwGroups"},
            {{"mnuNewGroup", "mnuPopupNewGroup", "actNewGroup"}, u"Bob:Work Ann:Work"_s + rest + u",New Group"_s},
            {{"mnuAddContactsToNewGroup", "mnuPopupAddContactsToNewGroup"},
             u"Bob:Work+New Group Ann:Work"_s + rest + u",New Group"_s},
            {{"mnuRemoveContactsFromAllGroups", "mnuPopupRemoveContactsFromAllGroups", "mnuRemoveContactsFromThisGroup",
              "mnuPopupRemoveContactsFromThisGroup"},
             u"Bob: Ann:Work"_s + rest},
        };
        for (const Row &row : rows) {
            for (const char *starter : row.starters) {
                Fixture f;
                f.Open();
                f.ChooseGroup(1);
                f.Select({1});
                Control<QWidget>(f.phoneBook, row.focus).setFocus();
                const QString before = f.Print();
                for (const PromptAnswer answer : {PromptAnswer::No, PromptAnswer::Yes}) {
                    if (!row.box.isEmpty())
                        f.prompts.ExpectBox(row.box, PromptIcon::Question, answer, row.caption);
                    if (!row.box.isEmpty() || answer == PromptAnswer::Yes)
                        f.Action(starter).trigger();
                    QCOMPARE(f.Print(), answer == PromptAnswer::Yes ? row.result : before);
                }
            }
        }
    }

    void contactsComeAndChangeThroughTheDialog()
    {
        Fixture f;
        f.Open();
        f.ChooseGroup(1);
        const auto answer = [](const QString &name, bool ok) {
            WhenDialogOpens(u"ContactProperties"_s, [name, ok](QDialog &dialog) {
                Control<QLineEdit>(dialog, "txtName").setText(name);
                Control<QLineEdit>(dialog, "txtMobile").setText(u"07700900009"_s);
                ok ? dialog.accept() : dialog.reject();
            });
        };
        answer(u"Carl"_s, false);
        f.Action("mnuAddContact").trigger();
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob"_s);
        for (const char *starter : {"actNewContact", "actProperties"}) { // nothing is selected at the second
            answer(u"Carl"_s, true);
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
        struct Row
        {
            bool isGroup;
            QString typed;
            QString name;
        };
        const Row rows[] = {
            {false, u"  Al \"A\"\nLee "_s, u"Al 'A' Lee"_s},
            {false, u"   "_s, u"Ann"_s},
            {false, u"A;B"_s, u"A;B"_s},
            {true, u" Jo \"J\"\u2028b "_s, u"Jo 'J' b"_s},
            {true, u"  "_s, u"Work"_s},
            {true, u"; ;"_s, u"Work"_s},
            {true, u"a;b"_s, u"ab"_s},
            {true, u"Choir"_s, u"Choir (2)"_s},
            {true, u"Everyone"_s, u"Everyone (2)"_s},
            {true, QString(60, u'x'), QString(50, u'x')},
        };
        for (const Row &row : rows) {
            Fixture f;
            f.Book().Groups().CreateGroup(u"Choir"_s);
            f.Open();
            f.ChooseGroup(1);
            f.Select({0});
            QTreeView &list = row.isGroup ? f.Groups() : f.Contacts();
            list.setCurrentIndex(list.currentIndex().siblingAtColumn(list.model()->columnCount() - 1));
            list.setFocus();
            QTest::keyClick(&list, Qt::Key_F2);
            QLineEdit *editor = f.Editor(list);
            QVERIFY(editor);
            QTest::keyClick(editor, Qt::Key_Delete); // text, which is selected
            editor->insert(row.typed);
            QTest::keyClick(editor, Qt::Key_Return);
            QTRY_VERIFY(!f.Editor(list));
            QTRY_COMPARE(list.currentIndex().siblingAtColumn(0).data().toString(), row.name);
            QCOMPARE(f.Rows(f.Contacts()), (row.isGroup ? u"Ann"_s : row.name) + u"*< Bob"_s); // the selection stays
            const QString sibling = f.Contacts().model()->index(0, 2).data().toString();
            QCOMPARE(sibling, row.isGroup ? row.name : u"Work"_s);
        }
    }

    void commandsTakeWhatTheEditorHolds()
    {
        for (const char *starter : {"mnuNewGroup", "mnuPopupNewGroup", "actNewGroup"}) {
            Fixture f;
            f.Open();
            f.Action("mnuNewGroup").trigger();
            f.Editor(f.Groups())->setText(u"Club"_s);
            f.Action(starter).trigger();
            QCOMPARE(f.Rows(f.Groups()), u"Everyone Work Club New Group*<"_s);
        }
        Fixture f;
        f.Open();
        f.Select({0});
        f.Contacts().setFocus();
        QTest::keyClick(&f.Contacts(), Qt::Key_F2);
        f.Editor(f.Contacts())->setText(u"Abe"_s);
        QVERIFY(f.phoneBook.close());
        QVERIFY(ReadBytes(f.Book().FileName()).contains("\"Abe\""));
    }

    void newGroupsGetFreeNames()
    {
        Fixture f;
        f.Open();
        for (int i = 0; i < 3; ++i)
            f.phoneBook.CreateNewGroup(false);
        QCOMPARE(f.Rows(f.Groups()), u"Everyone Work New Group New Group (2) New Group (3)*<"_s);
        f.Book().Groups().CreateGroup(QString(50, u'x'));
        QCOMPARE(f.Book().Groups().UniqueName(QString(50, u'x')), QString(46, u'x') + u" (2)"_s);
    }

    void deletingLeavesTheNextRowCurrent()
    {
        for (const int count : {1, 19, 20}) {
            Fixture f;
            for (int i = 0; i < 30; ++i)
                f.Add(u"M%1"_s.arg(i, 2, 10, QLatin1Char('0')), u"0770091"_s);
            f.Open();
            QSignalSpy refills(f.Contacts().model(), &QAbstractItemModel::modelReset);
            for (int row = 4 + count; row > 4; --row) // upwards: the current row is the first
                f.Contacts().selectionModel()->setCurrentIndex(f.Contacts().model()->index(row, 0),
                                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
            const QString whom = count == 1 ? u"'M02'"_s : u"the %1 selected contacts"_s.arg(count);
            f.prompts.ExpectBox(u"Are you sure you want to permanently delete "_s + whom + u" from your phone book?"_s,
                                PromptIcon::Question, PromptAnswer::Yes, u"Delete Contacts?"_s);
            f.Contacts().setFocus();
            QTest::keyClick(&f.Contacts(), Qt::Key_Delete);
            QCOMPARE(refills.count(), count < 20 ? 0 : 1);
            QCOMPARE(f.Status(), u"%1 contacts"_s.arg(34 - count));
            QCOMPARE(f.Contacts().selectionModel()->selectedRows().size(), 0);
            QCOMPARE(f.Contacts().currentIndex().data().toString(), u"M%1"_s.arg(2 + count, 2, 10, QLatin1Char('0')));
            QVERIFY(f.Contacts().hasFocus());
        }
    }

    void everyoneStays()
    {
        Fixture f;
        f.Open();
        f.Groups().setFocus();
        QTest::keyClick(&f.Groups(), Qt::Key_Delete);
        QTest::keyClick(&f.Groups(), Qt::Key_F2);
        f.Action("mnuPopupRenameGroup").trigger();
        QVERIFY(!f.Editor(f.Groups()));
        QTest::mouseClick(f.Groups().viewport(), Qt::LeftButton, Qt::ControlModifier,
                          f.Groups().visualRect(f.Groups().currentIndex()).center());
        QCOMPARE(f.Rows(f.Groups()), u"Everyone*< Work"_s); // chosen, and visibly so
    }

    void findsWithinTheChosenGroup()
    {
        Fixture f;
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
        f.Action("mnuRemoveContactsFromThisGroup").trigger();
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob*<"_s); // until the list is filled again
        f.Find().setText(u"b"_s);
        QCOMPARE(f.Status(), u"0 contacts found"_s);
    }

    void sortsByTheClickedColumn()
    {
        struct Row
        {
            int stored;
            QList<int> clicks;
            QString order;
            QString kept;
        };
        const Row rows[] = {
            {0, {}, u"Ann*< Bob Élan Zoe"_s, u"0False"_s},    {0, {0}, u"Ann*< Bob Élan Zoe"_s, u"1False"_s},
            {7, {}, u"Ann*< Bob Élan Zoe"_s, u"7False"_s},    {-1, {}, u"Ann*< Bob Élan Zoe"_s, u"-1False"_s},
            {2, {}, u"Zoe Bob Ann*< Élan"_s, u"2False"_s},    {2, {1}, u"Élan Ann*< Bob Zoe"_s, u"2True"_s},
            {0, {0, 0}, u"Zoe Élan Bob Ann*<"_s, u"1True"_s}, {0, {0, 0, 1}, u"Zoe Bob Ann*< Élan"_s, u"2False"_s},
            {1, {2}, u"Zoe Élan Bob Ann*<"_s, u"3False"_s},   {1, {2, 2}, u"Bob Ann*< Zoe Élan"_s, u"3True"_s},
        };
        for (const Row &row : rows) {
            Fixture f;
            f.settings.Save(u"Contact Columns"_s, u"SortBy"_s, QString::number(row.stored));
            f.Open();
            f.phoneBook.SelectContact(*f.work.FindContactByMobile(u"+447700900003"_s));
            QHeaderView &header = *f.Contacts().header();
            for (const int column : row.clicks)
                QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                                  {header.sectionViewportPosition(column) + 20, header.height() / 2});
            QCOMPARE(f.Rows(f.Contacts()), row.order);
            f.phoneBook.close();
            QCOMPARE(f.settings.Get(u"Contact Columns"_s, u"SortBy"_s) +
                         f.settings.Get(u"Contact Columns"_s, u"ReverseSort"_s),
                     row.kept);
        }
    }

    void layoutComesBack()
    {
        Fixture f;
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
        Fixture f;
        f.Open();
        f.Select({0});
        const QString folder = QFileInfo(f.Book().FileName()).path();
        QVERIFY(QDir(folder).removeRecursively());
        const auto expectFailure = [&f] {
            f.prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        };
        expectFailure();
        f.Action("mnuAddContactsToNewGroup").trigger();
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
        Fixture f;
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

    void doubleClickOpensPropertiesAndNoEditor()
    {
        Fixture f;
        f.Open();
        f.Select({0});
        QWidget *rows = f.Contacts().viewport();
        const QPoint where = f.Contacts().visualRect(f.Contacts().currentIndex()).center();
        QApplication::setDoubleClickInterval(1); // how long a list waits before it edits
        bool opened = false;
        WhenDialogOpens(u"ContactProperties"_s, [&](QDialog &) {
            opened = true;
            QVERIFY(!QTest::qWaitFor([&f] { return f.Editor(f.Contacts()) != nullptr; }, 50));
        });
        QTest::mouseClick(rows, Qt::LeftButton, {}, where);
        QTest::mouseDClick(rows, Qt::LeftButton, {}, where);
        QTRY_VERIFY(opened);
    }

    void addsToTheGroupOfTheList()
    {
        for (const QString &button : {u"cmdOK"_s, u"cmdCancel"_s, QString()}) {
            Fixture f;
            f.Book().Groups().CreateGroup(u"Choir"_s);
            f.Open();
            f.Select({2});
            WhenDialogOpens(u"ChooseGroup"_s, [&button](QDialog &dialog) {
                QCOMPARE(dialog.windowTitle(), u"Select Group to Add Contacts to"_s);
                auto &groups = Control<QComboBox>(dialog, "cboGroup");
                QCOMPARE(groups.currentText(), u"Work"_s);
                groups.setCurrentIndex(1);
                button.isEmpty() ? void(dialog.close()) : Control<QPushButton>(dialog, button.toLatin1()).click();
                const auto &chosen = static_cast<ChooseGroup &>(dialog);
                QCOMPARE(chosen.Canceled(), button != u"cmdOK");
                QCOMPARE(chosen.ChosenGroupID(), groups.currentData().toInt());
            });
            f.Action("mnuAddContactsToExistingGroup").trigger();
            QCOMPARE(f.Print().contains(u"Élan:Choir"_s), button == u"cmdOK");
            QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Élan*< Zoe"_s);
            ChooseGroup empty(f.settings, nullptr);
            empty.Populate(LxGroupList());
            empty.accept();
            QVERIFY(!empty.Canceled() && empty.ChosenGroupID() == 0);
        }
    }
};

QTEST_MAIN(TestPhoneBookWindow)
#include "test_phone_book_window.moc"
