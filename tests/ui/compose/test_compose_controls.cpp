#include "Fakes.h"
#include "LxCountryList.h"
#include "LxPhoneBook.h"
#include "MessageEdit.h"
#include "RecipientBox.h"
#include "TextTable.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QListView>

using namespace Qt::StringLiterals;

/// The two controls of the compose window that are its own: MessageEdit and RecipientBox.
class TestComposeControls final : public QObject
{
    Q_OBJECT

    /// Four contacts, two of one name, and a group.
    struct Recipients
    {
        Recipients()
        {
            for (const char16_t *name : {u"Ann", u"John Smith", u"Ann", u"Johnny"}) {
                contacts += book.CreateContact();
                contacts.last()->SetName(QString::fromUtf16(name));
                contacts.last()->AddToGroup(book.AllContacts());
            }
            box.Refill(book);
            box.show();
        }

        [[nodiscard]] int Selected() const { return box.SelectedNumber().value_or(0); }

        LxCountryList countries;
        FixedClock clock;
        LxPhoneBook book{countries, clock};
        QList<LxContactPtr> contacts;
        LxGroup &work = book.Groups().CreateGroup(u"Work"_s);
        RecipientBox box;
    };

private slots:
    // "length at selected text": what is pasted where into a message of that length; what gets in.
    void pasteIsCleanedAndCutAtTheLimit()
    {
        const TextTable rows = {{u"2 1 0 Hé £5", u"Hé £5"},     {u"2 1 0 a~b_c€~", u"abc"},
                                {u"2 1 0 a\u00A0b\tc", u"abc"}, {u"2 1 0 a\r\nb\nc\u2028d", u"a\r\nb\r\nc\r\nd"},
                                {u"470 100 0 XYZ", u"XY"},      {u"472 10 2 XYZ", u"XY"},
                                {u"471 1 0 zb", u"z"},          {u"470 5 0 \nX", u"\r\n"},
                                {u"471 5 0 \nX", u""}}; // a line break is not split
        for (const auto &[row, pasted] : rows) {
            const QString in = QString::fromUtf16(row);
            const QString out = QString::fromUtf16(pasted);
            // No two neighbours are alike.
            const QString before = u"ab"_s.repeated(236).first(in.section(u' ', 0, 0).toInt());
            const int at = in.section(u' ', 1, 1).toInt();
            const int selected = in.section(u' ', 2, 2).toInt();
            const QString after = before.first(at) + out + before.sliced(at + selected);
            MessageEdit edit;
            edit.SetMessageText(before);
            QTextCursor cursor = edit.textCursor();
            cursor.setPosition(at);
            cursor.setPosition(at + selected, QTextCursor::KeepAnchor);
            edit.setTextCursor(cursor);
            QApplication::clipboard()->setText(in.section(u' ', 3));
            edit.paste();
            QCOMPARE(edit.MessageText(), after);
            edit.undo();
            QCOMPARE(edit.MessageText(), before);
        }
    }

    void completesWhatIsTyped()
    {
        const QMap<QChar, Qt::Key> keys = {
            {u'<', Qt::Key_Backspace}, {u'>', Qt::Key_Delete}, {u'^', Qt::Key_Home}, {u'/', Qt::Key_Return}};
        const std::pair<QString, QString> rows[] = {
            {u"jo"_s, u"hn Smith"_s}, {u"johnn"_s, u"y"_s}, {u"w"_s, u"ork"_s},         {u"annx"_s, {}},
            {u"jo<"_s, {}},           {u"jo>"_s, {}},       {u"jox<h"_s, u"n Smith"_s}, {u"jo/"_s, u"hn Smith"_s},
            {u"ohn^j"_s, {}}};
        for (const auto &[typed, completed] : rows) {
            Recipients r;
            for (const QChar c : typed)
                QTest::keyClick(&r.box, keys.value(c, Qt::Key(c.toUpper().unicode())));
            QCOMPARE(typed + u'|' + r.box.lineEdit()->selectedText(), typed + u'|' + completed);
        }
    }

    void selectsByTextOrPick()
    {
        Recipients r;
        r.box.setEditText(u"ANN"_s);
        QCOMPARE(r.Selected(), r.contacts[0]->ContactID());
        r.box.setEditText(u"wORK"_s);
        QCOMPARE(r.Selected(), -r.work.GroupID());
        // The second of two with the same name stays picked, whatever keyboard, wheel and refills do.
        const int second = r.contacts[2]->ContactID();
        r.box.Pick(second);
        QTest::keyClick(&r.box, Qt::Key_Return);
        QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&r.box, &wheel);
        r.contacts[0]->Destroy();
        r.contacts[2]->SetName(u"Anna"_s);
        r.box.Refill(r.book);
        QCOMPARE(r.box.currentText(), u"Anna"_s);
        QCOMPARE(r.Selected(), second);
        r.contacts[2]->Destroy();
        r.box.Refill(r.book);
        QCOMPARE(r.box.currentText(), u"Anna"_s);
        QCOMPARE(r.Selected(), 0);
    }

    void refillWaitsWhileTheListIsOpen()
    {
        Recipients r;
        r.box.showPopup();
        r.contacts[0]->Destroy();
        r.box.Refill(r.book);
        r.box.view()->setCurrentIndex(r.box.model()->index(2, 0));
        QTest::keyClick(r.box.view(), Qt::Key_Return);
        QTRY_COMPARE(r.box.count(), 4);
        QCOMPARE(r.Selected(), r.contacts[2]->ContactID());
    }
};

QTEST_MAIN(TestComposeControls)
#include "test_compose_controls.moc"
