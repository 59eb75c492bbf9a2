#include "Fakes.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Raised.h"
#include "SampleCountries.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const auto kInUse = u"70 FileLock: The file is in use by another program."_s;

/// Every contact as "name code mobile [groups]", and then the groups.
QString Printed(LxPhoneBook &book)
{
    QStringList printed;
    for (const LxContactPtr &contact : book.AllContacts()) {
        printed +=
            u"%1 %2 %3 [%4]"_s.arg(contact->Name(), QString::number(contact->CountryCode()), contact->UserMobile(),
                                   contact->Groups().AsString(u";"_s, &book.AllContacts()));
    }
    return printed.join(u'\n') + u" | "_s + book.Groups().AsString(u";"_s);
}

} // namespace

class TestPhoneBook final : public QObject
{
    Q_OBJECT

private:
    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;
    std::optional<QTemporaryDir> m_folder;
    QString m_path;
    std::optional<LxPhoneBook> m_book;

    LxContactPtr AddContact(const QString &name, int code, const QString &mobile, const QStringList &groups = {})
    {
        const LxContactPtr contact = m_book->CreateContact();
        contact->SetName(name);
        if (code != 0)
            contact->SetCountryCode(code);
        contact->SetUserMobile(mobile);
        m_book->AllContacts().Add(contact);
        for (const QString &group : groups)
            m_book->Groups().CreateGroup(group).Add(contact);
        return contact;
    }
    QString RaisedByOpening(const QString &path)
    {
        return Raised([&] { m_book->OpenPhoneBook(path); });
    }
    QString RaisedBySaving()
    {
        return Raised([this] { m_book->SavePhoneBook(); });
    }

private slots:
    void init()
    {
        m_folder.emplace();
        m_path = m_folder->filePath(u"ann.kpb"_s);
        m_book.emplace(m_countries, m_clock);
    }

