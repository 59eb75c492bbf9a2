#include "ApplicationModule.h"
#include "Dialogs.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Profile.h"
#include "Settings.h"
#include "SystemInternetSettings.h"
#include "WindowPostRunner.h"

#include <QComboBox>
#include <QJsonDocument>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QStatusBar>
#include <QTreeView>

using namespace Qt::StringLiterals;

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
    void sendsAndKeepsEverything()
    {
        Profile p;
        const QString outbox = p.home.filePath(u"outbox"_s);
        QProcess gateway;
        gateway.start(QStringLiteral(GATEWAY_PROGRAM), {u"--port"_s, u"0"_s, u"--account"_s, u"ann:secret:10"_s,
                                                        u"--fail"_s, u"447700900999"_s, u"--outbox"_s, outbox});
        QTRY_VERIFY_WITH_TIMEOUT(gateway.canReadLine(), 10000);
        const QByteArray host = gateway.readLine().trimmed().split('/').constLast();
        const QString settings = Settings::DefaultFileName();
        QVERIFY(WriteBytes(settings, R"({"Account":{"Username":"ann","Password":"secret"},"Gateway":{"Host":")" + host +
                                         R"("}})"));
        const QString phoneBook = LxPhoneBook::DefaultFileName();
        const QByteArray lines = "\"Bob\",44,\"07700900999\",\"Work\"\r\n\"Zo\xEB\",33,\"612345678\",\"Work;Club\"\r\n";
        QVERIFY(WriteBytes(phoneBook, lines));
        SystemInternetSettings systemSettings;
        WindowPostRunner runner;
        ApplicationModule program({p.prompts, p.shell, p.clock, systemSettings, runner}, QStringLiteral(PROGRAM_FOLDER),
                                  {});
        QVERIFY(program.Main());
        QWidget *compose = FindWindow(u"Compose"_s);
        QVERIFY(QTest::qWaitForWindowActive(compose));

        WhenDialogOpens(u"ContactProperties"_s, [](QDialog &dialog) {
            QTest::keyClicks(&Control<QLineEdit>(dialog, "txtName"), u"Ann Lee\r"_s);
        });
        QCOMPARE(Send(u"+44 7700 900123"_s, u"£5\n<b>"_s), u"Message sent. 9 messages remaining"_s);
        QCOMPARE(Send(u"an"_s, QString(161, u'x')), u"Message sent. 7 messages remaining"_s);
        QStringList rows;
        WhenDialogOpens(u"SendResults"_s, [&rows](QDialog &dialog) {
            const QAbstractItemModel &model = *Control<QTreeView>(dialog, "lvwSendResults").model();
            for (int row = 0; row < model.rowCount(); ++row)
                rows += model.index(row, 0).data().toString() + u' ' + model.index(row, 2).data().toString();
        });
        QCOMPARE(Send(u"work"_s, u"Hi"_s), u"Message failed. 6 messages remaining"_s);
        QCOMPARE(rows, (QStringList{u"Not sent +447700900999"_s, u"Sent +33612345678"_s}));
        QStringList taken;
        for (const QByteArray &line : ReadBytes(outbox).trimmed().split('\n')) {
            const QJsonDocument message = QJsonDocument::fromJson(line);
            taken += message[u"number"].toString() + message[u"name"].toString() + u'|' + message[u"text"].toString();
        }
        const QString ann = u"447700900123Ann Lee|"_s;
        QCOMPARE(taken, (QStringList{ann + u"£5\r\n<b>"_s, ann + QString(158, u'x') + u".."_s, ann + u"..xxx"_s,
                                     u"33612345678Zoë|Hi"_s}));

        gateway.terminate();
        QVERIFY(gateway.waitForFinished(10000));
        p.prompts.ExpectBox(u"Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                            "Please check you are connected to the internet."_s,
                            PromptIcon::Exclamation);
        QCOMPARE(Send(u"ann"_s, u"Draft\nof two lines"_s), u"Message failed"_s);
        QVERIFY(compose->close());
        QCOMPARE(ReadBytes(phoneBook), lines + "\"Ann Lee\",44,\"7700900123\"\r\n");
        QVERIFY(ReadBytes(settings).contains("\"Text\": \"Draft\\r\\nof two lines\""));
    }
};

QTEST_MAIN(TestProgram)
#include "test_program.moc"
