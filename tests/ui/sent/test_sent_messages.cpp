#include "Dialogs.h"
#include "Files.h"
#include "Profile.h"
#include "Rows.h"
#include "SentList.h"
#include "SentLog.h"
#include "SentMessages.h"
#include "Settings.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

using namespace Qt::StringLiterals;

class TestSentMessages final : public QObject, private Profile
{
    Q_OBJECT

    Settings settings{Settings::DefaultFileName(), prompts};
    const WindowServices services{settings, prompts, shell};
    SentLog log{SentLog::DefaultFileName(), clock};
    SentKeeping keeping{log, settings};
    std::optional<SentMessages> window;
    const QStringList questions{u"the message to 'Zoë' from the sent messages?"_s, u"the 2 selected messages?"_s,
                                u"all sent messages (2 messages)?"_s};

    QTableView &List() { return Control<QTableView>(*window, "lvwSentMessages"); }

    void Note(const QList<SentNote> &messages, const QList<SentSettlement> &settlements)
    {
        keeping.Settle(*keeping.Note(messages), settlements);
    }

    /// Words: "/" and a find text, "#" and a column to sort by, "^" and a key for what has the focus, "." and a button,
    /// "?" with a question and its answer, and "!" to open the window again.
    void Do(const QString &acts)
    {
        for (const QString &act : acts.split(u' ')) {
            const QString rest = act.sliced(1);
            if (act[0] == u'/') {
                Control<QLineEdit>(*window, "txtFind").setText(rest);
            } else if (act[0] == u'#') {
                emit List().horizontalHeader()->sectionClicked(rest.toInt());
            } else if (act[0] == u'^') {
                QTest::keySequence(QApplication::focusWidget(), QKeySequence(rest));
            } else if (act[0] == u'.') {
                Control<QAbstractButton>(*window, rest.toLatin1()).click();
            } else if (act[0] == u'?') {
                prompts.ExpectCarefulQuestion(
                    u"Are you sure you want to permanently delete "_s + questions[rest.first(1).toInt()],
                    PromptIcon::Question, rest[1] == u'y' ? PromptAnswer::Yes : PromptAnswer::No,
                    rest[0] == u'2' ? u"Clear All?"_s : u"Delete Messages?"_s);
            } else {
                const auto isTaken = [](const SentMessage &message, QWidget *) { return message.name == u"Ann"; };
                window.emplace(services, log, isTaken, nullptr);
                window->show();
                window->activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&*window));
            }
        }
    }

    /// The status, which commands can be given, the names in the rows, the selected ones in brackets, and the message.
    QString Shown()
    {
        QString shown = window->isVisible() ? Control<QLabel>(*window, "lblStatus").text() + u' ' : u"closed "_s;
        for (const char *name : {"cmdSendAgain", "cmdCopy", "cmdExport", "cmdDelete", "cmdClear"})
            shown += QLatin1Char(Control<QPushButton>(*window, name).isEnabled() ? name[3] : '-');
        for (int row = 0; row < qMin(3, List().model()->rowCount()); ++row)
            shown += (List().selectionModel()->isRowSelected(row) ? u" [%1]"_s : u" %1"_s)
                         .arg(List().model()->index(row, 1).data().toString());
        return shown + u": "_s + Control<QPlainTextEdit>(*window, "txtSentMessage").toPlainText().replace(u'\n', u'/');
    }

