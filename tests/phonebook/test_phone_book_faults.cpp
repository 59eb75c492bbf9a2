#include "DiskFaults.h"
#include "Fakes.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Raised.h"
#include "SampleCountries.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>

#include <algorithm>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

/// The file of a phone book of some hundred contacts that has been edited so often.
QByteArray FileOf(int edits)
{
    return ("\"Contact " + QByteArray::number(edits) + "\",44,\"07700 900123\",\"Work\"\r\n").repeated(300);
}

} // namespace

class TestPhoneBookFaults final : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_folder;
    const QString m_path = (SmallDisk().isEmpty() ? m_folder.path() : SmallDisk()) + u"/ann.kpb"_s;
    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;
    LxPhoneBook m_book{m_countries, m_clock};

    void Edit(int edits)
    {
        for (const LxContactPtr &contact : m_book.AllContacts())
            contact->SetName(u"Contact "_s + QString::number(edits));
    }

private slots:
    void SurvivesBeingKilled()
    {
        QVERIFY(WriteBytes(m_path, FileOf(0)));
        // The moments of death are spread over a few saves, however long one takes here.
        QElapsedTimer timer;
        timer.start();
        m_book.OpenPhoneBook(m_path);
        for (int i = 0; i < 3; ++i)
            m_book.SavePhoneBook();
        m_book.ClosePhoneBook();
        const int latest = static_cast<int>(std::clamp<qint64>(timer.nsecsElapsed() / 1000, 1000, 150'000));
        int edits = 0;
        for (int round = 0; round < 300; ++round) {
            const int moment = QRandomGenerator::global()->bounded(1, latest);
            const pid_t child = ::fork();
            QVERIFY(child >= 0);
            if (child == 0) {
                if (!Raised([&] { m_book.OpenPhoneBook(m_path); }).isEmpty())
                    ::_exit(2);
                KillThisProcessIn(moment);
                do {
                    Edit(++edits);
                } while (Raised([&] { m_book.SavePhoneBook(); }).isEmpty());
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
        constexpr qsizetype kPage = 4096;
        // A line that is skipped, so that the old file is due to be kept.
        const QByteArray old = FileOf(0) + "x\r\n";
        QVERIFY(WriteBytes(m_path, old));
        m_book.OpenPhoneBook(m_path);
        Edit(1);
        QFile filler(SmallDisk() + u"/filler"_s);
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        // There is room for nothing, for a part of the copy, and for the copy but not for the new file.
        for (const qsizetype freePages : {qsizetype(0), qsizetype(1), old.size() / kPage + 1}) {
            while (filler.write(QByteArray(kPage, 'f')) == kPage) {
            }
            QVERIFY(filler.resize(filler.size() - freePages * kPage) && filler.seek(filler.size()));
            QVERIFY(!Raised([this] { m_book.SavePhoneBook(); }).isEmpty());
            QCOMPARE(ReadBytes(m_path), old);
            QCOMPARE(QDir(SmallDisk()).entryList(QDir::Files).join(u' '), u"ann.kpb filler"_s);
        }
        QVERIFY(filler.remove());
        QCOMPARE(ReadBytes(m_book.SavePhoneBook()), old);
        QCOMPARE(ReadBytes(m_path), FileOf(1));
    }
};

QTEST_GUILESS_MAIN(TestPhoneBookFaults)
#include "test_phone_book_faults.moc"
