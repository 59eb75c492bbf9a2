#include "ApplicationModule.h"
#include "Dialogs.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Profile.h"
#include "Settings.h"
#include "SystemInternetSettings.h"
#include "Version.h"
#include "WindowPostRunner.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDirIterator>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QStatusBar>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

/// A fresh profile, its account at a gateway of this machine that refuses 447700900999, and the program.
struct Program : Profile
{
    /// False when the gateway or the program did not come up. A phone book holds these lines from the start.
    bool Start(const QByteArray &phoneBookLines)
    {
        process.start(QStringLiteral(GATEWAY_PROGRAM), {u"--port"_s, u"0"_s, u"--account"_s, u"ann:secret:10"_s,
                                                        u"--fail"_s, u"447700900999"_s, u"--outbox"_s, outbox});
        if (!process.waitForReadyRead(10000) || !process.canReadLine())
            return false;
        const QByteArray host = process.readLine().trimmed().split('/').constLast();
        WriteBytes(settings,
                   R"({"Account":{"Username":"ann","Password":"secret"},"Gateway":{"Host":")" + host + R"("}})");
        if (!phoneBookLines.isEmpty())
            WriteBytes(phoneBook, phoneBookLines);
        return module.Main();
    }

    /// Number, name and text of the messages that the gateway took from this version of the program.
    [[nodiscard]] QStringList Taken() const
    {
        QStringList taken;
        for (const QByteArray &line : ReadBytes(outbox).trimmed().split('\n')) {
            const QJsonDocument message = QJsonDocument::fromJson(line);
            if (message[u"version"].toInt() == int(VersionNumber(ProgramVersion())))
                taken +=
                    message[u"number"].toString() + message[u"name"].toString() + u'|' + message[u"text"].toString();
        }
        return taken;
    }

    QProcess process;
    const QString outbox = home.filePath(u"outbox"_s);
    const QString settings = Settings::DefaultFileName();
    const QString phoneBook = LxPhoneBook::DefaultFileName();
    SystemInternetSettings systemSettings;
    WindowPostRunner runner;
    ApplicationModule module{{prompts, shell, clock, systemSettings, runner, std::chrono::milliseconds(0)},
                             QStringLiteral(PROGRAM_FOLDER),
                             {}};
};

} // namespace

/// The whole program in its windows, against a gateway of this machine.
class TestProgram final : public QObject
{
    Q_OBJECT

    /// The status after a message to `to`, which is typed.
    static QString Send(const QString &to, const QString &text)
    {
        const QWidget &compose = *FindWindow(u"Compose"_s);
        auto &box = Control<QComboBox>(compose, "cboTo");
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&box, to);
        Control<QPlainTextEdit>(compose, "txtTextMessage").setPlainText(text);
        QTest::mouseClick(&Control<QPushButton>(compose, "cmdSend"), Qt::LeftButton);
        return Control<QStatusBar>(compose, "StatusBar").currentMessage();
    }

