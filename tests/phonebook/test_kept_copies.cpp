#include "Fakes.h"
#include "FileSizeLimit.h"
#include "Files.h"
#include "Printed.h"
#include "Raised.h"
#include "SampleCountries.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class TestKeptCopies final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    FixedClock m_clock;
    std::optional<QTemporaryDir> m_folder;
    QString m_path;
    std::optional<LxPhoneBook> m_book;

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
    [[nodiscard]] QString Copy(const QString &end) const { return QString::fromLatin1(ReadBytes(m_path + u'.' + end)); }

    void Rename(int day)
    {
        for (const LxContactPtr &contact : m_book->AllContacts())
            contact->SetName(u"Day "_s + QString::number(day));
    }

    /// Saves on so many days, up to the fifteenth.
    void SaveDaily(int days)
    {
        for (int day = 16 - days; day <= 15; ++day) {
            m_clock.now.setDate(QDate(2004, 11, day));
            Rename(day);
            QCOMPARE(m_book->SavePhoneBook(), QString());
        }
    }

private slots:
    void init()
    {
        m_clock.now = FixedClock().now;
        m_folder.emplace();
        m_path = m_folder->filePath(u"ann.kpb"_s);
        m_book.emplace(m_countries, m_clock);
    }

    void theFirstSaveOfADayKeepsTheFileAsItWas()
    {
        const auto mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        Open("A,44,1\r\n");
        QVERIFY(QFile::setPermissions(m_path, mode));
        for (const int time : {1, 2, 23}) {
            m_clock.now.setTime(QTime(time, 0));
            Rename(time);
            QCOMPARE(m_book->SavePhoneBook(), QString());
            QCOMPARE(Copies() + u' ' + Copy(u"20041115.bak"_s), u"20041115.bak A,44,1\r\n"_s);
        }
        QCOMPARE(QFile::permissions(m_path + u".20041115.bak"_s), QFile::permissions(m_path));
        QCOMPARE(QFile::permissions(m_path) & (mode | QFile::ReadOther), mode);
        m_clock.now = m_clock.now.addSecs(3600);
        m_book->SavePhoneBook();
        QCOMPARE(Copies() + u' ' + Copy(u"20041116.bak"_s), u"20041115.bak 20041116.bak \"Day 23\",44,\"1\"\r\n"_s);
    }

    void aNewOrEmptyFileLeavesNoCopyAndIsTheOwnersAlone()
    {
        m_path = m_folder->filePath(u"new/ann.kpb"_s);
        m_book->OpenPhoneBook(m_path);
        m_book->SavePhoneBook();
        m_book->Restore(m_path);
        QCOMPARE(QDir(m_folder->filePath(u"new"_s)).entryList(QDir::Files), QStringList(u"ann.kpb"_s));
        constexpr auto kOthers = QFile::ReadGroup | QFile::ReadOther;
        QVERIFY(!(QFile::permissions(m_path) & kOthers));
        QVERIFY(!(QFile::permissions(m_folder->filePath(u"new"_s)) & kOthers));
        QCOMPARE(Raised([this] { m_book->OpenPhoneBook(m_path + u"/new/ann.kpb"_s); }),
                 u"75 Corvane.PhoneBook: Not a directory"_s);
    }

    void theNewestSevenDaysStay()
    {
        const auto others =
            u"20041101-103000.bak 20041101.bak.bak 20041101.txt 20041301.bak 200411.bak bak"_s.split(u' ');
        for (const QString &end : others)
            QVERIFY(WriteBytes(m_path + u'.' + end, end.toLatin1()));
        const QString bob = m_folder->filePath(u"bob.kpb.20041101.bak"_s);
        QVERIFY(WriteBytes(bob, "Bob"));
        Open("A,44,1\r\n");
        SaveDaily(9);
        QStringList copies = Copies().split(u' ');
        for (const QString &end : others)
            QVERIFY2(copies.removeOne(end), qPrintable(end));
        QCOMPARE(copies.join(u' '), u"20041109.bak 20041110.bak 20041111.bak 20041112.bak 20041113.bak 20041114.bak "
                                    "20041115.bak"_s);
        QCOMPARE(Copy(u"20041109.bak"_s), u"\"Day 8\",44,\"1\"\r\n"_s);
        QVERIFY(QFile::exists(bob));
    }

    void aSaveThatFailsMakesAndRemovesNone_data()
    {
        QTest::addColumn<int>("room");
        QTest::newRow("for nothing") << 0;
        QTest::newRow("for the copy alone") << 20;
    }
    void aSaveThatFailsMakesAndRemovesNone()
    {
        QFETCH(const int, room);
        Open("A,44,1\r\nx\r\n");
        m_book->RevertToSaved();
        m_book->SavePhoneBook();
        SaveDaily(7);
        const QString before = Copies();
        m_clock.now = m_clock.now.addDays(1);
        Rename(1000000);
        const auto save = [&] {
            const FileSizeLimit limit(room);
            m_book->SavePhoneBook();
        };
        QCOMPARE(Raised(save), u"75 SaveFile: File too large"_s);
        QCOMPARE(Copies(), before);
        QCOMPARE(ReadBytes(m_path), "\"Day 15\",44,\"1\"\r\n");
        m_book->SavePhoneBook();
        QCOMPARE(Copy(u"20041116.bak"_s), u"\"Day 15\",44,\"1\"\r\n"_s);
    }

    void aRestoreKeepsTheFileThatItReplacesAndTheOneThatItReads_data()
    {
        QTest::addColumn<bool>("isSavedFirst");
        QTest::newRow("the phone book was saved, which drops the oldest day") << true;
        QTest::newRow("it is the first save of the day") << false;
    }
    void aRestoreKeepsTheFileThatItReplacesAndTheOneThatItReads()
    {
        QFETCH(const bool, isSavedFirst);
        Open("A,44,1\r\n");
        SaveDaily(7);
        m_clock.now = m_clock.now.addDays(1);
        const QString oldest = m_path + u".20041109.bak"_s;
        if (isSavedFirst)
            m_book->SavePhoneBook(oldest);
        const QString kept = m_book->Restore(oldest);
        QCOMPARE(kept, m_path + u".20041116-103000.bak"_s);
        QCOMPARE(ReadBytes(kept), "\"Day 15\",44,\"1\"\r\n");
        QCOMPARE(Printed(*m_book), u"A 44 1 [] | Everyone"_s);
        QVERIFY(QFile::exists(oldest));
        QVERIFY(!(QFile::permissions(kept) & (QFile::ReadGroup | QFile::ReadOther)));
        // It was told once; the next save has nothing to tell.
        QCOMPARE(m_book->SavePhoneBook(), QString());
    }
};

QTEST_GUILESS_MAIN(TestKeptCopies)
#include "test_kept_copies.moc"
