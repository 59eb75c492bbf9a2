#include "Fakes.h"
#include "FileSizeLimit.h"
#include "Files.h"
#include "Printed.h"
#include "Raised.h"
#include "Rows.h"
#include "SampleCountries.h"
#include "TextFile.h"
#include "WithoutRoot.h"

#include <QDir>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const auto kOld = u"Ann 44 1 [X] | Everyone;X;Empty"_s;
const auto kRefused = u"5 Corvane.PhoneBook: other.kpb is not a phone book"_s;
const QByteArray kMark = TextFile::kUtf8Mark;
const auto kAnn = "\"A\",44,\"1\"\r\n"_ba;
const auto kBob = "\"Bob,; \",353,\"0851234567\",\"Friends;Work\"\r\n"_ba;
const auto kInUse = u"70 FileLock: The file is in use by another program."_s;

/// The file of a phone book of some hundred contacts, all renamed to this.
QByteArray FileOf(int number)
{
    return ("\"Day " + QByteArray::number(number) + "\",44,\"07700 900123\",\"Work\"\r\n").repeated(300);
}

} // namespace

class TestPhoneBook final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    FixedClock m_clock;
    std::optional<QTemporaryDir> m_folder;
    QString m_path;
    QString m_other;
    std::optional<LxPhoneBook> m_book;

    QString RaisedByOpening(const QString &path)
    {
        return Raised([&] { m_book->OpenPhoneBook(path); });
    }

    void Open(const QByteArray &file)
    {
        QVERIFY(WriteBytes(m_path, file));
        m_book->OpenPhoneBook(m_path);
    }

    /// The copies by the ends of their names.
    [[nodiscard]] QString Copies() const
    {
        QStringList names = QDir(m_folder->path()).entryList({u"ann.kpb.*"_s}, QDir::Files, QDir::Name);
        return names.replaceInStrings(u"ann.kpb."_s, QString()).join(u' ');
    }
    [[nodiscard]] QByteArray Copy(const QString &end) const { return ReadBytes(m_path + u'.' + end); }

    void Rename(int number)
    {
        for (const LxContactPtr &contact : m_book->AllContacts())
            contact->SetName(u"Day "_s + QString::number(number));
    }

    /// Saves twice on so many days, up to the fifteenth; it is the sixteenth then.
    void SaveDaily(int days)
    {
        for (int day = 16 - days; day <= 15; ++day) {
            m_clock.now.setDate(QDate(2004, 11, day));
            for (const int number : {100 + day, day}) {
                Rename(number);
                QCOMPARE(m_book->SavePhoneBook(), QString());
            }
        }
        m_clock.now.setDate(QDate(2004, 11, 16));
    }

