#include "Fakes.h"
#include "FileSizeLimit.h"
#include "Files.h"
#include "Printed.h"
#include "Raised.h"
#include "SampleCountries.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <functional>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const auto kInUse = u"70 FileLock: The file is in use by another program."_s;

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

    void ReadsAndWrites()
    {
        const auto a = "\"A\",44,\"1\"\r\n"_ba;
        const auto bob = "\"Bob,; \",353,\"0851234567\",\"Friends;Work\"\r\n"_ba;
        std::vector<std::array<QByteArray, 3>> rows = {
            {a + bob, "A 44 1 []\nBob,;  353 0851234567 [Friends;Work] | Everyone;Friends;Work", a + bob},
            {"\n \t\r\nA, +44 ,1\n\nA,44,1", "A 44 1 []\nA 44 1 [] | Everyone", a + a},
            // A quote is written bare, and bare quotes end a field. That is meant.
            {"\"A \"\"B\"\" C\",44,1\r\n", "A \"B\" C 44 1 [] | Everyone", "\"A \"B\" C\",44,\"1\"\r\n"},
            {"\"A \"B\" C\",44,1\r\n", "A  44 1 [] | Everyone", "\"A \",44,\"1\"\r\n"},
            {"\"A\rB\",44,1\r\n", "A\rB 44 1 [] | Everyone", "\"A B\",44,\"1\"\r\n"},
            {"\xEF\xBB\xBF\"Я€\",44,\"1\"\r\n", "Я€ 44 1 [] | Everyone", "\xEF\xBB\xBF\"Я€\",44,\"1\"\r\n"},
            {"\xEF\xBB\xBF\"\xEF\xBF\xBD\",44,\"1\"\r\n", "\uFFFD 44 1 [] | Everyone",
             "\xEF\xBB\xBF\"\uFFFD\",44,\"1\"\r\n"},
            {"A,44,1,Everyone;X;X\r\n", "A 44 1 [X] | Everyone;X", "\"A\",44,\"1\",\"X\"\r\n"}};
        for (const auto *line : {"\x81", "A,44,1,X,Y", "A,x,1", "A,65580,1", "A,44,", "A,44,+441", "\"A,44,1"})
            rows.push_back({"A,44,1\n"_ba + line + "\nA,44,1", "A 44 1 []\nA 44 1 [] | Everyone", a + a});
        // The first open makes the folders, too.
        m_path = m_folder->filePath(u"new/fol der/ann.kpb"_s);
        m_book->OpenPhoneBook(m_path);
        for (const auto &[file, printed, saved] : rows) {
            QVERIFY(WriteBytes(m_path, file));
            m_book->OpenPhoneBook(m_path);
            QCOMPARE(Printed(*m_book), QString::fromUtf8(printed));
            // A skipped line makes the save keep the old file beside the new one.
            const QString kept = m_book->SavePhoneBook();
            QCOMPARE(kept.isEmpty() ? ""_ba : ReadBytes(kept), file.startsWith("A,44,1\n") ? file : ""_ba);
            QCOMPARE(ReadBytes(m_path), saved);
        }
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

    void NeverSavesOverWhatItCouldNotRead()
    {
        const WithoutRoot withoutRoot(m_folder->path());
        QVERIFY(!withoutRoot.Failed() && WriteBytes(m_path, "secret") && WriteBytes(m_other, "taken"));
        QVERIFY(QFile::setPermissions(m_path, QFile::WriteOwner));
        QVERIFY(RaisedByOpening(m_path).startsWith(u"75 "_s));
        QVERIFY(!Raised([this] { m_book->SavePhoneBook(); }).isEmpty());
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner));
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), "secret");

        std::optional<LxPhoneBook> holder(std::in_place, m_countries, m_clock);
        holder->OpenPhoneBook(m_other);
        QCOMPARE(RaisedByOpening(m_other), kInUse);
        QCOMPARE(Raised([this] { m_book->SavePhoneBook(); }), kInUse);
        holder.reset();
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), "taken");
    }

    void HoldsItsFileToTheEnd()
    {
        QVERIFY(WriteBytes(m_other, "\"Ann\",44,\"1\"\r\n") && QFile::link(m_other, m_path));
        QVERIFY(QFile::setPermissions(m_other, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const QFile::Permissions mode = QFile::permissions(m_other);
        const QString backup = m_folder->filePath(u"backup.kpb"_s);
        LxPhoneBook holder(m_countries, m_clock);
        const std::function<void()> commands[] = {
            [&] { holder.OpenPhoneBook(m_path); }, [&] { holder.SavePhoneBook(); }, [&] { holder.Backup(m_other); },
            [&] { holder.Backup(backup); },        [&] { holder.Restore(backup); }, [&] { holder.RevertToSaved(); }};
        for (const auto &command : commands) {
            command();
            QCOMPARE(RaisedByOpening(m_other), kInUse);
            QVERIFY(QFileInfo(m_path).isSymLink());
            QCOMPARE(QFile::permissions(m_other), mode);
        }
        holder.ClosePhoneBook();
        QCOMPARE(RaisedByOpening(m_path), u""_s);
    }

    void Restores()
    {
        const WithoutRoot withoutRoot(m_folder->path());
        const auto old = u"Ann 44 1 [X] | Everyone;X;Empty"_s;
        const auto notAPhoneBook = u"5 Corvane.PhoneBook: other.kpb is not a phone book"_s;
        const auto before = "Ann,44,1,X\r\n"_ba;
        // One that is refused leaves all as it was; any other leaves a copy of the old one.
        const std::tuple<QByteArray, QString, QString, QByteArray> rows[] = {
            {"B,44,2,X;Y\r\n", u""_s, u"B 44 2 [X;Y] | Everyone;X;Y"_s, before},
            {"B,44,2,X;Y\r\nC,44\r\nD,99,4\r\n", u""_s, u"B 44 2 [X;Y] | Everyone;X;Y"_s, before},
            {"", u""_s, u" | Everyone"_s, before},
            {"\xEF\xBB\xBF", notAPhoneBook, old, ""},
            {"B,99,2\r\nC,98,3\r\n", notAPhoneBook, old, ""}};
        for (const auto &[file, raises, printed, copy] : rows) {
            QVERIFY(WriteBytes(m_path, before) && WriteBytes(m_other, file));
            m_book->OpenPhoneBook(m_path);
            m_book->Groups().CreateGroup(u"Empty"_s);
            // It stays as it was when it cannot be saved, too.
            QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
            QVERIFY(!Raised([&] { m_book->Restore(m_other); }).isEmpty());
            QCOMPARE(Printed(*m_book), old);
            QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
            QString kept;
            QCOMPARE(Raised([&] { kept = m_book->Restore(m_other); }), raises);
            QCOMPARE(Printed(*m_book), printed);
            QCOMPARE(kept.isEmpty() ? ""_ba : ReadBytes(kept), copy);
            m_book->RevertToSaved();
            QCOMPARE(Printed(*m_book), QString(printed).remove(u";Empty"_s));
        }
    }

    void SurvivesBeingKilled()
    {
        QVERIFY(WriteBytes(m_path, FileOf(0)));
        int edits = 0;
        for (int round = 0; round < 300; ++round) {
            const pid_t child = ::fork();
            if (child == 0) {
                m_book->OpenPhoneBook(m_path);
                Edit(++edits);
                m_book->SavePhoneBook();
                ::ualarm(1 + round * 100, 0); // which ends the process, wherever it is by then
                do {
                    Edit(++edits);
                } while (Raised([&] { m_book->SavePhoneBook(); }).isEmpty());
                ::_exit(2);
            }
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM);
            const QByteArray file = ReadBytes(m_path);
            const int found = file.mid(9, file.indexOf('"', 9) - 9).toInt();
            QVERIFY2(found > edits && file == FileOf(found), file);
            edits = found;
        }
    }

    void StopsOnAFullDisk()
    {
        // A line that is skipped, so that the old file is due to be kept.
        const QByteArray old = FileOf(0) + "x\r\n";
        QVERIFY(WriteBytes(m_path, old));
        m_book->OpenPhoneBook(m_path);
        // There is room for nothing, for the new file but not for the copy, and for the copy but not for the new file.
        for (const auto &[room, edits] : {std::pair(qsizetype(0), 0), {old.size() - 1, 0}, {old.size(), 1000}}) {
            Edit(edits);
            const auto save = [this, room = room] {
                const FileSizeLimit limit(room);
                m_book->SavePhoneBook();
            };
            QVERIFY(!Raised(save).isEmpty());
            QCOMPARE(ReadBytes(m_path), old);
            QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(u"ann.kpb"_s));
        }
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), old);
        QCOMPARE(ReadBytes(m_path), FileOf(1000));
    }
};

QTEST_GUILESS_MAIN(TestPhoneBook)
#include "test_phone_book.moc"