    void Reads_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("printed");
        // By rule: the next save then keeps the old file beside the new one.
        QTest::addColumn<bool>("skips");
        const auto add = [](const char *name, const QByteArray &file, const QString &printed, bool skips = false) {
            QTest::newRow(name) << file << printed << skips;
        };
        add("an empty file", "", u" | Everyone"_s);
        add("three and four fields",
            "\"Ann Lee\",44,\"07700 900123\"\r\n\"Bob\",353,\"0851234567\",\"Friends;Work\"\r\n",
            u"Ann Lee 44 07700 900123 []\nBob 353 0851234567 [Friends;Work] | Everyone;Friends;Work"_s);
        add("lone LF, no last line end", "A,44,1\nB,44,2", u"A 44 1 []\nB 44 2 [] | Everyone"_s);
        add("blank lines", "\r\n \t\r\n\nA,44,1\n\n", u"A 44 1 [] | Everyone"_s);
        add("doubled quotes", "\"A \"\"B\"\" C\",44,1\r\n", u"A \"B\" C 44 1 [] | Everyone"_s);
        add("bare quotes", "\"A \"B\" C\",44,1\r\n", u"A  44 1 [] | Everyone"_s);
        add("code page", "\"\x80\x81\xE9\",44,1\r\n", u"€\u0081é 44 1 [] | Everyone"_s);
        add("marked as UTF-8", "\xEF\xBB\xBF\"\xD0\xAF\xE2\x82\xAC\",44,1\r\n", u"Я€ 44 1 [] | Everyone"_s);
        add("lone CR in a name", "\"A\rB\",44,1\r\n", u"A\rB 44 1 [] | Everyone"_s);
        add("code with sign and blanks", "A, +44 ,1\r\n", u"A 44 1 [] | Everyone"_s);
        add("group without a name", "A,44,1,\"X;;Y\"\r\nB,44,2,;\r\n", u"A 44 1 [X;;Y]\nB 44 2 [] | Everyone;X;;Y"_s);
        add("groups twice, and one like the built-in", "A,44,1,Everyone;X;X\r\n", u"A 44 1 [X] | Everyone;X"_s);
        const QByteArray longName(50, 'x');
        add("too long group names", "A,44,1," + longName + "y\r\nB,44,2," + longName + "z;X\r\n",
            u"A 44 1 [%1]\nB 44 2 [%1;X] | Everyone;%1;X"_s.arg(QString::fromLatin1(longName)));
        for (const auto *line : {"A", "A,44,1,X,Y", "A,abc,1", "A,,1", "A,0,1", "A,99,1", "A,65580,1", "A,44,",
                                 "A,44,+447700900123", "A,44,07O0", "\"A,44,1"}) {
            QTest::addRow("skips %s", line) << "B,44,2\r\n"_ba + line + "\r\nC,44,3,X\r\n"
                                            << u"B 44 2 []\nC 44 3 [X] | Everyone;X"_s << true;
        }
    }
    void Reads()
    {
        QFETCH(const QByteArray, file);
        QFETCH(const bool, skips);
        QVERIFY(WriteBytes(m_path, file));
        m_book->OpenPhoneBook(m_path);
        QTEST(Printed(*m_book), "printed");
        QCOMPARE(m_book->FileName(), m_path);
        const QString kept = m_book->SavePhoneBook();
        QCOMPARE(kept, skips ? m_path + u".20041115-103000.bak"_s : u""_s);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), skips ? 2 : 1);
        if (skips)
            QCOMPARE(ReadBytes(kept), file);
        QCOMPARE(m_book->SavePhoneBook(), u""_s);
    }

    void Writes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("groups");
        QTest::addColumn<QByteArray>("file");
        const auto add = [](const QString &name, const QStringList &groups, const QByteArray &file) {
            QTest::addRow("%s", qUtf8Printable(name.simplified())) << name << groups << file;
        };
        add(u"Ann Lee"_s, {}, "\"Ann Lee\",44,\"07700 900123\"\r\n");
        add(u" Bob,; "_s, {u"Work"_s, u"Friends"_s}, "\" Bob,; \",44,\"07700 900123\",\"Work;Friends\"\r\n");
        add(u"no name"_s, {u""_s}, "\"no name\",44,\"07700 900123\",\"\"\r\n");
        // A quote is written bare. That is meant.
        add(u"Jo \"Ace\""_s, {}, "\"Jo \"Ace\"\",44,\"07700 900123\"\r\n");
        add(u"a\r\nb\rc\nd\u0085e\u2028f\u2029g"_s, {u"h\ni"_s}, "\"a b c d e f g\",44,\"07700 900123\",\"h i\"\r\n");
        add(u"é€\u0081"_s, {}, "\"\xE9\x80\x81\",44,\"07700 900123\"\r\n");
        add(u"é€Я😀"_s, {}, "\xEF\xBB\xBF\"\xC3\xA9\xE2\x82\xAC\xD0\xAF\xF0\x9F\x98\x80\",44,\"07700 900123\"\r\n");
    }
    void Writes()
    {
        QFETCH(const QString, name);
        QFETCH(const QStringList, groups);
        QFETCH(const QByteArray, file);
        m_book->OpenPhoneBook(m_path);
        AddContact(name, 44, u"07700 900123"_s, groups);
        QCOMPARE(m_book->SavePhoneBook(), u""_s);
        QCOMPARE(ReadBytes(m_path), file);
        const QString backup = m_folder->filePath(u"backup.kpb"_s);
        m_book->Backup(backup);
        QCOMPARE(ReadBytes(backup), file);
    }

    void KeepsEveryByte()
    {
        QByteArray file;
        for (int byte = 0; byte < 256; ++byte) {
            if (byte != '\r' && byte != '\n' && byte != '"')
                file += "\"" + QByteArray(2, static_cast<char>(byte)) + "\",44,\"1\"\r\n";
        }
        QVERIFY(WriteBytes(m_path, file));
        m_book->OpenPhoneBook(m_path);
        QCOMPARE(m_book->AllContacts().Count(), 253);
        QCOMPARE(m_book->SavePhoneBook(), u""_s);
        QCOMPARE(ReadBytes(m_path), file);
    }

    void KeepsEveryOldFile()
    {
        // Percent signs in a path are no place markers.
        m_path = m_folder->filePath(u"%1 %2.kpb"_s);
        for (const auto *end : {".bak", "-2.bak", "-3.bak"}) {
            const QByteArray file = "A,44,\r\n\x81"_ba + end;
            QVERIFY(WriteBytes(m_path, file));
            m_book->OpenPhoneBook(m_path);
            const QString kept = m_book->SavePhoneBook();
            QCOMPARE(kept, m_path + u".20041115-103000"_s + QString::fromLatin1(end));
            QCOMPARE(ReadBytes(kept), file);
        }
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 4);
    }

    void KeepsTheOldFileWithoutCountries()
    {
        QVERIFY(WriteBytes(m_path, "A,44,1\r\n"));
        const LxCountryList none;
        LxPhoneBook book(none, m_clock);
        book.OpenPhoneBook(m_path);
        // A backup onto its own file is a save.
        book.Backup(m_path);
        QCOMPARE(ReadBytes(m_path), "");
        QCOMPARE(ReadBytes(m_path + u".20041115-103000.bak"_s), "A,44,1\r\n");
    }

    void SavesUnderAMissingName()
    {
        AddContact(u"Ann"_s, 353, u"1"_s, {u"X"_s});
        AddContact(u"No country"_s, 0, u"2"_s);
        m_book->Groups().CreateGroup(u"Empty"_s);
        m_book->OpenPhoneBook(m_folder->filePath(u"a/b c/ann.kpb"_s));
        QCOMPARE(ReadBytes(m_book->FileName()), "\"Ann\",353,\"1\",\"X\"\r\n\"No country\",0,\"2\"\r\n");
        QCOMPARE(Printed(*m_book), u"Ann 353 1 [X]\nNo country 0 2 [] | Everyone;X;Empty"_s);
        AddContact(u"Unsaved"_s, 44, u"3"_s);
        // Its own name, by reference, is as good as any.
        m_book->OpenPhoneBook(m_book->FileName());
        QCOMPARE(Printed(*m_book), u"Ann 353 1 [X] | Everyone;X"_s);
        m_book->ClosePhoneBook();
        QCOMPARE(RaisedBySaving(), u"5 Corvane.PhoneBook: No phone book file is open"_s);
        QCOMPARE(m_book->AllContacts().Count(), 1);
    }

    void NeverSavesOverWhatItCouldNotRead()
    {
        const WithoutRoot withoutRoot(m_folder->path());
        QVERIFY(!withoutRoot.Failed());
        AddContact(u"Ann"_s, 44, u"1"_s);
        QVERIFY(RaisedByOpening(m_folder->path()).startsWith(u"75 "_s));
        QVERIFY(RaisedBySaving().startsWith(u"75 "_s));

        QVERIFY(WriteBytes(m_path, "secret"));
        QVERIFY(QFile::setPermissions(m_path, QFile::WriteOwner));
        QVERIFY(RaisedByOpening(m_path).startsWith(u"75 "_s));
        QVERIFY(RaisedBySaving().startsWith(u"75 "_s));
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner));
        QCOMPARE(ReadBytes(m_path), "secret");
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), "secret");

        const QString taken = m_folder->filePath(u"taken.kpb"_s);
        QVERIFY(WriteBytes(taken, "taken"));
        std::optional<LxPhoneBook> holder(std::in_place, m_countries, m_clock);
        holder->OpenPhoneBook(taken);
        QCOMPARE(RaisedByOpening(taken), kInUse);
        QCOMPARE(RaisedBySaving(), kInUse);
        QCOMPARE(ReadBytes(taken), "taken");
        holder.reset();
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), "taken");
        QCOMPARE(ReadBytes(taken), "\"Ann\",44,\"1\"\r\n");
    }

    void HoldsItsFileToTheEnd()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"elsewhere"_s));
        const QString target = m_folder->filePath(u"elsewhere/real.kpb"_s);
        QVERIFY(WriteBytes(target, "\"Ann\",44,\"1\"\r\n"));
        QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const QFile::Permissions mode = QFile::permissions(target);
        QVERIFY(QFile::link(u"elsewhere/real.kpb"_s, m_path));
        const QString backup = m_folder->filePath(u"backup.kpb"_s);
        LxPhoneBook holder(m_countries, m_clock);
        const std::vector<std::function<void()>> commands = {
            [&] { holder.OpenPhoneBook(m_path); }, [&] { holder.SavePhoneBook(); }, [&] { holder.SavePhoneBook(); },
            [&] { holder.Backup(m_path); },        [&] { holder.Backup(target); },  [&] { holder.Backup(backup); },
            [&] { holder.Restore(backup); },       [&] { holder.RevertToSaved(); }};
        for (const auto &command : commands) {
            command();
            QCOMPARE(RaisedByOpening(m_path), kInUse);
            QCOMPARE(RaisedByOpening(target), kInUse);
            QVERIFY(QFileInfo(m_path).isSymLink());
            QCOMPARE(QFile::permissions(target), mode);
        }
        holder.ClosePhoneBook();
        QCOMPARE(RaisedByOpening(m_path), u""_s);
        QCOMPARE(Printed(*m_book), u"Ann 44 1 [] | Everyone"_s);
    }

    void Restores_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("raises");
        QTest::addColumn<QByteArray>("saved");
        const auto old = "\"Ann\",44,\"1\"\r\n"_ba;
        const auto noPhoneBook = u"5 Corvane.PhoneBook: other.kpb is not a phone book"_s;
        QTest::newRow("phone book") << "B,44,2\nC,44,3,X\n"_ba << u""_s
                                    << "\"B\",44,\"2\"\r\n\"C\",44,\"3\",\"X\"\r\n"_ba;
        QTest::newRow("some lines") << "B,44,2\r\nC,44\r\nD,99,4\r\n"_ba << u""_s << "\"B\",44,\"2\"\r\n"_ba;
        QTest::newRow("empty") << ""_ba << u""_s << ""_ba;
        QTest::newRow("picture") << "\x89PNG\r\n\x1A\n"_ba << noPhoneBook << old;
        QTest::newRow("no country known") << "B,99,2\r\nC,98,3\r\n"_ba << noPhoneBook << old;
        QTest::newRow("blank lines") << "\r\n\r\n"_ba << noPhoneBook << old;
        QTest::newRow("missing") << QByteArray() << u"53 ReadTextFile: File not found"_s << old;
    }
    void Restores()
    {
        QFETCH(const QByteArray, file);
        QFETCH(const QString, raises);
        AddContact(u"Ann"_s, 44, u"1"_s);
        m_book->Groups().CreateGroup(u"Empty"_s);
        m_book->OpenPhoneBook(m_path);
        const QString printed = Printed(*m_book);
        const QString other = m_folder->filePath(u"other.kpb"_s);
        QVERIFY(file.isNull() || WriteBytes(other, file));
        QCOMPARE(Raised([&] { m_book->Restore(other); }), raises);
        QTEST(ReadBytes(m_path), "saved");
        if (!raises.isEmpty())
            QCOMPARE(Printed(*m_book), printed);
    }

    void StaysAsItWasWhenARestoreCannotBeSaved()
    {
        const WithoutRoot withoutRoot(m_folder->path());
        QVERIFY(!withoutRoot.Failed());
        const LxContactPtr ann = AddContact(u"Ann"_s, 44, u"1"_s, {u"X"_s});
        m_book->Groups().CreateGroup(u"Empty"_s);
        m_book->OpenPhoneBook(m_path);
        const QString other = m_folder->filePath(u"other.kpb"_s);
        QVERIFY(WriteBytes(other, "B,44,2,X;Y\r\n"));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        QVERIFY(Raised([&] { m_book->Restore(other); }).startsWith(u"75 "_s));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QCOMPARE(Printed(*m_book), u"Ann 44 1 [X] | Everyone;X;Empty"_s);
        m_book->Restore(other);
        QCOMPARE(Printed(*m_book), u"B 44 2 [X;Y] | Everyone;X;Y"_s);
        QCOMPARE(ann->Groups().Count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestPhoneBook)
#include "test_phone_book.moc"
