#include "Files.h"
#include "PhoneBookFixture.h"
#include "Rows.h"

#include <QComboBox>
#include <QPushButton>
#include <QSplitter>
#include <QToolBar>

using namespace Qt::StringLiterals;

class TestPhoneBookWindow final : public QObject
{
    Q_OBJECT

private slots:
    void groupCommandsAreForTheSelectedContacts()
    {
        PhoneBookFixture f;
        f.Book().Groups().CreateGroup(u"Choir"_s);
        f.Open();
        f.ChooseGroup(1);
        f.Select({0});
        for (const auto *button : {"cmdCancel", "cmdOK"}) {
            QVERIFY2(f.Print().contains(u"Ann:Work Zoe"_s), button);
            WhenDialogOpens(u"ChooseGroup"_s, [button](QDialog &dialog) {
                Control<QComboBox>(dialog, "cboGroup").setCurrentIndex(1);
                Control<QPushButton>(dialog, button).click();
            });
            f.Trigger(u"mnuAddContactsToExistingGroup"_s);
        }
        f.Trigger(u"mnuRemoveContactsFromThisGroup"_s);
        QCOMPARE(f.Rows(f.Contacts()), u"Ann*< Bob"_s); // until the list is filled again
        f.Find().setText(u"a"_s);
        QCOMPARE(f.Status(), u"0 contacts found"_s);
        f.Find().clear();
        f.Select({0});
        f.Trigger(u"mnuAddContactsToNewGroup"_s);
        QCOMPARE(f.Print(), u"Bob:Work+New Group Ann:Choir Zoe: Élan: | Work,Choir,New Group"_s);
        f.ChooseGroup(0);
        f.Select({1});
        f.Trigger(u"mnuPopupRemoveContactsFromAllGroups"_s);
        QCOMPARE(f.Print(), u"Bob: Ann:Choir Zoe: Élan: | Work,Choir,New Group"_s);
    }

    void nothingIsDeletedWithoutAYes()
    {
        OpenPhoneBook f(1);
        f.Select({1});
        f.Groups().setFocus();
        for (const PromptAnswer answer : {PromptAnswer::No, PromptAnswer::Yes}) {
            QCOMPARE(f.Print(), u"Bob:Work Ann:Work Zoe: Élan: | Work"_s);
            f.ExpectDeleteQuestion(u"permanently delete 'Bob' from"_s, answer);
            f.Trigger(u"mnuPopupDeleteContacts"_s);
        }
        for (const PromptAnswer answer : {PromptAnswer::No, PromptAnswer::Yes}) {
            QCOMPARE(f.Print(), u"Ann:Work Zoe: Élan: | Work"_s);
            f.prompts.ExpectCarefulQuestion(
                u"Are you sure you want to remove the group \"Work\" from your Phone Book?"_s, PromptIcon::Question,
                answer, u"Delete Group?"_s);
            f.Trigger(u"mnuDelete"_s);
        }
        QCOMPARE(f.Print() + f.Rows(f.Contacts()), u"Ann: Zoe: Élan: | Ann Élan Zoe"_s);
    }

    void contactsComeAndChangeThroughTheDialog()
    {
        OpenPhoneBook f(1);
        const auto answer = [](const QString &name, bool ok) {
            WhenDialogOpens(u"ContactProperties"_s, [name, ok](QDialog &dialog) {
                Control<QLineEdit>(dialog, "txtName").setText(name);
                Control<QLineEdit>(dialog, "txtMobile").setText(u"07700900009"_s);
                ok ? dialog.accept() : dialog.reject();
            });
        };
        for (const bool ok : {false, true}) {
            answer(u"Carl"_s, ok);
            f.Trigger(u"mnuAddContact"_s);
        }
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Carl*<"_s);
        answer(u"Aaron"_s, true);
        f.Contacts().setFocus();
        QTest::keyClick(&f.Contacts(), Qt::Key_Return);
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Aaron*<"_s); // keeps its place
        QCOMPARE(f.Print(), u"Bob:Work Ann:Work Zoe: Élan: Aaron:Work | Work"_s);
        QVERIFY(ReadBytes(f.Book().FileName()).endsWith("\"Aaron\",44,\"07700900009\",\"Work\"\r\n"));
    }

