#include "ApplicationModule.h"
#include "Dialogs.h"
#include "FileLock.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Profile.h"
#include "Rows.h"
#include "ScriptedPeer.h"
#include "Settings.h"
#include "WindowPostRunner.h"

#include <QAction>
#include <QComboBox>
#include <QJsonDocument>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeView>

#include <csignal>

using namespace Qt::StringLiterals;

/// What the program runs on: a machine, its user, and posts in their windows.
struct World : Profile
{
    [[nodiscard]] auto Program()
    {
        const ApplicationModule::Seams seams{prompts, shell, clock, internetSettings, runner};
        return std::make_unique<ApplicationModule>(seams, home.path(), QStringList());
    }
    WindowPostRunner runner;
};

class TestApplicationModule final : public QObject
{
    Q_OBJECT

private slots:
    void theProgramStartsOnceWhateverCannotBeRead()
    {
        World p;
        const auto noCountries = u"Cannot open countries.csv for reading.\r\n\r\nPlease re-install Brevio."_s;
        p.prompts.ExpectBox(noCountries, PromptIcon::Critical);
        auto first = p.Program();
        QVERIFY(first->Main());
        p.prompts.VerifyAllCame();

        p.prompts.ExpectBox(u"Brevio is already running.\r\n\r\nPlease select Brevio from the task bar to continue."_s,
                            PromptIcon::Information);
        QVERIFY(!p.Program()->Main());
        p.prompts.VerifyAllCame();

        first.reset();
        const QString file = LxPhoneBook::DefaultFileName();
        QVERIFY(WriteBytes(file, {}));
        FileLock lock;
        lock.Acquire(file);
        p.prompts.ExpectBox(noCountries, PromptIcon::Critical);
        p.prompts.ExpectBox(u"Problem reading from the phone book: The file is in use by another program."
                            "\r\n\r\nThe phonebook file is: \r\n\r\n"_s +
                                file,
                            PromptIcon::Exclamation);
        first = p.Program();
        QVERIFY(first->Main());
        QVERIFY(FindWindow(u"Compose"_s)->isVisible());
    }

    TABLE_TEST(withoutAFolderForItsFilesItEndsAtOnce, (const QByteArray &missing), {"data", "XDG_DATA_HOME"},
               {"settings", "XDG_CONFIG_HOME"})
    {
        World p;
        const QByteArray home = qgetenv("HOME");
        qunsetenv("HOME");
        qunsetenv(missing.constData());
        const auto module = p.Program();
        p.prompts.ExpectBoxBeginning(u"Brevio cannot start, as there is no folder for your phone book"_s,
                                     PromptIcon::Critical);
        const bool isStarted = module->Main();
        qputenv("HOME", home);
        QVERIFY(!isStarted && !FindWindow(u"Compose"_s));
    }

