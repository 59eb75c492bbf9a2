#include "Fakes.h"
#include "LxCountryList.h"
#include "LxPhoneBook.h"
#include "RecipientBox.h"
#include "TextTable.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QListView>

using namespace Qt::StringLiterals;

class TestRecipientBox final : public QObject
{
    Q_OBJECT

    /// Four contacts, two of one name, and a group.
    struct Fixture
    {
        Fixture()
        {
            for (const char16_t *name : {u"Ann", u"John Smith", u"Ann", u"Johnny"}) {
                contacts += book.CreateContact();
                contacts.last()->SetName(QString::fromUtf16(name));
                contacts.last()->AddToGroup(book.AllContacts());
            }
            work = &book.Groups().CreateGroup(u"Work"_s);
            box.Refill(book);
            box.show();
            box.activateWindow();
            box.setFocus();
            QVERIFY(QTest::qWaitForWindowActive(&box));
        }

        /// The box's text with the selected part in brackets.
        [[nodiscard]] QString Shown() const
        {
            QString text = box.currentText();
            if (const int start = box.lineEdit()->selectionStart(); start >= 0)
                text.insert(box.lineEdit()->selectionEnd(), u']').insert(start, u'[');
            return text;
        }
        [[nodiscard]] int Selected() const { return box.SelectedNumber().value_or(0); }

        LxCountryList countries;
        FixedClock clock;
        LxPhoneBook book{countries, clock};
        QList<LxContactPtr> contacts;
        LxGroup *work = nullptr;
        RecipientBox box;
        QAbstractItemModelTester tester{box.model(), QAbstractItemModelTester::FailureReportingMode::QtTest};
    };

private slots:
    // Or the list would take an early click for the one that opened it.
    void initTestCase() { QApplication::setDoubleClickInterval(0); }

    // "<" is Backspace, ">" Delete, "^" Home and "/" Enter.
    void completesWhatIsTyped_data()
    {
        AddTextTable({{u"jo", u"jo[hn Smith]"},
                      {u"john", u"john[ Smith]"},
                      {u"johnn", u"johnn[y]"},
                      {u"w", u"w[ork]"},
                      {u"ann", u"ann"},
                      {u"annx", u"annx"},
                      {u"jo<", u"jo"},
                      {u"jo<<", u"j"},
                      {u"jo>", u"jo"},
                      {u"jox<h", u"joh[n Smith]"},
                      {u"jo/", u"jo[hn Smith]"},
                      {u"ohn^j", u"john"}});
    }
    void completesWhatIsTyped()
    {
        QFETCH(QString, in);
        const QMap<QChar, Qt::Key> keys = {
            {u'<', Qt::Key_Backspace}, {u'>', Qt::Key_Delete}, {u'^', Qt::Key_Home}, {u'/', Qt::Key_Return}};
        Fixture f;
        for (const QChar key : in) {
            if (keys.contains(key))
                QTest::keyClick(&f.box, keys[key]);
            else
                QTest::keyClick(&f.box, key.toLatin1());
        }
        QTEST(f.Shown(), "out");
        QCOMPARE(f.box.count(), 5);
    }

    void inputMethodCompletesOnlyWhatIsFinished()
    {
        Fixture f;
        QInputMethodEvent unfinished(u"jo"_s, {});
        QApplication::sendEvent(&f.box, &unfinished);
        QCOMPARE(f.Shown(), QString());
        QInputMethodEvent finished;
        finished.setCommitString(u"jo"_s);
        QApplication::sendEvent(&f.box, &finished);
        QCOMPARE(f.Shown(), u"jo[hn Smith]"_s);
    }

    void selectsByTextOrPick()
    {
        Fixture f;
        QCOMPARE(f.box.SelectedNumber(), std::nullopt);
        f.box.setEditText(u"ANN"_s);
        QCOMPARE(f.Selected(), f.contacts[0]->ContactID());
        f.box.setEditText(u"wORK"_s);
        QCOMPARE(f.Selected(), -f.work->GroupID());
        f.box.setEditText(u"07700 900123"_s);
        QCOMPARE(f.box.SelectedNumber(), std::nullopt);
        // The second of two with the same name stays picked, whatever keyboard and wheel do.
        f.box.Pick(f.contacts[2]->ContactID());
        QTest::keyClick(&f.box, Qt::Key_Return);
        QWheelEvent wheel({5, 5}, f.box.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&f.box, &wheel);
        f.box.clearFocus();
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        f.box.setEditText(u"John Smith"_s);
        QCOMPARE(f.Selected(), f.contacts[1]->ContactID());
    }

    void refillKeepsTextCaretAndPick()
    {
        Fixture f;
        QTest::keyClicks(&f.box, u"joh"_s);
        f.contacts[0]->SetName(u"Aaron"_s);
        f.box.Refill(f.book);
        QCOMPARE(f.Shown(), u"joh[n Smith]"_s);
        f.box.setEditText(u"12345"_s);
        f.box.lineEdit()->setCursorPosition(2);
        f.box.Pick(f.contacts[2]->ContactID());
        f.contacts[0]->Destroy();
        f.box.Refill(f.book);
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        f.contacts[2]->SetName(u"Anna"_s);
        f.box.Refill(f.book);
        QCOMPARE(f.Shown(), u"Anna"_s);
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        f.box.lineEdit()->setCursorPosition(2);
        f.contacts[2]->Destroy();
        f.box.Refill(f.book);
        QCOMPARE(f.Shown(), u"Anna"_s);
        QCOMPARE(f.box.lineEdit()->cursorPosition(), 2);
        QCOMPARE(f.box.SelectedNumber(), std::nullopt);
    }

    void refillWaitsWhileTheListIsOpen()
    {
        for (const bool byMouse : {false, true}) {
            Fixture f;
            f.box.showPopup();
            QTRY_VERIFY(f.box.view()->isVisible());
            f.contacts[0]->Destroy();
            f.box.Refill(f.book);
            QCOMPARE(f.box.count(), 5);
            const QModelIndex second = f.box.model()->index(2, 0);
            f.box.view()->setCurrentIndex(second);
            if (byMouse)
                QTest::mouseClick(f.box.view()->viewport(), Qt::LeftButton, {},
                                  f.box.view()->visualRect(second).center());
            else
                QTest::keyClick(f.box.view(), Qt::Key_Return);
            QTRY_COMPARE(f.box.count(), 4);
            QVERIFY(!f.box.view()->isVisible());
            QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        }
    }
};

QTEST_MAIN(TestRecipientBox)
#include "test_recipient_box.moc"
