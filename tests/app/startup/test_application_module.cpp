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

    /// A program that has a phone book but no country table.
    struct Fixture : Profile
    {
        Fixture() { WriteBytes(file, lines); }

        bool Start(ApplicationModule &module, const QString &box, PromptIcon icon)
        {
            prompts.ExpectBox(box, icon);
            const bool hasStarted = module.Main();
            prompts.VerifyAllCame();
            return hasStarted && FindWindow(u"Compose"_s)->isVisible();
        }

        const QByteArray lines = "\"Ann\",44,\"07700900123\"\r\nnonsense\r\n";
        const QString file = LxPhoneBook::DefaultFileName();
        DirectPostRunner runner;
        const ApplicationModule::Seams seams{prompts, shell, clock, internetSettings, runner};
        const QString noCountries = u"Cannot open countries.csv for reading.\r\n\r\nPlease re-install Brevio."_s;
    };

private slots:
    void secondCopyIsRefused()
    {
        Fixture f;
        auto first = std::make_unique<ApplicationModule>(f.seams, f.home.path(), QStringList());
        QVERIFY(f.Start(*first, f.noCountries, PromptIcon::Critical));
        ApplicationModule second(f.seams, f.home.path(), {});
        QVERIFY(!f.Start(second,
                         u"Brevio is already running.\r\n\r\nPlease select Brevio from the task bar to continue."_s,
                         PromptIcon::Information));
        first.reset();
        QVERIFY(f.Start(second, f.noCountries, PromptIcon::Critical));
    }

    void phoneBookThatCannotBeOpenedIsTold()
    {
        Fixture f;
        QVERIFY(WriteBytes(f.home.filePath(u"countries.csv"_s), "Code,Country,Guaranteed\r\n44,United Kingdom,1\r\n"));
        FileLock lock;
        lock.Acquire(f.file);
        ApplicationModule module(f.seams, f.home.path(), {});
        const QString box = u"Problem reading from the phone book: The file is in use by another program."
                            "\r\n\r\nThe phonebook file is: \r\n\r\n"_s;
        QVERIFY(f.Start(module, box + f.file, PromptIcon::Exclamation));
    }

    void phoneBookSurvivesAMissingCountryTable()
    {
        Fixture f;
        ApplicationModule module(f.seams, f.home.path(), {});
        QVERIFY(f.Start(module, f.noCountries, PromptIcon::Critical));
        QWidget *phoneBook = FindWindow(u"PhoneBook"_s);
        phoneBook->show();
        phoneBook->close();
        QCOMPARE(ReadBytes(f.file), QByteArray());
        QCOMPARE(ReadBytes(f.file + u".20041115-103000.bak"_s), f.lines);
    }
};

QTEST_MAIN(TestApplicationModule)
#include "test_application_module.moc"