    TABLE_TEST(namesAreEditedInPlace, (bool isGroup, const QString &typed, const QString &name),
               {"contact", false, u"  Al \"A\"\nLee "_s, u"Al 'A' Lee"_s},
               {"contact, blank", false, u"   "_s, u"Ann"_s},
               {"contact, too long", false, QString(49, u'x') + u"😀"_s, QString(49, u'x')},
               {"group", true, u" Jo \"J\"\u2028b "_s, u"Jo 'J' b"_s},
               {"group, blank but for separators", true, u"; ;"_s, u"Work"_s},
               {"group, separator", true, u"a;b"_s, u"ab"_s}, {"group, taken", true, u"Everyone"_s, u"Everyone (2)"_s},
               {"group, taken and too long", true, QString(60, u'x'), QString(46, u'x') + u" (2)"_s})
    {
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
        QCoreApplication::processEvents(); // what was typed may be taken later than the editor goes
        QCOMPARE(list.currentIndex().siblingAtColumn(0).data().toString(), name);
        QCOMPARE(f.Rows(f.Contacts()), (isGroup ? u"Ann"_s : name) + u"*< Bob"_s); // the selection stays
        QCOMPARE(f.Contacts().model()->index(0, 2).data().toString(), isGroup ? name : u"Work"_s);
    }

    // What had the focus last, the chosen group, whether the second contact is selected; what can be given.
    TABLE_TEST(commandsCanBeGivenWhereTheyDoSomething, (const QString &situation, const QString &enabled),
               u"find 0 -> SsN", u"find 0 selected -> PEASsN", u"find 1 -> SsRN", u"contacts 0 -> SsN",
               u"contacts 0 selected -> DPEASsN", u"contacts 1 selected -> DPEATSsRN", u"groups 0 selected -> PEAsN",
               u"groups 1 -> DsRN", u"groups 2 -> DRN", u"alone 0 selected -> DPSsN")
    {
        PhoneBookFixture f;
        const QStringList words = situation.split(u' ');
        if (words[0] == u"alone")
            f.Book().Groups().DestroyGroup(f.work);
        else
            f.Book().Groups().CreateGroup(u"Empty"_s);
        f.Open();
        f.ChooseGroup(words[1].toInt());
        if (words.size() > 2)
            f.Select({1});
        QWidget *places[] = {&f.Find(), &f.Groups(), &f.Contacts()};
        places[words[0] == u"find" ? 0 : words[0] == u"groups" ? 1 : 2]->setFocus();
        QCOMPARE(f.Enabled(), enabled);
    }

