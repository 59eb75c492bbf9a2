#include "FakePrompts.h"
#include "FileSizeLimit.h"
#include "Files.h"
#include "Rows.h"
#include "Settings.h"
#include "UpgradeSettings.h"
#include "Version.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>

using namespace Qt::StringLiterals;

class TestSettings final : public QObject
{
    Q_OBJECT

    std::optional<QTemporaryDir> m_folder;
    FakePrompts m_prompts;
    QString m_path;

    void ExpectFailure()
    {
        m_prompts.ExpectBoxBeginning(u"Your settings could not be saved: "_s, PromptIcon::Exclamation);
    }
    static bool CanSave(Settings &settings, const QString &value)
    {
        settings.Save(u"S"_s, u"Key"_s, value);
        return settings.Flush();
    }
    [[nodiscard]] QString StoredValue() { return Settings(m_path, m_prompts).Get(u"S"_s, u"Key"_s); }

private slots:
    void init()
    {
        m_folder.emplace();
        m_path = m_folder->filePath(u"Brevio.json"_s);
    }
    void cleanup() { m_prompts.VerifyAllCame(); }

    void settingsAreSavedAtTheEndOfTheTurnForTheirOwnerAlone()
    {
        constexpr auto kOwn = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        const QString text = u"£5 \"quoted\" \\ \r\n 😀"_s;
        m_path = m_folder->filePath(u"new/folder/Brevio.json"_s);
        std::optional<Settings> settings(std::in_place, m_path, m_prompts);
        settings->Save(u"S"_s, u"Empty"_s, {});
        settings->Save(u"Old"_s, u"Key"_s, u"gone later"_s);
        QVERIFY(!QFile::exists(m_path));
        QCoreApplication::processEvents();
        settings->Save(u"S"_s, u"Text"_s, text);
        QCoreApplication::processEvents();
        const Settings read(m_path, m_prompts);
        QCOMPARE(read.Get(u"S"_s, u"Text"_s), text);
        QCOMPARE(read.Get(u"S"_s, u"Empty"_s, u"default"_s), u""_s);
        QCOMPARE(QFile::permissions(m_path), kOwn);
        QVERIFY(QFile::setPermissions(m_path, kOwn | QFile::ReadGroup | QFile::ReadOther));
        settings->DeleteSection(u"Old"_s);
        // No further turn of the event loop comes, so the store saves at its end.
        settings.reset();
        QVERIFY(Settings(m_path, m_prompts).IsSectionEmpty(u"Old"_s));
        QCOMPARE(QFile::permissions(m_path), kOwn);
    }

    void everyFileThatCannotBeParsedIsKept()
    {
        for (const auto &bytes : {"{\"S\": {\"Key\": \"a"_ba, "[1]"_ba}) {
            QVERIFY(WriteBytes(m_path, bytes));
            Settings settings(m_path, m_prompts);
            QVERIFY2(CanSave(settings, u"ann"_s) && StoredValue() == u"ann", bytes);
        }
        QCOMPARE(ReadBytes(m_path + u".bad"_s), "{\"S\": {\"Key\": \"a");
        QCOMPARE(ReadBytes(m_path + u".2.bad"_s), "[1]");
    }

    void anUnreadableFileIsLeftAlone()
    {
        const WithoutRoot withoutRoot;
        QVERIFY(WriteBytes(m_path, "secret"));
        QVERIFY(QFile::setPermissions(m_path, QFile::WriteOwner));
        Settings settings(m_path, m_prompts);
        ExpectFailure();
        QVERIFY(!CanSave(settings, u"ann"_s));
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner));
        QCOMPARE(ReadBytes(m_path), "secret");
    }

    TABLE_TEST(aFailedSaveKeepsTheOldFileAndIsToldOnce, (int size, rlim_t limit), {"what waits in a buffer", 1000, 999},
               {"what goes straight to the disk", 100'000, 99'999})
    {
        Settings settings(m_path, m_prompts);
        const QString text(size, u'n');
        QVERIFY(CanSave(settings, u"old"_s));
        std::optional<FileSizeLimit> fullDisk(limit);
        ExpectFailure();
        QVERIFY(!CanSave(settings, text + u'1') && !CanSave(settings, text));
        fullDisk.reset();
        QCOMPARE(StoredValue(), u"old"_s);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(u"Brevio.json"_s));
        // Nothing new was set, but the failed write still waits.
        QVERIFY(settings.Flush());
        QCOMPARE(StoredValue(), text);
    }

    TABLE_TEST(upgradesDropSectionsOfOtherVersions, (const QString &sections, const QString &kept),
               u" -> now History PhoneBook", u"'Defaults': {'a': 'b'}, -> now Defaults",
               u"'Defaults': {'a': 'b'}, 'Version': {'Major': '1'}, -> now Defaults History PhoneBook",
               u"'Settings': {'a': 'b'}, 'Version': {'Minor': '5'}, -> now", u"'Version': {'Minor': '32768'}, -> now")
    {
        QString json = u"{"_s + sections + u"'History': {'a': 'b'}, 'PhoneBook': {'a': 'b'}}"_s;
        QVERIFY(WriteBytes(m_path, json.replace(u'\'', u'"').toUtf8()));
        Settings settings(m_path, m_prompts);
        UpgradeSettings(settings);
        QString names = settings.Get(u"Version"_s, u"Minor"_s);
        for (const auto &section : {u"Defaults"_s, u"History"_s, u"PhoneBook"_s, u"Settings"_s})
            names += settings.IsSectionEmpty(section) ? QString() : u' ' + section;
        QCOMPARE(names.replace(QString::number(ProgramVersion().minor), u"now"_s), kept);
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "test_settings.moc"
