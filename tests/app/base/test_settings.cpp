#include "FakePrompts.h"
#include "Files.h"
#include "Settings.h"
#include "TextTable.h"
#include "UpgradeSettings.h"
#include "Version.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class TestSettings final : public QObject
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    FakePrompts m_prompts;
    QString m_path;

    void ExpectFailure()
    {
        m_prompts.ExpectBoxBeginning(u"Your settings could not be saved: "_s, PromptIcon::Exclamation);
    }
    /// JSON with apostrophes for its quotes.
    bool WriteStore(const QString &json) { return WriteBytes(m_path, QString(json).replace(u'\'', u'"').toUtf8()); }

private slots:
    void init()
    {
        m_folder.emplace();
        m_path = m_folder->filePath(u"Brevio.json"_s);
    }
    void cleanup() { m_prompts.VerifyAllCame(); }

    void ReadsWhatWasWritten()
    {
        const QString text = u"£5 \"quoted\" \\ \r\n 😀"_s;
        const QString path = m_folder->filePath(u"new/folder/Brevio.json"_s);
        {
            Settings settings(path, m_prompts);
            settings.Save(u"Compose"_s, u"Text"_s, text);
            settings.Save(u"Compose"_s, u"Empty"_s, {});
            settings.Save(u"Old"_s, u"Key"_s, u"gone"_s);
            settings.DeleteSection(u"Old"_s);
            settings.DeleteSection(u"Never"_s);
            QCOMPARE(settings.Get(u"Compose"_s, u"Text"_s), text);
            // No turn of the event loop comes, so the store saves at its end.
        }
        const Settings settings(path, m_prompts);
        QCOMPARE(settings.Get(u"Compose"_s, u"Text"_s), text);
        QCOMPARE(settings.Get(u"Compose"_s, u"Empty"_s, u"default"_s), u""_s);
        QCOMPARE(settings.Get(u"Compose"_s, u"Missing"_s, u"default"_s), u"default"_s);
        QVERIFY(settings.IsSectionEmpty(u"Old"_s));
        QVERIFY(!settings.IsSectionEmpty(u"Compose"_s));
    }

    void SavesAtTheEndOfTheTurn()
    {
        Settings settings(m_path, m_prompts);
        for (const auto &key : {u"1"_s, u"2"_s, u"3"_s})
            settings.Save(u"Burst"_s, key, u"x"_s);
        QVERIFY(!QFile::exists(m_path));
        QCoreApplication::processEvents();
        QCOMPARE(Settings(m_path, m_prompts).Get(u"Burst"_s, u"3"_s), u"x"_s);
        // What changes nothing saves nothing.
        QVERIFY(QFile::remove(m_path));
        settings.Save(u"Burst"_s, u"1"_s, u"x"_s);
        settings.DeleteSection(u"Missing"_s);
        QCoreApplication::processEvents();
        QVERIFY(settings.Flush());
        QVERIFY(!QFile::exists(m_path));
    }

    void OnlyTheOwnerMayReadTheFile()
    {
        Settings settings(m_path, m_prompts);
        for (const auto &password : {u"new file"_s, u"wider file"_s}) {
            settings.Save(u"Account"_s, u"Password"_s, password);
            QVERIFY(settings.Flush());
            struct stat status = {};
            QCOMPARE(::stat(QFile::encodeName(m_path).constData(), &status), 0);
            QCOMPARE(status.st_mode & 07777U, 0600U);
            QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), 0666), 0);
        }
    }

    void KeepsFilesThatCannotBeParsed()
    {
        for (const auto &bytes : {""_ba, "{\"Account\": {\"Username\": \"a"_ba, "[1]"_ba}) {
            QVERIFY(WriteBytes(m_path, bytes));
            Settings settings(m_path, m_prompts);
            QVERIFY(settings.IsSectionEmpty(u"Account"_s));
            settings.Save(u"Account"_s, u"Username"_s, u"ann"_s);
            QVERIFY(settings.Flush());
            QCOMPARE(Settings(m_path, m_prompts).Get(u"Account"_s, u"Username"_s), u"ann"_s);
        }
        QVERIFY(QFile::exists(m_path + u".bad"_s));
        QCOMPARE(ReadBytes(m_path + u".bad"_s), "");
        QCOMPARE(ReadBytes(m_path + u".2.bad"_s), "{\"Account\": {\"Username\": \"a");
        QCOMPARE(ReadBytes(m_path + u".3.bad"_s), "[1]");
    }

    void LeavesAnUnreadableFileAlone()
    {
        const WithoutRoot withoutRoot(m_folder->path());
        QVERIFY(!withoutRoot.Failed());
        QVERIFY(WriteBytes(m_path, "secret"));
        QVERIFY(QFile::setPermissions(m_path, QFile::WriteOwner));
        Settings settings(m_path, m_prompts);
        settings.Save(u"Account"_s, u"Username"_s, u"ann"_s);
        QCOMPARE(settings.Get(u"Account"_s, u"Username"_s), u"ann"_s);
        ExpectFailure();
        QVERIFY(!settings.Flush());
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner));
        QCOMPARE(ReadBytes(m_path), "secret");
    }

    void ReadsOtherValuesAsText_data()
    {
        AddTextTable({{u"1200000", u"1200000"},
                      {u"-1.5", u"-1.5"},
                      {u"true", u"True"},
                      {u"false", u"False"},
                      {u"null", u"default"},
                      {u"['a']", u"default"},
                      {u"{'a': 'b'}", u"default"}});
    }
    void ReadsOtherValuesAsText()
    {
        QFETCH(const QString, in);
        QVERIFY(WriteStore(u"{'No section': 1, 'S': {'Key': "_s + in + u"}}"_s));
        QTEST(Settings(m_path, m_prompts).Get(u"S"_s, u"Key"_s, u"default"_s), "out");
    }

    void TellsAFailedSaveOnce()
    {
        const QString folder = m_folder->filePath(u"folder"_s);
        Settings settings(folder + u"/Brevio.json"_s, m_prompts);
        const auto canSave = [&settings](const QString &value) {
            settings.Save(u"S"_s, u"Key"_s, value);
            return settings.Flush();
        };
        for (int round = 0; round < 2; ++round) {
            // No file can be made below a file.
            QVERIFY(WriteBytes(folder, {}));
            ExpectFailure();
            QVERIFY(!canSave(u"1"_s));
            m_prompts.VerifyAllCame();
            QVERIFY(!canSave(u"2"_s));
            QVERIFY(QFile::remove(folder));
            // Nothing new was set, but the failed write still waits.
            QVERIFY(settings.Flush());
            QCOMPARE(Settings(folder + u"/Brevio.json"_s, m_prompts).Get(u"S"_s, u"Key"_s), u"2"_s);
            QVERIFY(QDir(folder).removeRecursively());
        }
    }

    void Upgrades_data()
    {
        AddTextTable({{u"", u"History PhoneBook"},
                      {u"'Defaults': {'a': 'b'},", u"Defaults"},
                      {u"'Defaults': {'a': 'b'}, 'Version': {'Major': '1'},", u"Defaults History PhoneBook"},
                      {u"'Settings': {'a': 'b'}, 'Version': {'Major': '1', 'Minor': '5'},", u""},
                      {u"'Version': {'Major': '1', 'Minor': '1'},", u"History PhoneBook"},
                      {u"'Version': {'Major': 'one'},", u""},
                      {u"'Version': {'Minor': ''},", u""},
                      {u"'Version': {'Minor': '32768'},", u""}});
    }
    void Upgrades()
    {
        QFETCH(const QString, in);
        QVERIFY(WriteStore(u"{ "_s + in + u"'History': {'a': 'b'}, 'PhoneBook': {'a': 'b'}}"_s));
        Settings settings(m_path, m_prompts);
        UpgradeSettings(settings);
        QStringList kept;
        for (const auto &section : {u"Defaults"_s, u"History"_s, u"PhoneBook"_s, u"Settings"_s}) {
            if (!settings.IsSectionEmpty(section))
                kept += section;
        }
        QTEST(kept.join(u' '), "out");
        QCOMPARE(settings.Get(u"Version"_s, u"Major"_s), QString::number(ProgramVersion().major));
        QCOMPARE(settings.Get(u"Version"_s, u"Minor"_s), QString::number(ProgramVersion().minor));
        QCOMPARE(settings.Get(u"Version"_s, u"Revision"_s), QString::number(ProgramVersion().revision));
    }

    void NumbersVersions()
    {
        QCOMPARE(VersionNumber({2, 3, 138}), 23000138);
        QCOMPARE(VersionNumber({1, 3, 12}), 13000012);
        QCOMPARE(VersionNumber({1, 25, 0}), 12500000);
        QCOMPARE(VersionNumber({1, 2345, 67890}), 12347890);
        QCOMPARE(VersionText({2, 3, 138}), u"2.03.0138"_s);
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "test_settings.moc"
