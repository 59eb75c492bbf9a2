#include "Files.h"
#include "PhoneBookFixture.h"
#include "Rows.h"

#include <QComboBox>
#include <QMenu>
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

    TABLE_TEST(nothingIsDeletedWithoutAYes,
               (const QString &starter, const QString &title, const QString &question, const QString &left),
               {"contact", u"mnuPopupDeleteContacts"_s, u"Delete Contacts?"_s,
                u"Are you sure you want to permanently delete 'Bob' from your phone book?"_s,
                u"Ann:Work Zoe: Élan: | Work"_s},
               {"group", u"mnuDelete"_s, u"Delete Group?"_s,
                u"Are you sure you want to remove the group \"Work\" from your Phone Book?"_s,
                u"Bob: Ann: Zoe: Élan: | "_s})
    {
        PhoneBookFixture f;
        f.Open();
        f.ChooseGroup(1);
        f.Select({1});
        f.Groups().setFocus();
        const QString before = f.Print();
        for (const PromptAnswer answer : {PromptAnswer::No, PromptAnswer::Yes}) {
            QCOMPARE(f.Print(), before);
            f.prompts.ExpectCarefulQuestion(question, PromptIcon::Question, answer, title);
            f.Trigger(starter);
        }
        QCOMPARE(f.Print(), left);
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
        PhoneBookFixture f;
        f.Open();
        const auto waits = [] { QTest::qWait(2 * QApplication::doubleClickInterval()); };
        f.Contacts().setFocus();
        f.Click(f.Contacts(), 0);
        f.Click(f.Contacts(), 2, Qt::LeftButton, Qt::ControlModifier);
        f.Click(f.Contacts(), 2);
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Élan*< Zoe"_s);
        waits();
        QVERIFY(!f.Editor(f.Contacts())); // several were selected
        f.Click(f.Contacts(), 2);
        QTest::keyClick(&f.Contacts(), Qt::Key_F2);
        QVERIFY(f.Editor(f.Contacts())); // at once
        QTest::keyClick(f.Editor(f.Contacts()), Qt::Key_Escape);
        f.Click(f.Contacts(), 2);
        f.prompts.ExpectCarefulQuestion(u"Are you sure you want to permanently delete 'Élan' from your phone book?"_s,
                                        PromptIcon::Question, PromptAnswer::No, u"Delete Contacts?"_s);
        QTest::keyClick(&f.Contacts(), Qt::Key_Delete);
        waits();
        QVERIFY(!f.Contacts().viewport()->findChild<QLineEdit *>() || f.Editor(f.Contacts())->isHidden());
        f.Click(f.Contacts(), 2);
        QTRY_VERIFY(f.Editor(f.Contacts()) && f.Editor(f.Contacts())->isVisible());
        f.Editor(f.Contacts())->setText(u"Ella"_s);
        QTest::keyClick(f.Editor(f.Contacts()), Qt::Key_Tab);
        QTRY_COMPARE(f.Rows(f.Contacts()), u"Ann Bob Ella*< Zoe"_s);
        QVERIFY(!f.Editor(f.Contacts()) || f.Editor(f.Contacts())->isHidden()); // nor one on the next name

        f.Click(f.Contacts(), 3, Qt::LeftButton, Qt::ControlModifier);
        WhenDialogOpens(u"ContactProperties"_s,
                        [](QDialog &dialog) { QCOMPARE(Control<QLineEdit>(dialog, "txtName").text(), u"Zoe"_s); });
        QTest::mouseDClick(f.Contacts().viewport(), Qt::LeftButton, {}, f.Place(f.Contacts(), 3));
        QCoreApplication::processEvents();
        waits();
        QVERIFY(!f.Editor(f.Contacts()) || f.Editor(f.Contacts())->isHidden());
    }

    TABLE_TEST(aClickOnTheChosenGroupRefillsIt, (Qt::MouseButton button), {"left", Qt::LeftButton},
               {"right", Qt::RightButton})
    {
        PhoneBookFixture f;
        f.Open();
        f.Click(f.Groups(), 1, button);
        QCOMPARE(f.Status(), u"2 contacts"_s);
        f.Select({0});
        f.Trigger(u"mnuRemoveContactsFromThisGroup"_s);
        f.Find().setText(u"b"_s);
        f.Click(f.Groups(), 1, button);
        QCOMPARE(f.Rows(f.Contacts()) + f.Find().text(), u"Bob"_s);
        QTest::mouseClick(f.Groups().viewport(), Qt::LeftButton, Qt::ControlModifier, f.Place(f.Groups(), 1));
        QCOMPARE(f.Rows(f.Groups()), u"Everyone Work*<"_s);
    }

    TABLE_TEST(emptyListsSayWhatToDo, (bool isEmpty, int group, const QString &find, const QString &hints),
               {"nothing to say", false, 0, u"a"_s, u"|"_s},
               {"no match", false, 0, u"qq"_s, u"No contact matches the search.|"_s},
               {"nobody in the group", false, 2, {},
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

    TABLE_TEST(everyButtonShowsAtFirst, (int points), {"9 pt", 9}, {"12 pt", 12})
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
        PhoneBookFixture f;
        f.Open();
        const auto layout = [&f] {
            const auto &splitter = Control<QSplitter>(f.phoneBook, "Splitter1");
            return u"%1 %2 %3 %4 %5"_s.arg(f.phoneBook.width())
                .arg(f.phoneBook.height())
                .arg(splitter.sizes().first())
                .arg(f.Contacts().columnWidth(0))
                .arg(f.Contacts().columnWidth(1));
        };
        f.phoneBook.resize(640, 480);
        Control<QSplitter>(f.phoneBook, "Splitter1").setSizes({222, 400});
        f.Contacts().setColumnWidth(0, 101);
        f.Contacts().setColumnWidth(1, 99);
        const QString before = layout();
        QVERIFY(f.phoneBook.close());
        const QString width = f.settings.Get(u"PhoneBook"_s, u"Width"_s);
        auto book = std::make_unique<LxPhoneBook>(f.countries, f.clock);
        book->OpenPhoneBook(f.home.filePath(u"other.kpb"_s));
        PhoneBook again({f.countries, f.clock, f.services}, std::move(book));
        again.show();
        QCOMPARE(Control<QTreeView>(again, "lvwContacts").columnWidth(1), 99);
        QCOMPARE(Control<QSplitter>(again, "Splitter1").sizes().first(), 222);
        again.showMaximized();
        again.CloseForGood();
        QCOMPARE(f.settings.Get(u"PhoneBook"_s, u"Width"_s), width);
        f.phoneBook.resize(300, 300);
        Control<QSplitter>(f.phoneBook, "Splitter1").setSizes({100, 200});
        f.Contacts().setColumnWidth(0, 50);
        f.phoneBook.show();
        QCOMPARE(layout(), before);
        QVERIFY(!f.Contacts().header()->sectionsMovable());
    }

    void commandsTakeWhatTheEditorHolds()
    {
        PhoneBookFixture f;
        f.Open();
        f.Trigger(u"mnuNewGroup"_s);
        f.Editor(f.Groups())->setText(u"Club"_s);
        f.Trigger(u"mnuNewGroup"_s);
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

    TABLE_TEST(deletingLeavesTheNextRowCurrent, (int count), {"few, row by row", 2}, {"many, at once", 20})
    {
        PhoneBookFixture f;
        for (int i = 10; i < 40; ++i)
            f.Add(u"M%1"_s.arg(i), u"0770091"_s);
        f.Open();
        for (int row = 4 + count; row > 4; --row) // upwards: the current row is the first
            f.SelectRow(row);
        f.prompts.ExpectCarefulQuestion(u"Are you sure you want to permanently delete the %1 selected contacts "
                                        "from your phone book?"_s.arg(count),
                                        PromptIcon::Question, PromptAnswer::Yes, u"Delete Contacts?"_s);
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
        PhoneBookFixture f;
        f.Open();
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
        f.phoneBook.close();
        QCOMPARE(f.settings.Get(u"Contact Columns"_s, u"SortBy"_s), u"3"_s);
        QCOMPARE(f.settings.Get(u"Contact Columns"_s, u"ReverseSort"_s), u"True"_s);
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

    void everythingGoesByKeyboard()
    {
        PhoneBookFixture f;
        f.Open();
        QTest::keyClick(&f.Contacts(), Qt::Key_Return); // nothing is selected
        QTest::keyClick(&f.Find(), Qt::Key_Return);
        QVERIFY(f.Contacts().hasFocus());
        QCOMPARE(f.Rows(f.Contacts()), u"Ann*< Bob Élan Zoe"_s);
        f.Select({2});
        f.Find().setFocus();
        QTest::keyClick(&f.Find(), Qt::Key_Return);
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Élan*< Zoe"_s);
        f.Contacts().setCurrentIndex(f.Contacts().currentIndex().siblingAtColumn(1));
        QTest::keyClick(&f.Contacts(), Qt::Key_Z); // whichever column was clicked
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob Élan Zoe*<"_s);
        QTest::keyClick(&f.Find(), Qt::Key_Down);
        QCOMPARE(f.Rows(f.Contacts()), u"Ann*< Bob Élan Zoe"_s);
        QTest::keyClick(&f.phoneBook, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.Contacts().selectionModel()->selectedRows().size(), 4);
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {5, 5}, f.Contacts().mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&f.Contacts(), &byKey);
        auto &menu = Control<QMenu>(f.phoneBook, "mnuPopupContacts");
        QVERIFY(menu.isVisible());
        QTest::keyClick(&menu, Qt::Key_Escape);
        QTest::keyClick(&f.Contacts(), Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(menu.isVisible());
        QTest::keyClick(&menu, Qt::Key_Escape);
        f.Groups().setFocus();
        QTest::keyClick(&f.Groups(), Qt::Key_Delete); // not "Everyone"
        QTest::keyClick(&f.Groups(), Qt::Key_Down);
        QCOMPARE(f.Status(), u"2 contacts"_s);
        QTest::keyClick(&f.phoneBook, Qt::Key_A, Qt::ControlModifier); // not for the groups
        QCOMPARE(f.Rows(f.Contacts()), u"Ann Bob"_s);
        QTest::keyClick(&f.phoneBook, Qt::Key_F1);
        QCOMPARE(f.shell.opened, QStringList(u"http://www.corvane.example/brevio/help.html"_s));
    }
};

QTEST_MAIN(TestPhoneBookWindow)
#include "test_phone_book_window.moc"
