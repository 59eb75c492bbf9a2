#include "DiskFaults.h"
#include "Fakes.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Raised.h"
#include "SampleCountries.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>

#include <algorithm>
#include <functional>
#include <optional>
#include <sys/wait.h>

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

/// The file of a phone book of some hundred contacts that has been edited so often.
QByteArray FileOf(int edits)
{
    return ("\"Contact " + QByteArray::number(edits) + "\",44,\"07700 900123\",\"Work\"\r\n").repeated(300);
}

} // namespace

class TestPhoneBook final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;
    std::optional<QTemporaryDir> m_folder;
    QString m_path;
    QString m_other;
    std::optional<LxPhoneBook> m_book;

    QString RaisedByOpening(const QString &path)
    {
        return Raised([&] { m_book->OpenPhoneBook(path); });
    }

    void Edit(int edits)
    {
        for (const LxContactPtr &contact : m_book->AllContacts())
            contact->SetName(u"Contact "_s + QString::number(edits));
    }

private slots:
    void init()
    {
        m_folder.emplace();
        m_path = m_folder->filePath(u"ann.kpb"_s);
        m_other = m_folder->filePath(u"other.kpb"_s);
        m_book.emplace(m_countries, m_clock);
    }

    void ReadsAndWrites_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("printed");
        QTest::addColumn<QByteArray>("saved");
        const auto add = [](const QByteArray &file, const QString &printed, const QByteArray &saved) {
            QTest::addRow("%s", file.simplified().constData()) << file << printed << saved;
        };
        const auto a = "\"A\",44,\"1\"\r\n"_ba;
        const auto bob = "\"Bob,; \",353,\"0851234567\",\"Friends;Work\"\r\n"_ba;
        add("", u" | Everyone"_s, "");
        add(a + bob, u"A 44 1 []\nBob,;  353 0851234567 [Friends;Work] | Everyone;Friends;Work"_s, a + bob);
        add("\n \t\r\nA, +44 ,1\n\nA,44,1", u"A 44 1 []\nA 44 1 [] | Everyone"_s, a + a);
        // A quote is written bare, and bare quotes end a field. That is meant.
        add("\"A \"\"B\"\" C\",44,1\r\n", u"A \"B\" C 44 1 [] | Everyone"_s, "\"A \"B\" C\",44,\"1\"\r\n");
        add("\"A \"B\" C\",44,1\r\n", u"A  44 1 [] | Everyone"_s, "\"A \",44,\"1\"\r\n");
        add("\"A\rB\",44,1\r\n", u"A\rB 44 1 [] | Everyone"_s, "\"A B\",44,\"1\"\r\n");
        add("\xEF\xBB\xBF\"\xD0\xAF\xE2\x82\xAC\",44,\"1\"\r\n", u"Я€ 44 1 [] | Everyone"_s,
            "\xEF\xBB\xBF\"\xD0\xAF\xE2\x82\xAC\",44,\"1\"\r\n");
        add("A,44,1,\"X;;Y\"\r\nA,44,1,;\r\n", u"A 44 1 [X;;Y]\nA 44 1 [] | Everyone;X;;Y"_s,
            "\"A\",44,\"1\",\"X;;Y\"\r\n\"A\",44,\"1\",\"\"\r\n");
        add("A,44,1,Everyone;X;X\r\n", u"A 44 1 [X] | Everyone;X"_s, "\"A\",44,\"1\",\"X\"\r\n");
        for (const auto *line : {"\x81", "A,44,1,X,Y", "A,abc,1", "A,,1", "A,0,1", "A,99,1", "A,65580,1", "A,44,",
                                 "A,44,+447700900123", "A,44,07O0", "\"A,44,1"})
            add("A,44,1\n"_ba + line + "\nA,44,1", u"A 44 1 []\nA 44 1 [] | Everyone"_s, a + a);
    }
    void ReadsAndWrites()
    {
        QFETCH(const QByteArray, file);
        QVERIFY(WriteBytes(m_path, file));
        m_book->OpenPhoneBook(m_path);
        QTEST(Printed(*m_book), "printed");
        // A skipped line makes the save keep the old file beside the new one.
        const bool skips = file.startsWith("A,44,1\n");
        const QString kept = m_book->SavePhoneBook();
        QCOMPARE(kept, skips ? m_path + u".20041115-103000.bak"_s : u""_s);
        QVERIFY(!skips || ReadBytes(kept) == file);
        QTEST(ReadBytes(m_path), "saved");
        QCOMPARE(m_book->SavePhoneBook(), u""_s);
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

    void KeepsEveryOldFileWithoutCountries()
    {
        // Percent signs in a path are no place markers.
        m_path = m_folder->filePath(u"%1 %2.kpb"_s);
        const LxCountryList none;
        m_book.emplace(none, m_clock);
        for (const auto *end : {".bak", "-2.bak", "-3.bak"}) {
            const QByteArray file = "A,44,1,"_ba + end + "\r\n";
            QVERIFY(WriteBytes(m_path, file));
            m_book->OpenPhoneBook(m_path);
            // A backup onto its own file is a save.
            m_book->Backup(m_path);
            QCOMPARE(ReadBytes(m_path), "");
            QCOMPARE(ReadBytes(m_path + u".20041115-103000"_s + QString::fromLatin1(end)), file);
        }
    }

    void SavesUnderAMissingName()
    {
        const LxContactPtr ann = m_book->CreateContact();
        ann->SetName(u"Ann\r\nLee"_s);
        ann->SetUserMobile(u"1"_s);
        m_book->AllContacts().Add(ann);
        m_book->Groups().CreateGroup(u"X\nY"_s).Add(ann);
        m_book->OpenPhoneBook(m_folder->filePath(u"a/b c/ann.kpb"_s));
        QCOMPARE(ReadBytes(m_book->FileName()), "\"Ann Lee\",0,\"1\",\"X Y\"\r\n");
        m_book->ClosePhoneBook();
        QCOMPARE(Raised([this] { m_book->SavePhoneBook(); }), u"5 Corvane.PhoneBook: No phone book file is open"_s);
        QCOMPARE(m_book->AllContacts().Count(), 1);
    }

    void NeverSavesOverWhatItCouldNotRead()
    {
        const WithoutRoot withoutRoot(m_folder->path());
        QVERIFY(!withoutRoot.Failed() && WriteBytes(m_path, "secret") && WriteBytes(m_other, "taken"));
        QVERIFY(QFile::setPermissions(m_path, QFile::WriteOwner));
        for (const QString &path : {m_folder->path(), m_path}) {
            QVERIFY(RaisedByOpening(path).startsWith(u"75 "_s));
            QVERIFY(!Raised([this] { m_book->SavePhoneBook(); }).isEmpty());
        }
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner));
        QCOMPARE(ReadBytes(m_path), "secret");
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), "secret");

        std::optional<LxPhoneBook> holder(std::in_place, m_countries, m_clock);
        holder->OpenPhoneBook(m_other);
        QCOMPARE(RaisedByOpening(m_other), kInUse);
        QCOMPARE(Raised([this] { m_book->SavePhoneBook(); }), kInUse);
        QCOMPARE(ReadBytes(m_other), "taken");
        holder.reset();
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), "taken");
    }

    void HoldsItsFileToTheEnd()
    {
        QVERIFY(WriteBytes(m_other, "\"Ann\",44,\"1\"\r\n") && QFile::link(m_other, m_path));
        const QFile::Permissions mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(m_other, mode));
        const QString backup = m_folder->filePath(u"backup.kpb"_s);
        LxPhoneBook holder(m_countries, m_clock);
        const std::function<void()> commands[] = {
            [&] { holder.OpenPhoneBook(m_path); }, [&] { holder.SavePhoneBook(); }, [&] { holder.Backup(m_other); },
            [&] { holder.Backup(backup); },        [&] { holder.Restore(backup); }, [&] { holder.RevertToSaved(); }};
        for (const auto &command : commands) {
            command();
            QCOMPARE(RaisedByOpening(m_path), kInUse);
            QCOMPARE(RaisedByOpening(m_other), kInUse);
            QVERIFY(QFileInfo(m_path).isSymLink());
            QVERIFY(QFile::permissions(m_other).testFlags(mode) && !QFile::permissions(m_other).testFlag(QFile::ReadOther));
        }
        holder.ClosePhoneBook();
        QCOMPARE(RaisedByOpening(m_path), u""_s);
        QCOMPARE(Printed(*m_book), u"Ann 44 1 [] | Everyone"_s);
    }

    void Restores_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("raises");
        QTest::addColumn<QString>("printed");
        QTest::newRow("some lines") << "B,44,2,X;Y\r\nC,44\r\nD,99,4\r\n"_ba << u""_s
                                    << u"B 44 2 [X;Y] | Everyone;X;Y"_s;
        QTest::newRow("empty") << ""_ba << u""_s << u" | Everyone"_s;
        for (const auto *file : {"\x89PNG\r\n\x1A\n", "B,99,2\r\nC,98,3\r\n", "\r\n\r\n"})
            QTest::addRow("no phone book %s", file)
                << QByteArray(file) << u"5 Corvane.PhoneBook: other.kpb is not a phone book"_s
                << u"Ann 44 1 [X] | Everyone;X;Empty"_s;
    }
    void Restores()
    {
        QFETCH(const QByteArray, file);
        const WithoutRoot withoutRoot(m_folder->path());
        QVERIFY(!withoutRoot.Failed() && WriteBytes(m_path, "Ann,44,1,X\r\n"));
        m_book->OpenPhoneBook(m_path);
        m_book->Groups().CreateGroup(u"Empty"_s);
        const QString before = Printed(*m_book);
        QVERIFY(WriteBytes(m_other, file));
        // It stays as it was when it cannot be saved, too.
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        QVERIFY(!Raised([&] { m_book->Restore(m_other); }).isEmpty());
        QCOMPARE(Printed(*m_book), before);
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QTEST(Raised([&] { m_book->Restore(m_other); }), "raises");
        QTEST(Printed(*m_book), "printed");
        const QString now = Printed(*m_book);
        m_book->RevertToSaved();
        QCOMPARE(Printed(*m_book), now == before ? now.chopped(6) : now);
    }

    void SurvivesBeingKilled()
    {
        QVERIFY(WriteBytes(m_path, FileOf(0)));
        // The moments of death are spread over a few saves, however long one takes here.
        QElapsedTimer timer;
        timer.start();
        m_book->OpenPhoneBook(m_path);
        for (int i = 0; i < 3; ++i)
            m_book->SavePhoneBook();
        m_book->ClosePhoneBook();
        const int latest = static_cast<int>(std::clamp<qint64>(timer.nsecsElapsed() / 1000, 1000, 150'000));
        int edits = 0;
        for (int round = 0; round < 300; ++round) {
            const int moment = QRandomGenerator::global()->bounded(1, latest);
            const pid_t child = ::fork();
            QVERIFY(child >= 0);
            if (child == 0) {
                if (!Raised([&] { m_book->OpenPhoneBook(m_path); }).isEmpty())
                    ::_exit(2);
                KillThisProcessIn(moment);
                do {
                    Edit(++edits);
                } while (Raised([&] { m_book->SavePhoneBook(); }).isEmpty());
                ::_exit(2);
            }
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
            const QByteArray file = ReadBytes(m_path);
            const int found = file.mid(9, file.indexOf('"', 9) - 9).toInt();
            QVERIFY2(found >= edits && file == FileOf(found), file);
            edits = found;
        }
        QVERIFY(edits > 0);
    }

    void StopsOnAFullDisk()
    {
        if (SmallDisk().isEmpty()) {
            RepeatOnSmallDisk();
            return;
        }
        m_path = SmallDisk() + u"/ann.kpb"_s;
        constexpr qsizetype kPage = 4096;
        // A line that is skipped, so that the old file is due to be kept.
        const QByteArray old = FileOf(0) + "x\r\n";
        QVERIFY(WriteBytes(m_path, old));
        m_book->OpenPhoneBook(m_path);
        Edit(1);
        QFile filler(SmallDisk() + u"/filler"_s);
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        // There is room for nothing, for a part of the copy, and for the copy but not for the new file.
        for (const qsizetype freePages : {qsizetype(0), qsizetype(1), old.size() / kPage + 1}) {
            while (filler.write(QByteArray(kPage, 'f')) == kPage) {
            }
            QVERIFY(filler.resize(filler.size() - freePages * kPage) && filler.seek(filler.size()));
            QVERIFY(!Raised([this] { m_book->SavePhoneBook(); }).isEmpty());
            QCOMPARE(ReadBytes(m_path), old);
            QCOMPARE(QDir(SmallDisk()).entryList(QDir::Files).join(u' '), u"ann.kpb filler"_s);
        }
        QVERIFY(filler.remove());
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), old);
        QCOMPARE(ReadBytes(m_path), FileOf(1));
    }
};

QTEST_GUILESS_MAIN(TestPhoneBook)
#include "test_phone_book.moc"
