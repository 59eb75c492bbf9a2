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
               {"SIGHUP in a dialog", SIGHUP, u"AccountDetails"_s, true},
               {"SIGINT during a post", SIGINT, u"CGIPost"_s, true},
               {"the session's end in a dialog", 0, u"AccountDetails"_s, true})
    {
        World p;
        const ScriptedPeer peer({.then = ScriptedPeer::Then::StayOpen});
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
            QVERIFY2(QApplication::activeModalWidget(), "the session may yet go on");
            QApplication::exit();
        };
        if (busyWith.isEmpty())
            QTimer::singleShot(0, &compose, end);
        else
            WhenDialogOpens(busyWith, [&](QDialog &) {
                end();
                QTest::qWait(50);
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
        QVERIFY(peer.Posts() <= 1);
    }
};

QTEST_MAIN(TestApplicationModule)
#include "test_application_module.moc"