private slots:
    void everythingIsSentAndKept()
    {
        Program p;
        const QByteArray lines = "\"Bob\",44,\"07700900999\",\"Work\"\r\n\"Zo\xEB\",33,\"612345678\",\"Work;Club\"\r\n";
        QVERIFY(p.Start(lines));
        QWidget *compose = FindWindow(u"Compose"_s);
        QVERIFY(QTest::qWaitForWindowActive(compose));

        WhenDialogOpens(u"ContactProperties"_s, [](QDialog &dialog) {
            QTest::keyClicks(&Control<QLineEdit>(dialog, "txtName"), u"Ann Lee\r"_s);
        });
        QCOMPARE(Send(u"+44 7700 900123"_s, u"£5\n<b>"_s), u"Message sent. 9 messages remaining"_s);
        QCOMPARE(Send(u"zo"_s, QString(161, u'x')), u"Message sent. 7 messages remaining"_s);
        const QString zoe = u"33612345678Zoë|"_s;
        QCOMPARE(p.Taken(), (QStringList{u"447700900123Ann Lee|£5\r\n<b>"_s, zoe + QString(158, u'x') + u".."_s,
                                         zoe + u"..xxx"_s}));

        const auto lookAtSent = [compose] {
            WhenDialogOpens(u"SentMessages"_s, [](QDialog &dialog) {
                QTRY_COMPARE(Control<QLabel>(dialog, "lblStatus").text(), u"3 messages"_s);
                Control<QCheckBox>(dialog, "chkKeep").click();
            });
            Control<QAction>(*compose, "mnuSentMessages").trigger();
        };
        lookAtSent();

        p.process.terminate();
        QVERIFY(p.process.waitForFinished(10000));
        p.prompts.ExpectBox(u"Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                            "Please check you are connected to the internet."_s,
                            PromptIcon::Exclamation, PromptAnswer::Ok, {},
                            u"Could not connect to 127.0.0.1: Connection refused"_s);
        QCOMPARE(Send(u"ann"_s, u"Draft\nof two lines"_s), u"Message failed"_s);
        lookAtSent(); // none more, as none was to be kept
        QVERIFY(compose->close());
        QCOMPARE(ReadBytes(p.phoneBook), lines + "\"Ann Lee\",44,\"7700900123\"\r\n");
        QVERIFY(ReadBytes(p.settings).contains("\"Text\": \"Draft\\r\\nof two lines\""));
    }

    void importsAreSentToAndTidied()
    {
        Program p;
        const auto path = [&p](const QString &name) { return p.home.filePath(name); };
        const QByteArray source = "Name,Country,Mobile\r\n\"Ann Lee\",,+44 7700 900123,\nBob\t44\t07700 900999\r\n\r\n"
                                  "+33612345678,Zo\xC3\xAB\nAnnie,44,07700-900123";
        QVERIFY(p.Start({}) && WriteBytes(path(u"people.txt"_s), source));
        QWidget *compose = FindWindow(u"Compose"_s);
        QVERIFY(QTest::qWaitForWindowActive(compose));
        Control<QPushButton>(*compose, "cmdPhoneBook").click();
        QWidget *book = FindWindow(u"PhoneBook"_s);
        QVERIFY(QTest::qWaitForWindowActive(book));
        const auto trigger = [book](const char *name) { Control<QAction>(*book, name).trigger(); };
        p.prompts.ExpectAnyFileDialog(path(u"people.txt"_s));
        WhenDialogOpens(u"Import"_s, [](QDialog &dialog) {
            Control<QPushButton>(dialog, "cmdBrowse").click();
            Control<QPushButton>(dialog, "cmdOK").click();
        });
        trigger("mnuContactsImport");
        QTest::keyClicks(Control<QTreeView>(*book, "lvwGroups").viewport()->findChild<QLineEdit *>(), u"Friends\r"_s);
        const QByteArray rest =
            "\"Bob\",44,\"07700 900999\",\"Friends\"\r\n\"Zo\xEB\",33,\"612345678\",\"Friends\"\r\n";
        const QByteArray imported =
            "\"Ann Lee\",44,\"7700900123\",\"Friends\"\r\n" + rest + "\"Annie\",44,\"07700-900123\",\"Friends\"\r\n";
        QTRY_COMPARE(ReadBytes(p.phoneBook), imported);

        compose->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(compose));
        p.prompts.ExpectAnyFileDialog(path(u"results.csv"_s));
        WhenDialogOpens(u"SendResults"_s, [](QDialog &dialog) { Control<QPushButton>(dialog, "cmdSave").click(); });
        QCOMPARE(Send(u"Friends"_s, u"Hi"_s), u"Message failed. 7 messages remaining"_s);

        p.prompts.ExpectAnyFileDialog(path(u"backup.kpb"_s));
        trigger("mnuBackup");
        WhenDialogOpens(u"DeleteMany"_s, [](QDialog &dialog) {
            QTest::keyClicks(dialog.focusWidget(), u"07700900123"_s);
            Control<QPushButton>(dialog, "cmdOK").click();
        });
        trigger("mnuExclude");
        QCOMPARE(ReadBytes(p.phoneBook), rest);
        p.prompts.ExpectFileDialog({.title = u"Select Backup File to Restore"_s,
                                    .filters = {{u"Brevio Phonebook"_s, {u"*.kpb"_s, u"*.kpb.*.bak"_s}}},
                                    .initialPath = path(u"backup.kpb"_s),
                                    .offeredFolder = QFileInfo(p.phoneBook).path()},
                                   path(u"backup.kpb"_s));
        trigger("mnuRestore");
        QVERIFY(compose->close());
        QCOMPARE(p.Taken(),
                 (QStringList{u"447700900123Ann Lee|Hi"_s, u"33612345678Zoë|Hi"_s, u"447700900123Annie|Hi"_s}));
        QCOMPARE(ReadBytes(path(u"results.csv"_s)).count("\"Sent\""), 3);
        QCOMPARE(ReadBytes(path(u"people.txt"_s)), source);
        // The first file of the day that was not empty is from before the group got its name.
        const QMap<QString, QByteArray> expected = {
            {{}, imported},
            {u".20041115.bak"_s, QByteArray(imported).replace("Friends", "Imported")},
            {u".20041115-103000.bak"_s, rest}};
        QMap<QString, QByteArray> files;
        for (QDirIterator it(QFileInfo(p.phoneBook).path(), {u"*.kpb*"_s}, QDir::Files | QDir::Hidden); it.hasNext();) {
            const QString found = it.next();
            files.insert(found.sliced(p.phoneBook.size()), ReadBytes(found));
        }
        QCOMPARE(files, expected);
    }
};

QTEST_MAIN(TestProgram)
#include "test_program.moc"
