#include "Fakes.h"
#include "LxCountryList.h"
#include "LxPhoneBook.h"
#include "RecipientBox.h"

#include <QLineEdit>
#include <QListView>
#include <QTest>

using namespace Qt::StringLiterals;

class TestRecipientBox final : public QObject
{
    Q_OBJECT

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

        void Type(const QString &keys)
        {
            for (const QChar key : keys) {
                if (key == u'<')
                    QTest::keyClick(&box, Qt::Key_Backspace);
                else if (key == u'>')
                    QTest::keyClick(&box, Qt::Key_Delete);
                else if (key == u'^')
                    QTest::keyClick(&box, Qt::Key_Home);
                else if (key == u'\r')
                    QTest::keyClick(&box, Qt::Key_Return);
                else
                    QTest::keyClick(&box, key.toLatin1());
            }
        }

        [[nodiscard]] int Selected() const { return box.SelectedNumber().value_or(0); }

        LxCountryList countries;
        FixedClock clock;
        LxPhoneBook book{countries, clock};
        QList<LxContactPtr> contacts;
        LxGroup *work = nullptr;
        RecipientBox box;
    };

private slots:
    // Or the list would take an early click for the one that opened it.
    void initTestCase() { QApplication::setDoubleClickInterval(0); }

    void completesWhatIsTyped_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("selection");
        QTest::newRow("first that begins so") << u"jo"_s << u"john Smith"_s << u"hn Smith"_s;
        QTest::newRow("typed on") << u"john"_s << u"john Smith"_s << u" Smith"_s;
        QTest::newRow("away from the first") << u"johnn"_s << u"johnny"_s << u"y"_s;
        QTest::newRow("group") << u"w"_s << u"work"_s << u"ork"_s;
        QTest::newRow("whole name") << u"ann"_s << u"ann"_s << QString();
        QTest::newRow("no such name") << u"annx"_s << u"annx"_s << QString();
        QTest::newRow("Backspace") << u"jo<"_s << u"jo"_s << QString();
        QTest::newRow("Backspace twice") << u"jo<<"_s << u"j"_s << QString();
        QTest::newRow("Delete") << u"jo>"_s << u"jo"_s << QString();
        QTest::newRow("after Backspace") << u"jox<h"_s << u"john Smith"_s << u"n Smith"_s;
        QTest::newRow("Enter") << u"jo\r"_s << u"john Smith"_s << u"hn Smith"_s;
        QTest::newRow("in the middle") << u"ohn^j"_s << u"john"_s << QString();
    }
    void completesWhatIsTyped()
    {
        QFETCH(QString, keys);
        Fixture f;
        f.Type(keys);
        QTEST(f.box.currentText(), "text");
        QTEST(f.box.lineEdit()->selectedText(), "selection");
        QCOMPARE(f.box.count(), 5);
    }

    void inputMethodCompletesOnlyWhatIsFinished()
    {
        Fixture f;
        QInputMethodEvent unfinished(u"jo"_s, {});
        QApplication::sendEvent(&f.box, &unfinished);
        QCOMPARE(f.box.currentText(), QString());
        QInputMethodEvent finished;
        finished.setCommitString(u"jo"_s);
        QApplication::sendEvent(&f.box, &finished);
        QCOMPARE(f.box.currentText(), u"john Smith"_s);
    }

    void selectsByTextOrPick()
    {
        Fixture f;
        QCOMPARE(f.box.SelectedNumber(), std::nullopt);
        f.Type(u"ANN"_s);
        QCOMPARE(f.Selected(), f.contacts[0]->ContactID());
        f.box.setEditText(u"wORK"_s);
        QCOMPARE(f.Selected(), -f.work->GroupID());
        f.box.setEditText(u"07700 900123"_s);
        QCOMPARE(f.box.SelectedNumber(), std::nullopt);
        // The second of two with the same name stays picked, whatever the keyboard does.
        f.box.Pick(f.contacts[2]->ContactID());
        f.Type(u"\r"_s);
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        f.box.clearFocus();
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        f.box.setEditText(u"John Smith"_s);
        QCOMPARE(f.Selected(), f.contacts[1]->ContactID());
    }

    void refillKeepsTextCaretAndPick()
    {
        Fixture f;
        f.Type(u"joh"_s);
        f.contacts[0]->SetName(u"Aaron"_s);
        f.box.Refill(f.book);
        QCOMPARE(f.box.currentText(), u"john Smith"_s);
        QCOMPARE(f.box.lineEdit()->selectedText(), u"n Smith"_s);
        f.box.setEditText(u"12345"_s);
        f.box.lineEdit()->setCursorPosition(2);
        f.contacts[0]->SetName(u"Zoe"_s);
        f.box.Refill(f.book);
        QCOMPARE(f.box.currentText(), u"12345"_s);
        QCOMPARE(f.box.lineEdit()->cursorPosition(), 2);

        f.box.Pick(f.contacts[2]->ContactID());
        f.contacts[0]->Destroy();
        f.box.Refill(f.book);
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        f.contacts[2]->SetName(u"Anna"_s);
        f.box.Refill(f.book);
        QCOMPARE(f.box.currentText(), u"Anna"_s);
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        f.contacts[2]->Destroy();
        f.box.Refill(f.book);
        QCOMPARE(f.box.currentText(), u"Anna"_s);
        QCOMPARE(f.box.SelectedNumber(), std::nullopt);
    }

    void refillWaitsWhileTheListIsOpen_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("keyboard") << false;
        QTest::newRow("mouse") << true;
    }
    void refillWaitsWhileTheListIsOpen()
    {
        QFETCH(bool, byMouse);
        Fixture f;
        f.box.showPopup();
        QTRY_VERIFY(f.box.view()->isVisible());
        f.contacts[0]->Destroy();
        f.box.Refill(f.book);
        QCOMPARE(f.box.count(), 5);
        const QModelIndex second = f.box.model()->index(2, 0);
        if (byMouse) {
            const QPoint where = f.box.view()->visualRect(second).center();
            QTest::mouseMove(f.box.view()->viewport(), where);
            QTest::mouseClick(f.box.view()->viewport(), Qt::LeftButton, {}, where);
        } else {
            f.box.view()->setCurrentIndex(second);
            QTest::keyClick(f.box.view(), Qt::Key_Return);
        }
        QTRY_COMPARE(f.box.count(), 4);
        QVERIFY(!f.box.view()->isVisible());
        QCOMPARE(f.Selected(), f.contacts[2]->ContactID());
        QCOMPARE(f.box.currentText(), u"Ann"_s);
    }

    void wheelChangesNothing()
    {
        Fixture f;
        f.box.Pick(f.contacts[1]->ContactID());
        QWheelEvent wheel({5, 5}, f.box.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&f.box, &wheel);
        QCOMPARE(f.Selected(), f.contacts[1]->ContactID());
    }
};

QTEST_MAIN(TestRecipientBox)
#include "test_recipient_box.moc"
