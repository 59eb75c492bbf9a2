#include "LxMessage.h"
#include "MessageEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

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

    static void Paste(MessageEdit &edit, const QString &text)
    {
        QApplication::clipboard()->setText(text);
        edit.paste();
    }

    static void SelectFrom(MessageEdit &edit, int from, int to)
    {
        QTextCursor cursor = edit.textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        edit.setTextCursor(cursor);
    }

private slots:
    void takesOutWhatMayNotBeSent_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("invalid");
        QTest::newRow("all allowed") << u"Hé £5"_s << u"Hé £5"_s << QString();
        QTest::newRow("euro") << u"€"_s << QString() << u"€"_s;
        QTest::newRow("each once, in order") << u"a~b_c~"_s << u"abc"_s << u"~_"_s;
        QTest::newRow("no-break space") << u"a\u00A0b"_s << u"ab"_s << u"\u00A0"_s;
        QTest::newRow("tab") << u"a\tb"_s << u"ab"_s << u"\t"_s;
        QTest::newRow("outside the basic plane") << u"a😀b😀"_s << u"ab"_s << u"😀"_s;
        QTest::newRow("half a pair") << u"a"_s + QChar(0xD83D) + u"b"_s << u"ab"_s << QString(QChar(0xD83D));
        QTest::newRow("combining mark") << u"e\u0301x"_s << u"ex"_s << u"\u0301"_s;
        QTest::newRow("line ends") << u"a\r\nb\nc\u2028d"_s << u"a\r\nb\r\nc\r\nd"_s << QString();
    }
    void takesOutWhatMayNotBeSent()
    {
        QFETCH(QString, pasted);
        QFETCH(QString, text);
        QFETCH(QString, invalid);
        MessageEdit edit;
        edit.SetMessageText(u"12"_s);
        SelectFrom(edit, 1, 1);
        QSignalSpy changed(&edit, &MessageEdit::MessageChanged);
        Paste(edit, pasted);
        QCOMPARE(edit.MessageText(), u'1' + text + u'2');
        QCOMPARE(changed, QList<QVariantList>{{invalid}});
        QCOMPARE(edit.textCursor().atEnd(), !invalid.isEmpty());
        edit.undo();
        QCOMPARE(edit.MessageText(), u"12"_s);
        edit.redo();
        QCOMPARE(edit.MessageText(), u'1' + text + u'2');
    }

    void typedKeysAreCleanedAndCounted()
    {
        MessageEdit edit;
        QSignalSpy changed(&edit, &MessageEdit::MessageChanged);
        QTest::keyClicks(&edit, u"a~b"_s);
        QTest::keyClick(&edit, Qt::Key_Return);
        QTest::keyClick(&edit, Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(edit.MessageText(), u"ab\r\n\r\n"_s);
        QCOMPARE(changed, (QList<QVariantList>{{QString()}, {u"~"_s}, {QString()}, {QString()}, {QString()}}));
        // Tab leaves the box.
        QTest::keyClick(&edit, Qt::Key_Tab);
        QCOMPARE(edit.MessageText(), u"ab\r\n\r\n"_s);
    }

    void inputMethodIsCheckedWhenItCommits()
    {
        MessageEdit edit;
        QSignalSpy changed(&edit, &MessageEdit::MessageChanged);
        QInputMethodEvent unfinished(u"に"_s, {});
        QApplication::sendEvent(&edit, &unfinished);
        QCOMPARE(edit.MessageText(), QString());
        QInputMethodEvent finished;
        finished.setCommitString(u"日é"_s);
        QApplication::sendEvent(&edit, &finished);
        QCOMPARE(edit.MessageText(), u"é"_s);
        QCOMPARE(changed.last(), QVariantList{u"日"_s});
    }

    void insertionIsCutAtTheLimit_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("at");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("inserted");
        QTest::newRow("fits") << 470 << 470 << 0 << u"XY"_s << u"XY"_s;
        QTest::newRow("at the end") << 470 << 470 << 0 << u"XYZ"_s << u"XY"_s;
        QTest::newRow("in the middle") << 470 << 100 << 0 << u"XYZ"_s << u"XY"_s;
        QTest::newRow("full") << 472 << 0 << 0 << u"X"_s << QString();
        QTest::newRow("over a selection") << 472 << 10 << 2 << u"XYZ"_s << u"XY"_s;
        QTest::newRow("break fits") << 470 << 5 << 0 << u"\nX"_s << u"\r\n"_s;
        QTest::newRow("break is not split") << 471 << 5 << 0 << u"\nX"_s << QString();
        QTest::newRow("after a break") << 469 << 5 << 0 << u"X\nY"_s << u"X\r\n"_s;
        QTest::newRow("bad ones do not count") << 470 << 5 << 0 << u"~X_Y€Z"_s << u"XY"_s;
        QTest::newRow("among like ones") << 471 << 1 << 0 << u"zb"_s << u"z"_s;
        QTest::newRow("all of it") << 0 << 0 << 0 << Filler(1000) << Filler(472);
    }
    void insertionIsCutAtTheLimit()
    {
        QFETCH(int, length);
        QFETCH(int, at);
        QFETCH(int, selected);
        QFETCH(QString, pasted);
        QFETCH(QString, inserted);
        const QString before = Filler(length);
        MessageEdit edit;
        edit.SetMessageText(before);
        SelectFrom(edit, at, at + selected);
        Paste(edit, pasted);
        const QString after = before.first(at) + inserted + before.sliced(at + selected);
        QCOMPARE(edit.MessageText(), after);
        QVERIFY(edit.MessageText().size() <= LxMessage::MaxLength);
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