    TABLE_TEST(everyEndStoresAll, (int signal, const QString &busyWith, bool canSave),
               {"SIGTERM at rest", SIGTERM, u""_s, true},
               {"SIGTERM and no folder for the phone book", SIGTERM, u""_s, false},
               {"SIGHUP in a dialog", SIGHUP, u"SendResults"_s, true},
               {"SIGINT during a post", SIGINT, u"CGIPost"_s, true},
               {"the session's end in a dialog", 0, u"AccountDetails"_s, true})
    {
        World p;
        const bool hasReply = busyWith == "SendResults"_L1;
        const ScriptedPeer peer({.pieces = {hasReply ? ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG></MSG>") : QByteArray()},
                                 .then = ScriptedPeer::Then::StayOpen});
        WriteBytes(Settings::DefaultFileName(),
                   R"({"Account":{"Username":"ann"},"Gateway":{"Host":")" + peer.Address().toUtf8() + R"("}})");
        const QByteArray ann = "\"Ann\",44,\"07700900123\"\r\n";
        WriteBytes(LxPhoneBook::DefaultFileName(), ann + "\"Carl\",44,\"07700900999\"\r\n");
        WriteBytes(p.home.filePath(u"countries.csv"_s), "Code,Country,Guaranteed\r\n44,United Kingdom,1\r\n");
        auto module = p.Program();
        QVERIFY(module->Main());
        QWidget &compose = *FindWindow(u"Compose"_s);
        compose.move(11, 22);
        QVERIFY(QTest::qWaitForWindowActive(&compose));
        Control<QComboBox>(compose, "cboTo").setEditText(u"Ann"_s);
        Control<QPushButton>(compose, "cmdPhoneBook").click();
        QWidget &phoneBook = *FindWindow(u"PhoneBook"_s);
        phoneBook.resize(777, 555);
        // A name that is just being edited.
        auto &contacts = Control<QTreeView>(phoneBook, "lvwContacts");
        contacts.setCurrentIndex(contacts.model()->index(1, 0));
        contacts.edit(contacts.currentIndex());
        contacts.viewport()->findChild<QLineEdit *>()->setText(u"Bob"_s);
        Control<QPlainTextEdit>(compose, "txtTextMessage").setPlainText(u"unsent"_s);
        QVERIFY(canSave || QDir(QFileInfo(LxPhoneBook::DefaultFileName()).path()).removeRecursively());
        bool isStored = false;
        const auto end = [&] {
            if (signal != 0) {
                ::raise(signal);
                return;
            }
            // Nobody looks at the manager.
            emit qApp->commitDataRequest(*reinterpret_cast<QSessionManager *>(&p));
            isStored = ReadBytes(Settings::DefaultFileName()).contains("\"Text\": \"unsent\"");
            // The session may yet go on, with its questions.
            p.prompts.ExpectBox(u"Please enter a valid email address, or leave the Reply-To Email box blank."_s,
                                PromptIcon::Exclamation, PromptAnswer::Ok, u"Reply-To Email"_s);
            QWidget &account = *QApplication::activeModalWidget();
            Control<QLineEdit>(account, "txtEmail").setText(u"nobody"_s);
            Control<QPushButton>(account, "cmdOK").click();
            QApplication::exit();
        };
        if (busyWith.isEmpty())
            QTimer::singleShot(0, &compose, end);
        else
            WhenDialogOpens(busyWith, [&](QDialog &dialog) {
                if (hasReply)
                    dialog.resize(655, 444);
                end();
                QTest::qWait(50);
                QVERIFY2(!hasReply || !dialog.isVisible(), "it was not closed as a user would, and so stored nothing");
            });
        if (busyWith == "AccountDetails"_L1)
            QTimer::singleShot(0, &compose, [&] { Control<QAction>(compose, "mnuAccount").trigger(); });
        else if (!busyWith.isEmpty())
            QTimer::singleShot(0, &compose, [&] { Control<QPushButton>(compose, "cmdSend").click(); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(isStored || signal != 0);
        module.reset();
        const QJsonDocument settings = QJsonDocument::fromJson(ReadBytes(Settings::DefaultFileName()));
        QCOMPARE(settings[u"Compose"_s][u"Text"_s].toString(), u"unsent"_s);
        QCOMPARE(settings[u"Compose"_s][u"Left"_s].toString(), u"165"_s);
        QCOMPARE(settings[u"PhoneBook"_s][u"Width"_s].toString(), u"11655"_s);
        QCOMPARE(ReadBytes(LxPhoneBook::DefaultFileName()),
                 !canSave ? QByteArray() : ann + "\"Bob\",44,\"07700900999\"\r\n");
        QCOMPARE(settings[u"SendResults"_s][u"Width"_s].toString(), hasReply ? u"9825"_s : u""_s);
        QVERIFY(peer.Posts() <= 1);
    }

    void signalDuringTheStartEndsIt()
    {
        /// A user who ends the program while a box of the start is open.
        class ImpatientPrompts final : public Prompts
        {
            PromptAnswer ShowMessageBox(const MessageBoxRequest &, QObject *) override
            {
                ::raise(SIGTERM);
                QTest::qWait(50);
                return PromptAnswer::Ok;
            }
            QString AskOpenFile(const FileDialogRequest &, QObject *) override { return {}; }
            QString AskSaveFile(const FileDialogRequest &, QObject *) override { return {}; }
        };
        Profile p;
        ImpatientPrompts prompts;
        DirectPostRunner runner;
        ApplicationModule module({prompts, p.shell, p.clock, p.internetSettings, runner}, p.home.path(), {});
        QVERIFY(!module.Main());
    }
};

QTEST_MAIN(TestApplicationModule)
#include "test_application_module.moc"
