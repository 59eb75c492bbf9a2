#include "Error.h"
#include "FakePrompts.h"
#include "Files.h"
#include "Settings.h"
#include "Utils.h"
#include "VendorSite.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QScopeGuard>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// "number source: description" of what the call raises.
template <typename Call>
QString RaisedBy(Call call)
{
    try {
        call();
    } catch (const Error &error) {
        return u"%1 %2: %3"_s.arg(error.Number()).arg(error.Source(), error.Description());
    }
    return u"nothing"_s;
}

} // namespace

class TestUtils final : public QObject
{
    Q_OBJECT

private slots:
    void FindsFolders()
    {
        const auto restore = qScopeGuard([old = qgetenv("XDG_DATA_HOME")] { qputenv("XDG_DATA_HOME", old); });
        qputenv("XDG_DATA_HOME", "/somewhere/data/");
        QCOMPARE(Utils::AppDataFolder(), u"/somewhere/data"_s);
        qunsetenv("XDG_DATA_HOME");
        QCOMPARE(Utils::AppDataFolder(), QDir::homePath() + u"/.local/share"_s);
    }

    void TakesFileNamesFromPaths()
    {
        QCOMPARE(Utils::FileNameOfPath(u"C:\\a/b\\c.csv"_s), u"c.csv"_s);
        QCOMPARE(Utils::FileNameOfPath(u"a\\b/c.csv"_s), u"c.csv"_s);
        QCOMPARE(Utils::FileNameOfPath(u"/a/"_s), u""_s);
        QCOMPARE(Utils::FileNameOfPath(u"b.csv"_s), u"b.csv"_s);
    }

    void MakesTheFoldersOfAPath()
    {
        const QTemporaryDir folder;
        const QString current = QDir::currentPath();
        for (const auto &path : {u"A/B/file.kpb"_s, u"A/B/"_s, u"C/"_s})
            QVERIFY(Utils::EnsureFolderExists(folder.filePath(path)));
        QVERIFY(QFileInfo(folder.filePath(u"C"_s)).isDir());
        QVERIFY(QFileInfo(folder.filePath(u"A/B"_s)).isDir());
        QVERIFY(!QFile::exists(folder.filePath(u"A/B/file.kpb"_s)));
        QVERIFY(Utils::EnsureFolderExists(u"/file.kpb"_s));
        QVERIFY(Utils::EnsureFolderExists(u"file.kpb"_s));
        QVERIFY(WriteBytes(folder.filePath(u"A/file"_s), "x"));
        QVERIFY(!Utils::EnsureFolderExists(folder.filePath(u"A/file/D/file.kpb"_s)));
        QCOMPARE(QDir::currentPath(), current);
    }

    void ReadsWholeFiles()
    {
        const QTemporaryDir folder;
        const WithoutRoot withoutRoot(folder.path());
        QVERIFY(!withoutRoot.Failed());
        const QString path = folder.filePath(u"file"_s);
        const auto read = [&path] { return Utils::ReadTextFile(path); };
        QVERIFY(!Utils::FileExists(path));
        QCOMPARE(RaisedBy(read), u"53 ReadTextFile: File not found"_s);
        const QByteArray bytes("\xEF\xBB\xBF\0\r\n\x80", 7);
        QVERIFY(WriteBytes(path, bytes));
        QCOMPARE(read(), bytes);
        QVERIFY(QFile::setPermissions(path, {}));
        QVERIFY(Utils::FileExists(path));
        QCOMPARE(RaisedBy(read), u"75 ReadTextFile: Permission denied"_s);
        QVERIFY(RaisedBy([&] { (void)Utils::ReadTextFile(folder.path()); }).startsWith(u"75 ReadTextFile: "_s));
    }

    void WritesLists()
    {
        QStandardItemModel list(0, 2);
        list.setHorizontalHeaderLabels({u"Name"_s, u"\"Mobile\""_s});
        const QString headers = u"\"Name\",\"\"\"Mobile\"\"\"\r\n"_s;
        QCOMPARE(Utils::WriteListAsCsv(list), headers);
        list.appendRow({new QStandardItem(u"Smith, \"Jo\""_s), new QStandardItem(u"+44"_s)});
        list.appendRow(new QStandardItem(u"Ann"_s));
        const QString rows = u"\"Smith, \"\"Jo\"\"\",\"+44\"\r\n\"Ann\",\"\"\r\n"_s;
        QCOMPARE(Utils::WriteListAsCsv(list), headers + rows);
        QCOMPARE(Utils::WriteListAsCsv(list, true), rows);
    }

    void AddressesTheVendor()
    {
        const QTemporaryDir folder;
        FakePrompts prompts;
        Settings settings(folder.filePath(u"Brevio.json"_s), prompts);
        const auto url = [&settings] { return VendorSite::Url(settings, VendorSite::kHelpPath); };
        QCOMPARE(url(), u"http://www.corvane.example/brevio/help.html"_s);
        for (const auto &host : {u"localhost"_s, u"a.example:1"_s, u"127.0.0.1:65535"_s, u"a-b_c.example."_s}) {
            settings.Save(u"Gateway"_s, u"Host"_s, host);
            QCOMPARE(url(), u"http://"_s + host + u"/brevio/help.html"_s);
        }
        for (const auto &host : {u""_s, u"a.example:"_s, u"a.example:0"_s, u"a.example:65536"_s, u"a:80x"_s,
                                 u"http://a.example"_s, u"a.example/path"_s, u"user@a.example"_s, u"a b"_s, u"-a"_s,
                                 u"a.example\r\nX: y"_s, u"ä.example"_s, u"a?b"_s}) {
            settings.Save(u"Gateway"_s, u"Host"_s, host);
            QCOMPARE(RaisedBy(url),
                     u"5 Corvane.VendorSite: The gateway's host in the settings is not valid: "_s + host);
        }
    }
};

QTEST_GUILESS_MAIN(TestUtils)
#include "test_utils.moc"
