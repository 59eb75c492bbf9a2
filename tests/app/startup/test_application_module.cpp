#include "ApplicationModule.h"
#include "Dialogs.h"
#include "DirectPostRunner.h"
#include "Error.h"
#include "FileLock.h"
#include "Files.h"
#include "LxCountryList.h"
#include "LxPhoneBook.h"
#include "Profile.h"
#include "Settings.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QStatusBar>

using namespace Qt::StringLiterals;

class TestApplicationModule final : public QObject
{
    Q_OBJECT

    struct Fixture : Profile
    {
        explicit Fixture(const QByteArray &phoneBook = {})
        {
            QVERIFY(
                WriteBytes(home.filePath(u"countries.csv"_s), "Code,Country,Guaranteed\r\n44,United Kingdom,1\r\n"));
            QVERIFY(QDir().mkpath(folder) && QDir().mkpath(QFileInfo(Settings::DefaultFileName()).path()));
            QVERIFY(phoneBook.isNull() || WriteBytes(file, phoneBook));
        }

        [[nodiscard]] std::unique_ptr<ApplicationModule> Module()
        {
            return std::make_unique<ApplicationModule>(
                ApplicationModule::Seams{prompts, shell, clock, internetSettings, runner}, home.path(), QStringList());
        }

        const QString file = LxPhoneBook::DefaultFileName();
        const QString folder = QFileInfo(file).path();
        DirectPostRunner runner;
    };

    static void VerifyStarted()
    {
        QWidget *compose = FindWindow(u"Compose"_s);
        QVERIFY(compose && compose->isVisible());
        QWidget *phoneBook = FindWindow(u"PhoneBook"_s);
        QVERIFY(phoneBook && !phoneBook->isVisible());
    }

private slots:
    void makesThePhoneBookAndUpgradesTheSettings()
    {
        Fixture f;
        QVERIFY(QDir(f.folder).removeRecursively());
        QVERIFY(WriteBytes(Settings::DefaultFileName(),
                           R"({"Settings": {"a": "1"}, "History": {"a": "1"}, "Account": {"Username": "ann"}})"));
        auto module = f.Module();
        QVERIFY(module->Main());
        VerifyStarted();
        QVERIFY(QFileInfo::exists(f.file));
        module.reset();
        const QByteArray settings = ReadBytes(Settings::DefaultFileName());
        QCOMPARE(QJsonDocument::fromJson(settings).toJson(QJsonDocument::Compact),
                 R"({"Account":{"Username":"ann"},"Version":{"Major":"2","Minor":"3","Revision":"138"}})");
    }

    void secondCopyIsRefused()
    {
        Fixture f;
        auto first = f.Module();
        QVERIFY(first->Main());
        QCoreApplication::processEvents();
        QVERIFY(QFile::remove(Settings::DefaultFileName()));
        auto second = f.Module();
        f.prompts.ExpectBox(u"Brevio is already running.\r\n\r\nPlease select Brevio from the task bar to continue."_s,
                            PromptIcon::Information);
        QVERIFY(!second->Main());
        QVERIFY(!QFile::exists(Settings::DefaultFileName()));
        VerifyStarted();
        first.reset();
        QVERIFY(second->Main());
    }

    void phoneBookThatCannotBeOpenedIsTold()
    {
        Fixture f("\"Ann\",44,\"07700900123\"\r\n");
        FileLock lock;
        lock.Acquire(f.file);
        QString reason;
        try {
            LxPhoneBook(LxCountryList(), f.clock).OpenPhoneBook(f.file);
        } catch (const Error &error) {
            reason = error.Description();
        }
        QVERIFY(!reason.isEmpty());
        f.prompts.ExpectBox(u"Problem reading from the phone book: "_s + reason +
                                u"\r\n\r\nThe phonebook file is: \r\n\r\n"_s + f.file,
                            PromptIcon::Exclamation);
        auto module = f.Module();
        QVERIFY(module->Main());
        f.prompts.VerifyAllCame();
        VerifyStarted();
    }

    void phoneBookSurvivesAMissingCountryTable()
    {
        const QByteArray lines = "\"Ann\",44,\"07700900123\"\r\nnonsense\r\n";
        Fixture f(lines);
        QVERIFY(QFile::remove(f.home.filePath(u"countries.csv"_s)));
        f.prompts.ExpectBox(u"Cannot open countries.csv for reading.\r\n\r\nPlease re-install Brevio."_s,
                            PromptIcon::Critical);
        auto module = f.Module();
        QVERIFY(module->Main());
        VerifyStarted();
        QWidget *phoneBook = FindWindow(u"PhoneBook"_s);
        phoneBook->show();
        phoneBook->close();
        QCOMPARE(ReadBytes(f.file), QByteArray());
        const QStringList kept = QDir(f.folder).entryList({u"*.bak"_s});
        QCOMPARE(kept, QStringList{QFileInfo(f.file).fileName() + u".20041115-103000.bak"_s});
        QCOMPARE(ReadBytes(f.folder + u'/' + kept.first()), lines);
        phoneBook->show();
        QCOMPARE(Control<QStatusBar>(*phoneBook, "sbStatusBar").currentMessage(),
                 u"What could not be read was kept in "_s + kept.first());
    }
};

QTEST_MAIN(TestApplicationModule)
#include "test_application_module.moc"
