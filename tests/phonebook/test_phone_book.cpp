#include "Fakes.h"
#include "FileSizeLimit.h"
#include "Files.h"
#include "Printed.h"
#include "Raised.h"
#include "Rows.h"
#include "SampleCountries.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using Command = std::function<void(LxPhoneBook &, const QTemporaryDir &folder)>;

const auto kOld = u"Ann 44 1 [X] | Everyone;X;Empty"_s;
const auto kRefused = u"5 Corvane.PhoneBook: other.kpb is not a phone book"_s;
const auto kAnn = "\"A\",44,\"1\"\r\n"_ba;
const auto kBob = "\"Bob,; \",353,\"0851234567\",\"Friends;Work\"\r\n"_ba;
const auto kInUse = u"70 FileLock: The file is in use by another program."_s;

/// The file of a phone book of some hundred contacts that has been edited so often.
QByteArray FileOf(int edits)
{
    return ("\"Contact " + QByteArray::number(edits) + "\",44,\"07700 900123\",\"Work\"\r\n").repeated(300);
}

/// The file of one that was not edited, with a line that is skipped, so that a save is to keep it.
QByteArray HalfRead()
{
    return FileOf(0) + "x\r\n";
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

    TABLE_TEST(filesAreReadAndWritten, (const QByteArray &file, const QString &printed, const QByteArray &saved),
               {"plain", kAnn + kBob, u"A 44 1 []\nBob,;  353 0851234567 [Friends;Work] | Everyone;Friends;Work"_s,
                kAnn + kBob},
               {"blanks", "\n \t\r\nA, +44 ,1\n\nA,44,1", u"A 44 1 []\nA 44 1 [] | Everyone"_s, kAnn + kAnn},
               // A quote is written bare, and bare quotes end a field. That is meant.
               {"quotes", "\"A \"\"B\"\" C\",44,1\r\n", u"A \"B\" C 44 1 [] | Everyone"_s,
                "\"A \"B\" C\",44,\"1\"\r\n"},
               {"bare quotes", "\"A \"B\" C\",44,1\r\n", u"A  44 1 [] | Everyone"_s, "\"A \",44,\"1\"\r\n"},
               {"line break", "\"A\rB\",44,1\r\n", u"A\rB 44 1 [] | Everyone"_s, "\"A B\",44,\"1\"\r\n"},
               {"UTF-8", "\xEF\xBB\xBF\"Я€\",44,\"1\"\r\n", u"Я€ 44 1 [] | Everyone"_s,
                "\xEF\xBB\xBF\"Я€\",44,\"1\"\r\n"},
               {"replacement character", "\xEF\xBB\xBF\"\uFFFD\",44,1", u"\uFFFD 44 1 [] | Everyone"_s,
                "\xEF\xBB\xBF\"\uFFFD\",44,\"1\"\r\n"},
               {"groups", "A,44,1,Everyone;X;X\r\n", u"A 44 1 [X] | Everyone;X"_s, "\"A\",44,\"1\",\"X\"\r\n"})
    {
        // The first open makes the folders, too.
        m_path = m_folder->filePath(u"new/fol der/ann.kpb"_s);
        m_book->OpenPhoneBook(m_path);
        QVERIFY(WriteBytes(m_path, file));
        m_book->OpenPhoneBook(m_path);
        QCOMPARE(Printed(*m_book), printed);
        QCOMPARE(m_book->SavePhoneBook(), QString());
        QCOMPARE(ReadBytes(m_path), saved);
    }

    TABLE_TEST(aSkippedLineMakesTheSaveKeepTheOldFile, (const QString &line), u"\u0081", u"A,44,1,X,Y", u"A,x,1",
               u"A,65580,1", u"A,44,", u"A,44,+441", u"\"A,44,1")
    {
        const QByteArray file = "A,44,1\n" + line.toLatin1() + "\nA,44,1";
        QVERIFY(WriteBytes(m_path, file));
        m_book->OpenPhoneBook(m_path);
        QCOMPARE(Printed(*m_book), u"A 44 1 []\nA 44 1 [] | Everyone"_s);
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), file);
        QCOMPARE(ReadBytes(m_path), kAnn + kAnn);
    }

    void everyOldFileIsKeptWithoutCountries()
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
            QVERIFY2(ReadBytes(m_path).isEmpty(), end);
            QVERIFY2(ReadBytes(m_path + u".20041115-103000"_s + QString::fromLatin1(end)) == file, end);
        }
    }

    void nothingIsSavedOverWhatCouldNotBeRead()
    {
        const WithoutRoot withoutRoot;
        QVERIFY(WriteBytes(m_path, "secret") && WriteBytes(m_other, "taken"));
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

    // Its real file is "other.kpb".
    TABLE_TEST(eachCommandKeepsHoldOfTheFile, (const Command &command),
               {"open", [](auto &book, auto &) { book.OpenPhoneBook(book.FileName()); }},
               {"save", [](auto &book, auto &) { book.SavePhoneBook(); }},
               {"backup onto itself", [](auto &book, auto &folder) { book.Backup(folder.filePath(u"other.kpb"_s)); }},
               {"backup", [](auto &book, auto &folder) { book.Backup(folder.filePath(u"b.kpb"_s)); }},
               {"restore", [](auto &book, auto &folder) { book.Restore(folder.filePath(u"backup.kpb"_s)); }},
               {"revert", [](auto &book, auto &) { book.RevertToSaved(); }})
    {
        QVERIFY(WriteBytes(m_other, "\"Ann\",44,\"1\"\r\n") && QFile::link(m_other, m_path));
        QVERIFY(QFile::setPermissions(m_other, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const QFile::Permissions mode = QFile::permissions(m_other);
        LxPhoneBook holder(m_countries, m_clock);
        holder.OpenPhoneBook(m_path);
        holder.Backup(m_folder->filePath(u"backup.kpb"_s));
        command(holder, *m_folder);
        QCOMPARE(RaisedByOpening(m_other), kInUse);
        QVERIFY(QFileInfo(m_path).isSymLink());
        QCOMPARE(QFile::permissions(m_other), mode);
        holder.ClosePhoneBook();
        QCOMPARE(RaisedByOpening(m_path), u""_s);
    }

    // One that is refused leaves all as it was; any other leaves a copy of the old one.
    TABLE_TEST(aRestoreTakesTheFileOrLeavesAllAsItWas, (const QByteArray &file, const QString &printed, bool keepsOld),
               {"whole", "B,44,2,X;Y\r\n", u"B 44 2 [X;Y] | Everyone;X;Y"_s, true},
               {"two lines skipped", "B,44,2,X;Y\r\nC,44\r\nD,99,4\r\n", u"B 44 2 [X;Y] | Everyone;X;Y"_s, true},
               {"empty", "", u" | Everyone"_s, true}, {"the mark alone", "\xEF\xBB\xBF", kOld, false},
               {"all lines skipped", "B,99,2\r\nC,98,3\r\n", kOld, false})
    {
        const WithoutRoot withoutRoot;
        const auto before = "Ann,44,1,X\r\n"_ba;
        QVERIFY(WriteBytes(m_path, before) && WriteBytes(m_other, file));
        m_book->OpenPhoneBook(m_path);
        m_book->Groups().CreateGroup(u"Empty"_s);
        // It stays as it was when it cannot be saved, too.
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        QVERIFY(!Raised([&] { m_book->Restore(m_other); }).isEmpty());
        QCOMPARE(Printed(*m_book), kOld);
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QString kept;
        QCOMPARE(Raised([&] { kept = m_book->Restore(m_other); }), printed == kOld ? kRefused : QString());
        QCOMPARE(Printed(*m_book), printed);
        QCOMPARE(kept.isEmpty() ? ""_ba : ReadBytes(kept), keepsOld ? before : ""_ba);
        m_book->RevertToSaved();
        QCOMPARE(Printed(*m_book), QString(printed).remove(u";Empty"_s));
    }

    void theFileSurvivesAKill()
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

    TABLE_TEST(aFullDiskKeepsTheOldFile, (qsizetype room, int edits), {"room for nothing", 0, 0},
               {"room for the new file but not for the copy", HalfRead().size() - 1, 0},
               {"room for the copy but not for the new file", HalfRead().size(), 1000})
    {
        const QByteArray old = HalfRead();
        QVERIFY(WriteBytes(m_path, old));
        m_book->OpenPhoneBook(m_path);
        Edit(edits);
        const auto save = [&] {
            const FileSizeLimit limit(room);
            m_book->SavePhoneBook();
        };
        QVERIFY(!Raised(save).isEmpty());
        QCOMPARE(ReadBytes(m_path), old);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(u"ann.kpb"_s));
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), old);
        QCOMPARE(ReadBytes(m_path), FileOf(edits));
    }
};

QTEST_GUILESS_MAIN(TestPhoneBook)
#include "test_phone_book.moc"