private slots:
    // Three messages, of which the first two went out together, two days before the third.
    void init()
    {
        settings.DeleteSection(u"Sent Message Columns"_s);
        log.Clear();
        clock = {};
        const QString text = u"See you\r\nat 8"_s;
        Note({{u"+4477"_s, u"Ann"_s, text}, {u"+353851"_s, u"B\"b"_s, text}},
             {{SentOutcome::Sent, {}, 7}, {SentOutcome::Refused, u"No <b>\ncredit"_s}});
        clock.now = clock.now.addDays(2);
        Note({{u"+1555"_s, u"Zoë"_s, u"Other"_s}}, {{SentOutcome::NotKnown, u"Line lost"_s}});
        Do(u"!"_s);
    }

    TABLE_TEST(answersItsCommands, (const QString &acts, const QString &shown),
               u"! -> 3 messages SCEDC [Zoë] B\"b Ann: Other//Not known: Line lost",
               u"/SEE -> 2 messages found SCEDC [B\"b] Ann: See you/at 8//Refused: No <b>/credit",
               u"/SEE ^Down ^End -> 2 messages found SCEDC B\"b [Ann]: See you/at 8//Sent/Number at the gateway: 7",
               u"/SEE ^Down ^End ^Home #1 -> 2 messages found SCEDC Ann [B\"b]: See you/at 8//Refused: No <b>/credit",
               u"/x -> 0 messages found ----C: ",
               u"/SEE ^Esc -> 3 messages SCEDC Zoë [B\"b] Ann: See you/at 8//Refused: No <b>/credit",
               u"^Esc -> closed SCEDC [Zoë] B\"b Ann: Other//Not known: Line lost",
               u"#1 #0 -> 3 messages SCEDC Ann B\"b [Zoë]: Other//Not known: Line lost",
               u"#1 -> 3 messages SCEDC Ann B\"b [Zoë]: Other//Not known: Line lost",
               u"#1 ^Ctrl+W ! -> 3 messages SCEDC [Ann] B\"b Zoë: See you/at 8//Sent/Number at the gateway: 7",
               u"#2 #2 ^Ctrl+W ! -> 3 messages SCEDC [Ann] B\"b Zoë: See you/at 8//Sent/Number at the gateway: 7",
               u"#2 #2 ^Ctrl+W ! #2 -> 3 messages SCEDC Zoë B\"b [Ann]: See you/at 8//Sent/Number at the gateway: 7",
               u"^Down ?0n ^Del ?0y ^Del ^Del -> 2 messages --E-C B\"b Ann: See you/at 8//Refused: No <b>/credit",
               u"^Down ^Shift+Down ?1y ^Del -> 1 message --E-C Ann: See you/at 8//Sent/Number at the gateway: 7",
               u"?0y .cmdDelete ?2n .cmdClear ?2y .cmdClear -> 0 messages -----: ",
               u"/zo ^Down ?0y ^Del -> 0 messages found ----C: ",
               u".cmdSendAgain -> 3 messages SCEDC [Zoë] B\"b Ann: Other//Not known: Line lost",
               u"/ann .cmdSendAgain -> closed SCEDC [Ann]: See you/at 8//Sent/Number at the gateway: 7")
    {
        const QAbstractItemModelTester tester(List().model());
        Do(acts);
        QTRY_COMPARE(Shown(), shown);
        prompts.VerifyAllCame();
    }

    void copiesAndExports()
    {
        List().setColumnWidth(2, 333);
        Do(u"^Ctrl+W ! ^Down ^Shift+Down ^Ctrl+C"_s);
        QCOMPARE(List().columnWidth(2), 333);
        QCOMPARE(QApplication::clipboard()->text(),
                 u"2004-11-17 10:30:00\tZoë\t+1555\tOther\tNot known\tLine lost\n"
                 "2004-11-15 10:30:00\tB\"b\t+353851\tSee you at 8\tRefused\tNo <b> credit\n"_s);
        for (const auto &name : {u"sent.csv"_s, u"gone/sent.csv"_s, u""_s}) {
            prompts.ExpectAnyFileDialog(name.isEmpty() ? name : home.filePath(name));
            if (name.startsWith(u"gone"))
                prompts.ExpectBox(u"The sent messages could not be exported: No such file or directory"_s,
                                  PromptIcon::Exclamation, PromptAnswer::Ok, u"Export Failed"_s);
            Do(u".cmdExport"_s);
        }
        const QByteArray csv = ReadBytes(home.filePath(u"sent.csv"_s));
        QVERIFY(csv.startsWith("\"Date\",\"Name\",\"Number\",\"Message\",\"Outcome\",\"Reason\"\r\n\"2004-11-17 10:3"));
        QVERIFY(csv.endsWith("0\",\"Ann\",\"+4477\",\"See you\r\nat 8\",\"Sent\",\"\"\r\n") && csv.count(":30:") == 3);
    }

    void keepsWhatTheUserWants()
    {
        Do(u".chkKeep"_s);
        QVERIFY(!keeping.Note({{u"1"_s, {}, u"a"_s}}) && settings.Get(u"History"_s, u"Keep"_s) == u"False");
        for (const auto &days : {u"0"_s, u"x"_s, u"2"_s, u"1"_s}) {
            settings.Save(u"History"_s, u"Days"_s, days);
            Do(u"!"_s);
            QCOMPARE(Shown().first(9), days == u"1" ? u"1 message"_s : u"3 message"_s);
        }
        Do(u".chkKeep"_s);
        clock.now = clock.now.addDays(3);
        Note({{u"1"_s, u"New"_s, u"a"_s}}, {{SentOutcome::Sent}});
        settings.DeleteSection(u"History"_s);
        Do(u"!"_s);
        QCOMPARE(Shown(), u"1 message SCEDC [New]: a//Sent"_s);
    }

    void rowsThatComeLaterLeaveTheSelection()
    {
        QVERIFY(log.Note(QList<SentNote>(150'000, {u"1"_s, u"Eva"_s, u"New"_s})));
        window.emplace(services, log, nullptr, nullptr);
        QVERIFY(List().model()->rowCount() < 150'003);
        List().setCurrentIndex(List().model()->index(1, 0));
        List().selectionModel()->select(List().model()->index(0, 0),
                                        QItemSelectionModel::Rows | QItemSelectionModel::Select);
        window->show();
        QTRY_COMPARE(Shown(), u"150,003 messages -CEDC [Eva] [Eva] Eva: New//On its way"_s);
    }

    void tellsWhyItCannotRead()
    {
        log.Clear();
        QVERIFY(QDir().mkpath(SentLog::DefaultFileName()));
        Do(u"!"_s);
        QVERIFY(Shown().startsWith(u"The sent messages could not be read: ") && Shown().endsWith(u" -----: "));
    }
};

QTEST_MAIN(TestSentMessages)
#include "test_sent_messages.moc"
