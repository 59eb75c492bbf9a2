#include "MessageEdit.h"
#include "TextTable.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestMessageEdit final : public QObject
{
    Q_OBJECT

    /// `count` characters of which no two neighbours are alike.
    static QString Filler(int count)
    {
        QString text;
        for (int i = 0; i < count; ++i)
            text += QChar(u'a' + i % 26);
        return text;
    }

    static void PasteOver(MessageEdit &edit, int from, int length, const QString &text)
    {
        QTextCursor cursor = edit.textCursor();
        cursor.setPosition(from);
        cursor.setPosition(from + length, QTextCursor::KeepAnchor);
        edit.setTextCursor(cursor);
        QApplication::clipboard()->setText(text);
        edit.paste();
    }

private slots:
    // Pasted between "1" and "2": what is left of it, "|" and what was rejected.
    void takesOutWhatMayNotBeSent_data()
    {
        AddTextTable({{u"Hé £5", u"Hé £5|"},
                      {u"€", u"|€"},
                      {u"a~b_c~", u"abc|~_"},
                      {u"a\u00A0b", u"ab|\u00A0"},
                      {u"a\tb", u"ab|\t"},
                      {u"a😀b😀", u"ab|😀"},
                      {u"e\u0301x", u"ex|\u0301"},
                      {u"a\r\nb\nc\u2028d", u"a\r\nb\r\nc\r\nd|"}});
    }
    void takesOutWhatMayNotBeSent()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        const QString text = u'1' + out.section(u'|', 0, 0) + u'2';
        const QString invalid = out.section(u'|', 1);
        MessageEdit edit;
        edit.SetMessageText(u"12"_s);
        QSignalSpy changed(&edit, &MessageEdit::MessageChanged);
        PasteOver(edit, 1, 0, in);
        QCOMPARE(edit.MessageText(), text);
        QCOMPARE(changed, QList<QVariantList>{{invalid}});
        QCOMPARE(edit.textCursor().atEnd(), !invalid.isEmpty());
        edit.undo();
        QCOMPARE(edit.MessageText(), u"12"_s);
        edit.redo();
        QCOMPARE(edit.MessageText(), text);
    }

    void keysAndInputMethodAreChecked()
    {
        MessageEdit edit;
        QSignalSpy changed(&edit, &MessageEdit::MessageChanged);
        QTest::keyClicks(&edit, u"a~b"_s);
        QTest::keyClick(&edit, Qt::Key_Return);
        QTest::keyClick(&edit, Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(edit.MessageText(), u"ab\r\n\r\n"_s);
        QCOMPARE(changed, (QList<QVariantList>{{QString()}, {u"~"_s}, {QString()}, {QString()}, {QString()}}));
        QInputMethodEvent unfinished(u"に"_s, {});
        QApplication::sendEvent(&edit, &unfinished);
        QCOMPARE(edit.MessageText(), u"ab\r\n\r\n"_s);
        QInputMethodEvent finished;
        finished.setCommitString(u"日é"_s);
        QApplication::sendEvent(&edit, &finished);
        QCOMPARE(edit.MessageText(), u"ab\r\n\r\né"_s);
        QCOMPARE(changed.last(), QVariantList{u"日"_s});
    }

    // "length at selected text": what is pasted where into a message of that length, and what gets in.
    void insertionIsCutAtTheLimit_data()
    {
        AddTextTable({{u"470 470 0 XY", u"XY"},
                      {u"470 470 0 XYZ", u"XY"},
                      {u"470 100 0 XYZ", u"XY"},
                      {u"472 0 0 X", u""},
                      {u"472 10 2 XYZ", u"XY"},
                      {u"471 1 0 zb", u"z"},
                      {u"470 5 0 \nX", u"\r\n"},
                      {u"471 5 0 \nX", u""}, // and a line break is not split
                      {u"469 5 0 X\nY", u"X\r\n"},
                      {u"470 5 0 ~X_Y€Z", u"XY"}});
    }
    void insertionIsCutAtTheLimit()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        const QString before = Filler(in.section(u' ', 0, 0).toInt());
        const int at = in.section(u' ', 1, 1).toInt();
        const int selected = in.section(u' ', 2, 2).toInt();
        const QString after = before.first(at) + out + before.sliced(at + selected);
        MessageEdit edit;
        edit.SetMessageText(before);
        PasteOver(edit, at, selected, in.section(u' ', 3));
        QCOMPARE(edit.MessageText(), after);
        edit.undo();
        QCOMPARE(edit.MessageText(), before);
        edit.redo();
        QCOMPARE(edit.MessageText(), after);
    }

    void undoReachesBackBeyondWhatWasTakenOut()
    {
        MessageEdit edit;
        edit.SetMessageText(Filler(470));
        QTest::keyClick(&edit, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(&edit, u"A~BC"_s);
        QCOMPARE(edit.MessageText(), Filler(470) + u"AB"_s);
        QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&edit, u"x_y"_s);
        QCOMPARE(edit.MessageText(), u"xy"_s);
        QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(edit.MessageText(), Filler(470) + u"AB"_s);
        QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(edit.MessageText(), Filler(470));
        QVERIFY(!edit.document()->isUndoAvailable());
        QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(edit.MessageText(), u"xy"_s);
    }
};

QTEST_MAIN(TestMessageEdit)
#include "test_message_edit.moc"