    void mouseActsOnTheRowThatIsClicked()
    {
        QApplication::setDoubleClickInterval(50);
        OpenPhoneBook f;
        QTreeView &list = f.Contacts();
        const auto isEditing = [&f, &list] { return f.Editor(list) && f.Editor(list)->isVisible(); };
        const auto isEditingLater = [&isEditing] {
            QTest::qWait(2 * QApplication::doubleClickInterval());
            return isEditing();
        };
        list.setFocus();
        f.Click(list, 2);
        f.Click(list, 3, Qt::LeftButton, Qt::ShiftModifier);
        f.Click(list, 2);
        QCOMPARE(f.Rows(list), u"Ann Bob Élan*< Zoe"_s);
        QVERIFY(!isEditingLater()); // several were selected
        f.Click(list, 2);
        QTest::keyClick(&list, Qt::Key_F2);
        QVERIFY(isEditing()); // at once
        QTest::keyClick(f.Editor(list), Qt::Key_Escape);
        f.Click(list, 2);
        f.ExpectDeleteQuestion(u"permanently delete 'Élan' from"_s, PromptAnswer::No);
        QTest::keyClick(&list, Qt::Key_Delete);
        QVERIFY(!isEditingLater());
        f.Groups().setFocus();
        f.Click(list, 2);
        QVERIFY(!isEditingLater()); // it brought the focus
        f.Click(list, 2);
        QVERIFY(isEditingLater());
        f.Editor(list)->setText(u"Ella"_s);
        QTest::keyClick(f.Editor(list), Qt::Key_Tab);
        QTRY_COMPARE(f.Rows(list), u"Ann Bob Ella*< Zoe"_s);
        QVERIFY(!isEditing()); // nor the next name
        f.Click(list, 3, Qt::LeftButton, Qt::ControlModifier);
        WhenDialogOpens(u"ContactProperties"_s,
                        [](QDialog &dialog) { QCOMPARE(Control<QLineEdit>(dialog, "txtName").text(), u"Zoe"_s); });
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, f.Place(list, 3));
        QVERIFY(!isEditingLater());
    }

    void aClickOnTheChosenGroupRefillsIt()
    {
        OpenPhoneBook f;
        f.Click(f.Groups(), 1);
        QCOMPARE(f.Status(), u"2 contacts"_s);
        f.Select({0});
        f.Trigger(u"mnuRemoveContactsFromThisGroup"_s);
        f.Find().setText(u"b"_s);
        f.Click(f.Groups(), 1);
        QCOMPARE(f.Rows(f.Contacts()) + f.Find().text(), u"Bob"_s);
        QTest::mouseClick(f.Groups().viewport(), Qt::LeftButton, Qt::ControlModifier, f.Place(f.Groups(), 1));
        QCOMPARE(f.Rows(f.Groups()), u"Everyone Work*<"_s);
    }

    TABLE_TEST(emptyListsSayWhatToDo, (bool isEmpty, int group, const QString &find, const QString &hints),
               {"nothing to say", false, 0, u"a"_s, u"|"_s},
               {"no match", false, 0, u"qq"_s, u"No contact matches the search.|"_s},
               {"nobody in the group",
                false,
                2,
                {},
                u"Nobody is in this group yet. Select contacts of Everyone, then Contacts, Add To Group|"_s},
               {"empty phone book", true, 0, u"qq"_s,
                u"No contacts yet. Contacts, New Contact... or Import...|No groups yet. Contacts, New Group"_s})
    {
        PhoneBookFixture f;
        f.Book().Groups().CreateGroup(u"Empty"_s);
        if (isEmpty)
            f.Book().ClearAll();
        f.Open();
        f.ChooseGroup(group);
        f.Find().setText(find);
        QCOMPARE(f.Contacts().accessibleDescription() + u'|' + f.Groups().accessibleDescription(), hints);
    }

    TABLE_TEST(everyButtonShowsAtFirst, (int points), {"9 pt", 9}, {"12 pt", 12}, {"18 pt", 18})
    {
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        PhoneBookFixture f;
        f.Open();
        QApplication::setFont(before);
        const auto &bar = Control<QToolBar>(f.phoneBook, "tbToolBar");
        for (QAction *button : bar.actions())
            QVERIFY2(bar.widgetForAction(button)->isVisible(), qPrintable(button->text()));
    }

    void layoutComesBack()
    {
        OpenPhoneBook f;
        auto &splitter = Control<QSplitter>(f.phoneBook, "Splitter1");
        const auto setLayout = [&](int size) {
            f.phoneBook.resize(4 * size, 3 * size);
            splitter.setSizes({size, 3 * size});
            f.Contacts().setColumnWidth(0, size / 2);
            f.Contacts().setColumnWidth(1, size / 3);
        };
        const auto columns = [&] {
            return QSize(f.Contacts().columnWidth(0), f.Contacts().columnWidth(1)) + QSize(splitter.sizes()[0], 0);
        };
        setLayout(180);
        const QSize before = columns();
        const QSize size = f.phoneBook.size();
        QVERIFY(f.phoneBook.close());
        setLayout(100);
        f.phoneBook.showMaximized();
        QTRY_VERIFY(f.phoneBook.height() > size.height());
        QCOMPARE(columns(), before);
        QVERIFY(f.phoneBook.close());
        f.phoneBook.showNormal();
        QCOMPARE(f.phoneBook.size(), size);
        QVERIFY(!f.Contacts().header()->sectionsMovable());
    }

    void commandsTakeWhatTheEditorHolds()
    {
        OpenPhoneBook f;
        f.Trigger(u"mnuNewGroup"_s);
        QTest::keyClicks(f.Editor(f.Groups()), u"Club"_s);
        QTest::keyClick(f.Editor(f.Groups()), Qt::Key_Home);
        QTest::keyClicks(f.Editor(f.Groups()), u"A "_s);
        f.Trigger(u"mnuNewGroup"_s);
        f.phoneBook.CreateNewGroup(false);
        QCOMPARE(f.Rows(f.Groups()), u"Everyone Work A Club New Group New Group (2)*<"_s);
    }

    TABLE_TEST(deletingLeavesTheNextRowCurrent, (int count), {"few, row by row", 2}, {"many, at once", 20})
    {
        PhoneBookFixture f;
        for (int i = 10; i < 40; ++i)
            f.Add(u"M%1"_s.arg(i), u"0770091"_s);
        f.Open();
        for (int i = 0; i < count; ++i)
            f.SelectRow(count == 2 ? 5 + i : 4 + count - i); // the last row is current, or the first
        f.ExpectDeleteQuestion(u"permanently delete the %1 selected contacts from"_s.arg(count), PromptAnswer::Yes);
        f.Contacts().setFocus();
        QTest::keyClick(&f.Contacts(), Qt::Key_Delete);
        QCOMPARE(f.Status(), u"%1 contacts"_s.arg(34 - count));
        QVERIFY(f.Contacts().hasFocus() && !f.Contacts().selectionModel()->hasSelection());
        QCOMPARE(f.Contacts().currentIndex().data().toString(), u"M%1"_s.arg(12 + count));
    }

    TABLE_TEST(findingStaysWithinTheChosenGroup, (const QString &typed, const QString &found),
               u"0: -> Ann Bob Élan Zoe, 4 contacts", u"0:079 -> Élan, 1 contacts found", u"0:qq -> , 0 contacts found",
               u"1:B -> Bob, 1 contacts found")
    {
        OpenPhoneBook f;
        QVERIFY(f.Find().hasFocus());
        f.ChooseGroup(typed.first(1).toInt());
        f.Find().setText(typed.sliced(2));
        QCOMPARE(f.Rows(f.Contacts()) + u", "_s + f.Status(), found);
        QTest::keyClick(&f.Find(), Qt::Key_Escape);
        QCOMPARE(f.Find().text() + f.Status(), typed.startsWith(u'0') ? u"4 contacts"_s : u"2 contacts"_s);
    }

    void aClickSortsByItsColumn()
    {
        PhoneBookFixture f;
        f.settings.Save(u"Contact Columns"_s, u"SortBy"_s, u"2"_s);
        f.Open();
        f.phoneBook.SelectContact(*f.work.FindContactByMobile(u"+447700900003"_s));
        QCOMPARE(f.Rows(f.Contacts()), u"Zoe Bob Ann*< Élan"_s);
        const auto rowsAfterClick = [&f, &header = *f.Contacts().header()](int column) {
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                              {header.sectionViewportPosition(column) + 20, header.height() / 2});
            return f.Rows(f.Contacts());
        };
        QCOMPARE(rowsAfterClick(1), u"Élan Ann*< Bob Zoe"_s);
        QCOMPARE(rowsAfterClick(2), u"Zoe Élan Bob Ann*<"_s);
        QCOMPARE(rowsAfterClick(2), u"Bob Ann*< Zoe Élan"_s);
        QCOMPARE(rowsAfterClick(2), u"Zoe Élan Bob Ann*<"_s);
        rowsAfterClick(2);
    }

    void failedSaveIsToldOnceForEachCommand()
    {
        OpenPhoneBook f;
        f.Select({0});
        const QString folder = QFileInfo(f.Book().FileName()).path();
        QVERIFY(QDir(folder).removeRecursively());
        const auto expectFailure = [&f] {
            f.prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        };
        expectFailure();
        f.Trigger(u"mnuAddContactsToNewGroup"_s);
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

    void commandsAreTakenBackByKey()
    {
        OpenPhoneBook f;
        QVERIFY(f.phoneBook.Autosave());
        const QByteArray before = ReadBytes(f.Book().FileName());
        const auto afterHeldKey = [&f](QWidget *place, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
            place->setFocus();
            for (const bool isPress : {true, true, true, false}) // nothing marks the repeats, as on some systems
                QTest::simulateEvent(place, isPress, Qt::Key_Z, modifiers, {}, false);
            QString shown = f.Rows(f.Contacts()) + u'|' + f.Status();
            for (const char *name : {"mnuUndo", "mnuRedo"}) {
                const auto &entry = Control<QAction>(f.phoneBook, name);
                shown += u'|' + entry.text() + (entry.isEnabled() ? u"!"_s : QString());
            }
            return shown;
        };
        f.Select({0, 1});
        f.ExpectDeleteQuestion(u"permanently delete the 2 selected contacts from"_s, PromptAnswer::Yes);
        f.Trigger(u"mnuPopupDeleteContacts"_s);
        f.Select({1});
        f.ExpectDeleteQuestion(u"permanently delete 'Zoe' from"_s, PromptAnswer::Yes);
        f.Trigger(u"mnuPopupDeleteContacts"_s);
        QTest::keyClicks(&f.Find(), u"q"_s); // which the box takes back
        QCOMPARE(afterHeldKey(&f.Find()), u"Élan|1 contacts|&Undo Delete Contacts!|&Redo"_s);
        const auto undone =
            u"Élan Zoe*<|Undone: Delete Contacts (1 contact)|&Undo Delete Contacts!|&Redo Delete Contacts!"_s;
        QCOMPARE(afterHeldKey(&f.Contacts()), undone);
        QTest::keyClick(&f.Contacts(), Qt::Key_F2);
        QTest::keyClicks(f.Editor(f.Contacts()), u"q"_s);
        QCOMPARE(afterHeldKey(f.Editor(f.Contacts())), undone);
        QCOMPARE(afterHeldKey(&f.Contacts()),
                 u"Ann*< Bob* Élan Zoe|Undone: Delete Contacts (2 contacts)|&Undo|&Redo Delete Contacts!"_s);
        QCOMPARE(ReadBytes(f.Book().FileName()), before);
        QCOMPARE(afterHeldKey(&f.Contacts(), Qt::ControlModifier | Qt::ShiftModifier),
                 u"Élan Zoe|Redone: Delete Contacts (2 contacts)|&Undo Delete Contacts!|&Redo Delete Contacts!"_s);
        WhenDialogOpens(u"ContactProperties"_s, [&f](QDialog &) { f.Contacts().selectAll(); });
        f.Trigger(u"actProperties"_s);
        QVERIFY(Control<QAction>(f.phoneBook, "mnuUndo").isEnabled());
        QDialog post;
        post.setModal(true);
        post.show();
        f.Trigger(u"mnuUndo"_s);
        QCOMPARE(f.Print(), u"Zoe: Élan: | Work"_s);
    }

    void everythingGoesByKeyboard()
    {
        OpenPhoneBook f;
        QTest::keyClick(&f.Find(), Qt::Key_Return);
        QVERIFY(f.Contacts().hasFocus());
        QCOMPARE(f.Rows(f.Contacts()), u"Ann*< Bob Élan Zoe"_s);
        f.Contacts().setCurrentIndex(f.Contacts().currentIndex().siblingAtColumn(1));
        QTest::keyClick(&f.Contacts(), Qt::Key_Z); // whichever column was clicked
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Élan Zoe*<"_s);
        QTest::keyClick(&f.Find(), Qt::Key_Down);
        QCOMPARE(f.Rows(f.Contacts()), u"Ann*< Bob Élan Zoe"_s);
        QTest::keyClick(&f.phoneBook, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.Contacts().selectionModel()->selectedRows().size(), 4);
        auto &menu = Control<QMenu>(f.phoneBook, "mnuPopupContacts");
        QTest::keyClick(&f.Contacts(), Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(menu.isVisible());
        QTest::keyClick(&menu, Qt::Key_Escape);
        f.Groups().setFocus();
        QTest::keyClick(&f.Groups(), Qt::Key_Down);
        QTest::keyClick(&f.phoneBook, Qt::Key_A, Qt::ControlModifier); // not for the groups
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob"_s);
    }
};

QTEST_MAIN(TestPhoneBookWindow)
#include "test_phone_book_window.moc"
