#include "ApplicationModule.h"
#include "Dialogs.h"
#include "FileLock.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Profile.h"

using namespace Qt::StringLiterals;

class TestApplicationModule final : public QObject
{
    Q_OBJECT

private slots:
    void theProgramStartsOnceWhateverCannotBeRead()
    {
        Profile p;
        DirectPostRunner runner;
        const ApplicationModule::Seams seams{p.prompts, p.shell, p.clock, p.internetSettings, runner};
        const auto noCountries = u"Cannot open countries.csv for reading.\r\n\r\nPlease re-install Brevio."_s;
        p.prompts.ExpectBox(noCountries, PromptIcon::Critical);
        auto first = std::make_unique<ApplicationModule>(seams, p.home.path(), QStringList());
        QVERIFY(first->Main());
        p.prompts.VerifyAllCame();

        p.prompts.ExpectBox(u"Brevio is already running.\r\n\r\nPlease select Brevio from the task bar to continue."_s,
                            PromptIcon::Information);
        ApplicationModule second(seams, p.home.path(), {});
        QVERIFY(!second.Main());
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
        QVERIFY(second.Main());
        QVERIFY(FindWindow(u"Compose"_s)->isVisible());
    }

    void withoutAFolderForItsFilesItEndsAtOnce_data()
    {
        QTest::addColumn<QByteArray>("missing");
        QTest::newRow("data") << "XDG_DATA_HOME"_ba;
        QTest::newRow("settings") << "XDG_CONFIG_HOME"_ba;
    }
    void withoutAFolderForItsFilesItEndsAtOnce()
    {
        QFETCH(const QByteArray, missing);
        Profile p;
        const QByteArray home = qgetenv("HOME");
        qunsetenv("HOME");
        qunsetenv(missing.constData());
        DirectPostRunner runner;
        ApplicationModule module({p.prompts, p.shell, p.clock, p.internetSettings, runner}, p.home.path(), {});
        p.prompts.ExpectBoxBeginning(u"Brevio cannot start, as there is no folder for your phone book"_s,
                                     PromptIcon::Critical);
        const bool isStarted = module.Main();
        qputenv("HOME", home);
        QVERIFY(!isStarted && !FindWindow(u"Compose"_s));
    }
};

QTEST_MAIN(TestApplicationModule)
#include "test_application_module.moc"