private slots:
    void init()
    {
        m_clock.now = FixedClock().now;
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
               {"UTF-8", kMark + "\"Я€\",44,\"1\"\r\n\"é\",44,\"1\"\r\n", u"Я€ 44 1 []\né 44 1 [] | Everyone"_s,
                kMark + "\"Я€\",44,\"1\"\r\n\"é\",44,\"1\"\r\n"},
               {"long", QByteArray(60, '\xE9') + ",44,1," + QByteArray(50, '\xE9') + ";" + QByteArray(20, 'x') + "\r\n",
                u"%1 44 1 [%1;%2] | Everyone;%1;%2"_s.arg(QString(50, u'é'), QString(20, u'x')),
                "\"" + QByteArray(50, '\xE9') + "\",44,\"1\",\"" + QByteArray(50, '\xE9') + ";" + QByteArray(20, 'x') +
                    "\"\r\n"},
               {"UTF-8 with marks within", kMark + kMark + "B,44,2," + kMark + "X;X\r\n",
                u"\uFEFFB 44 2 [\uFEFFX;X] | Everyone;\uFEFFX;X"_s,
                kMark + "\"" + kMark + "B\",44,\"2\",\"" + kMark + "X;X\"\r\n"},
               {"UTF-8 line break", kMark + "A\u0085B,44,1\r\n", u"A\u0085B 44 1 [] | Everyone"_s,
                "\"A B\",44,\"1\"\r\n"},
               {"groups", "A,44,1,Everyone;X;X\r\n", u"A 44 1 [X] | Everyone;X"_s, "\"A\",44,\"1\",\"X\"\r\n"})
    {
        // The first open makes the folders, too. An empty file leaves no copy.
        m_path = m_folder->filePath(u"new/fol der/ann.kpb"_s);
        m_book->OpenPhoneBook(m_path);
        m_book->Restore(m_path);
        QCOMPARE(QFileInfo(m_path).dir().count(), 3u); // the file, and the two folders of dots
        QVERIFY(!(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther)));
        Open(file);
        QCOMPARE(Printed(*m_book), printed);
        QCOMPARE(m_book->SavePhoneBook(), QString());
        QCOMPARE(ReadBytes(m_path), saved);
    }

    void contactsOfTheSameGroupsPartSingly()
    {
        Open("A,44,1,X;Y\r\nB,44,2,X;Y\r\nC,44,3,X;Y\r\nD,44,4,Y\r\nE,44,5,Y\r\nF,44,6,X;Y\r\n");
        m_book->Groups().Lookup(u"X"_s)->Remove(m_book->AllContacts().ContactList().Item(3));
        QCOMPARE(Printed(*m_book), u"A 44 1 [X;Y]\nB 44 2 [X;Y]\nC 44 3 [Y]\nD 44 4 [Y]\nE 44 5 [Y]\n"
                                   "F 44 6 [X;Y] | Everyone;X;Y"_s);
        m_book->Groups().DestroyGroup(*m_book->Groups().Lookup(u"Y"_s));
        QCOMPARE(Printed(*m_book), u"A 44 1 [X]\nB 44 2 [X]\nC 44 3 []\nD 44 4 []\nE 44 5 []\n"
                                   "F 44 6 [X] | Everyone;X"_s);
    }

    TABLE_TEST(aSkippedLineMakesTheSaveKeepTheOldFile, (const QString &line), u"\u0081", u"A,44,1,X,Y", u"A,x,1",
               u"A,65580,1", u"A,44,", u"A,44,+441", u"\"A,44,1")
    {
        const QByteArray file = "A,44,1\n" + line.toLatin1() + "\nA,44,1";
        Open(file);
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
        for (const auto &end : {u".bak"_s, u"-2.bak"_s, u"-3.bak"_s}) {
            Open(end.toLatin1());
            // A backup onto its own file is a save.
            m_book->Backup(m_path);
            QCOMPARE(ReadBytes(m_path), "");
            QCOMPARE(ReadBytes(m_path + u".20041115-103000"_s + end), end.toLatin1());
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

        QCOMPARE(RaisedByOpening(m_path + u"/ann.kpb"_s), u"75 Corvane.PhoneBook: Not a directory"_s);
    }

    // Its real file is "other.kpb".
    void eachCommandKeepsHoldOfTheFile()
    {
        QVERIFY(WriteBytes(m_other, "\"Ann\",44,\"1\"\r\n") && QFile::link(m_other, m_path));
        QVERIFY(QFile::setPermissions(m_other, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const QFile::Permissions mode = QFile::permissions(m_other);
        const QString backup = m_folder->filePath(u"backup.kpb"_s);
        LxPhoneBook holder(m_countries, m_clock);
        const std::function<void()> commands[] = {
            [&] { holder.OpenPhoneBook(m_path); }, [&] { holder.OpenPhoneBook(m_path); },
            [&] { holder.SavePhoneBook(); },       [&] { holder.Backup(m_other); },
            [&] { holder.Backup(backup); },        [&] { holder.Restore(backup); },
            [&] { holder.RevertToSaved(); }};
        for (const auto &command : commands) {
            command();
            QCOMPARE(RaisedByOpening(m_other), kInUse);
            QVERIFY(QFileInfo(m_path).isSymLink());
            QCOMPARE(QFile::permissions(m_other), mode);
        }
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
        QVERIFY(WriteBytes(m_other, file));
        Open(before);
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
        // It was told once; the next save has nothing to tell.
        QCOMPARE(m_book->SavePhoneBook(), QString());
        m_book->RevertToSaved();
        QCOMPARE(Printed(*m_book), QString(printed).remove(u";Empty"_s));
    }

    void theFileBeforeEachOfSevenDaysStays()
    {
        const auto mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        const auto others = u"ann.kpb.20041101-103000.bak ann.kpb.20041101.bak.bak ann.kpb.20041101.txt "
                            "ann.kpb.20041301.bak ann.kpb.200411.bak ann.kpb.bak bob.kpb.20041101.bak"_s.split(u' ');
        for (const QString &name : others)
            QVERIFY(WriteBytes(m_folder->filePath(name), "other"));
        Open("A,44,1\r\n");
        QVERIFY(QFile::setPermissions(m_path, mode));
        SaveDaily(9);
        for (const QString &name : others)
            QVERIFY2(QFile::remove(m_folder->filePath(name)), qPrintable(name));
        const QString copies = Copies();
        QVERIFY(copies.startsWith(u"20041109.bak "_s) && copies.count(u' ') == 6);
        QCOMPARE(Copy(u"20041109.bak"_s), "\"Day 8\",44,\"1\"\r\n");
        for (const QString &path : {m_path, m_path + u".20041109.bak"_s})
            QCOMPARE(QFile::permissions(path) & (mode | QFile::ReadOther), mode);
        // A restore spares the copy that it reads.
        QCOMPARE(ReadBytes(m_book->Restore(m_path + u".20041109.bak"_s)), "\"Day 15\",44,\"1\"\r\n");
        QVERIFY(Copies().startsWith(copies.first(12)));
    }

    // How long the skipped line is, and how long any file can get.
    TABLE_TEST(aFullDiskKeepsTheOldFileAndItsCopies, (int skipped, rlim_t room), {"room for nothing", 100, 0},
               {"room for the new file but not for the copies", 100, 50},
               {"room for the copies but not for the new file", 1, 11})
    {
        Open("A,44,1\r\n");
        SaveDaily(7);
        const QByteArray old = "A,44,1\r\n" + QByteArray(skipped, 'x') + "\r\n";
        Open(old);
        Rename(16);
        const QString before = Copies();
        std::optional<FileSizeLimit> fullDisk(room);
        QCOMPARE(Raised([this] { m_book->SavePhoneBook(); }), u"75 SaveFile: File too large"_s);
        fullDisk.reset();
        QCOMPARE(Copies(), before);
        QCOMPARE(ReadBytes(m_path), old);
        QCOMPARE(ReadBytes(m_book->SavePhoneBook()), old);
        QCOMPARE(Copy(u"20041116.bak"_s), old);
        QCOMPARE(ReadBytes(m_path), "\"Day 16\",44,\"1\"\r\n");
    }

    void theFileSurvivesAKill()
    {
        QVERIFY(WriteBytes(m_path, FileOf(0)));
        int edits = 0;
        for (int round = 0; round < 300; ++round) {
            const pid_t child = ::fork();
            if (child == 0) {
                m_book->OpenPhoneBook(m_path);
                Rename(++edits);
                m_book->SavePhoneBook();
                ::ualarm(1 + round * 100, 0); // which ends the process, wherever it is by then
                do {
                    Rename(++edits);
                } while (Raised([&] { m_book->SavePhoneBook(); }).isEmpty());
                ::_exit(2);
            }
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM);
            const QByteArray file = ReadBytes(m_path);
            const int found = file.mid(5, file.indexOf('"', 5) - 5).toInt();
            QVERIFY2(found > edits && file == FileOf(found), file);
            edits = found;
        }
    }
};

QTEST_GUILESS_MAIN(TestPhoneBook)
#include "test_phone_book.moc"
