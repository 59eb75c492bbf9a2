#include "ApplicationModule.h"
#include "Dialogs.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Profile.h"
#include "Settings.h"
#include "SystemInternetSettings.h"
#include "WindowPostRunner.h"

#include <QComboBox>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
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

    struct Program : Profile
    {
        Program()
        {
            gateway.start(QStringLiteral(GATEWAY_PROGRAM), {u"--port"_s, u"0"_s, u"--account"_s, u"ann:secret:10"_s,
                                                            u"--fail"_s, u"447700900999"_s, u"--outbox"_s, outbox});
            QTRY_VERIFY_WITH_TIMEOUT(gateway.canReadLine(), 10000);
            const QByteArray host = gateway.readLine().trimmed().split('/').constLast();
            QVERIFY(QDir().mkpath(QFileInfo(Settings::DefaultFileName()).path()));
            QVERIFY(WriteBytes(Settings::DefaultFileName(),
                               R"({"Account":{"Username":"ann","Password":"secret"},"Gateway":{"Host":")" + host +
                                   R"("}})"));
            QVERIFY(QDir().mkpath(QFileInfo(file).path()));
            QVERIFY(WriteBytes(file, "\"Bob\",44,\"07700900999\",\"Work\"\r\n"
                                     "\"Zo\xEB\",33,\"612345678\",\"Work;Club\"\r\n"));
            QVERIFY(module.Main());
            compose = FindWindow(u"Compose"_s);
            QVERIFY(QTest::qWaitForWindowActive(compose));
        }

        ~Program()
        {
            gateway.terminate();
            gateway.waitForFinished(10000);
        }

        /// Types whom to and what, and clicks Send, which returns with the outcome.
        void Send(const QString &to, const QString &text)
        {
            auto &box = Control<QComboBox>(*compose, "cboTo");
            box.setFocus();
            QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(&box, to);
            Control<QPlainTextEdit>(*compose, "txtTextMessage").setPlainText(text);
            QTest::mouseClick(&Control<QPushButton>(*compose, "cmdSend"), Qt::LeftButton);
        }

        [[nodiscard]] QString Status() const { return Control<QStatusBar>(*compose, "StatusBar").currentMessage(); }

        /// Number, name and text of each message that the gateway took since the last call.
        [[nodiscard]] QStringList Taken()
        {
            QStringList messages;
            for (const QByteArray &line : ReadBytes(outbox).trimmed().split('\n').sliced(taken)) {
                const QJsonObject message = QJsonDocument::fromJson(line).object();
                messages +=
                    QStringList{message[u"number"].toString(), message[u"name"].toString(), message[u"text"].toString()}
                        .join(u'|');
            }
            taken += messages.size();
            return messages;
        }

        const QString outbox = home.filePath(u"outbox"_s);
        const QString file = LxPhoneBook::DefaultFileName();
        qsizetype taken = 0;
        QProcess gateway;
        SystemInternetSettings systemSettings;
        WindowPostRunner runner;
        ApplicationModule module{
            {prompts, shell, clock, systemSettings, runner}, QStringLiteral(PROGRAM_FOLDER), QStringList()};
        QWidget *compose = nullptr;
    };

private slots:
    void sendsAndKeepsEverything()
    {
        Program p;
        WhenDialogOpens(u"ContactProperties"_s, [](QDialog &dialog) {
            auto &name = Control<QLineEdit>(dialog, "txtName");
            QCOMPARE(name.text(), u"+44 7700 900123"_s);
            QTest::keyClicks(&name, u"Ann Lee"_s);
            QTest::keyClick(&name, Qt::Key_Return);
        });
        p.Send(u"+44 7700 900123"_s, u"£5 & \"more\"\n<b>"_s);
        QCOMPARE(p.Status(), u"Message sent. 9 messages remaining"_s);
        QCOMPARE(p.Taken(), QStringList{u"447700900123|Ann Lee|£5 & \"more\"\r\n<b>"_s});

        p.Send(u"an"_s, QString(161, u'x'));
        QCOMPARE(p.Status(), u"Message sent. 7 messages remaining"_s);
        QCOMPARE(p.Taken(), (QStringList{u"447700900123|Ann Lee|"_s + QString(158, u'x') + u".."_s,
                                         u"447700900123|Ann Lee|..xxx"_s}));

        QStringList rows;
        WhenDialogOpens(u"SendResults"_s, [&rows](QDialog &dialog) {
            const QAbstractItemModel &model = *Control<QTreeView>(dialog, "lvwSendResults").model();
            for (int row = 0; row < model.rowCount(); ++row)
                rows += model.index(row, 0).data().toString() + u' ' + model.index(row, 2).data().toString();
        });
        p.Send(u"work"_s, u"Hi"_s);
        QCOMPARE(rows, (QStringList{u"Not sent +447700900999"_s, u"Sent +33612345678"_s}));
        QCOMPARE(p.Status(), u"Message failed. 6 messages remaining"_s);
        QCOMPARE(p.Taken(), QStringList{u"33612345678|Zoë|Hi"_s});

        p.gateway.terminate();
        QVERIFY(p.gateway.waitForFinished(10000));
        p.prompts.ExpectBox(u"Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                            "Please check you are connected to the internet."_s,
                            PromptIcon::Exclamation);
        p.Send(u"ann"_s, u"Draft\nof two lines"_s);
        QCOMPARE(p.Status(), u"Message failed"_s);

        QVERIFY(p.compose->close());
        QCOMPARE(ReadBytes(p.file), "\"Bob\",44,\"07700900999\",\"Work\"\r\n"
                                    "\"Zo\xEB\",33,\"612345678\",\"Work;Club\"\r\n"
                                    "\"Ann Lee\",44,\"7700900123\"\r\n");
        const QFileInfo settings(Settings::DefaultFileName());
        QVERIFY(!(settings.permissions() & (QFile::ReadGroup | QFile::ReadOther)));
        QVERIFY(ReadBytes(settings.filePath()).contains("\"Text\": \"Draft\\r\\nof two lines\""));
    }
};

QTEST_MAIN(TestProgram)
#include "test_program.moc"
