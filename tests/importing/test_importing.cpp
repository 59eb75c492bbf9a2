#include "Candidates.h"
#include "ContactFile.h"
#include "Error.h"
#include "FakePrompts.h"
#include "Fakes.h"
#include "Files.h"
#include "LxCountryList.h"
#include "LxPhoneBook.h"
#include "NumberJudge.h"
#include "Raised.h"
#include "Rows.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

static const QString kSamples = QStringLiteral(SAMPLES_DIR "/");

class TestImporting final : public QObject
{
    Q_OBJECT

    const NumberJudge &m_judge = NumberJudge::Load(QStringLiteral(PROGRAM_DIR));
    LxCountryList m_countries;
    const FixedClock m_clock;

    /// The candidates of a file, judged and settled against a phone book.
    [[nodiscard]] std::vector<Candidate> CandidatesOf(const QByteArray &bytes, const QString &region,
                                                      const LxPhoneBook &book) const
    {
        const ContactFile::Content content = ContactFile::Read(bytes);
        std::vector<Candidate> candidates = Candidates::Of(content.table, content.columns);
        Candidates::Judge(candidates, NumberRules(m_judge, m_countries, region), false);
        Candidates::Settle(candidates, book);
        return candidates;
    }

    [[nodiscard]] static QString Printed(const Candidate &candidate)
    {
        static const QStringList s_kinds{u"NoNumber"_s, u"NotANumber"_s,  u"NotServed"_s,
                                         u"Landline"_s, u"MayBeMobile"_s, u"Mobile"_s};
        return (candidate.isTicked ? u"x "_s : u"- "_s) + s_kinds[static_cast<int>(candidate.judged.kind)] + u": "_s +
               candidate.name + u' ' + candidate.judged.International() + u" ["_s + candidate.groups.join(u';') +
               u']' + (candidate.sameAsRow < 0 ? QString() : u" as row %1"_s.arg(candidate.sameAsRow)) +
               (candidate.isKnown ? u" known as "_s + candidate.knownAs : QString());
    }

    LxContactPtr Add(LxPhoneBook &book, const QString &name, int code, const QString &mobile) const
    {
        LxContactPtr contact = book.CreateContact();
        contact->SetName(name);
        contact->SetCountryCode(code);
        contact->SetUserMobile(mobile);
        book.AllContacts().Add(contact);
        return contact;
    }

private slots:
    void initTestCase()
    {
        FakePrompts prompts;
        m_countries.LoadCountries(QStringLiteral(PROGRAM_DIR), {}, prompts);
    }

    void samplesGiveTheirContacts_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString &file : QDir(kSamples).entryList({u"*.vcf"_s, u"*.csv"_s, u"*.txt"_s}))
            QTest::newRow(qPrintable(file)) << file;
    }
    void samplesGiveTheirContacts()
    {
        QFETCH(QString, file);
        QStringList expected = QString::fromUtf8(ReadBytes(kSamples + file + u".expected"_s)).split(u'\n');
        const QString region = expected.takeFirst().section(u' ', 1);
        LxPhoneBook book(m_countries, m_clock);
        Add(book, u"Kim"_s, 44, u"7400999999"_s);
        QStringList printed;
        try {
            for (const Candidate &candidate : CandidatesOf(ReadBytes(kSamples + file), region, book))
                printed += Printed(candidate);
        } catch (const Error &error) {
            printed += u"! "_s + error.Description();
        }
        QCOMPARE(printed.join(u'\n') + u'\n', expected.join(u'\n'));
    }
};

QTEST_GUILESS_MAIN(TestImporting)
#include "test_importing.moc"
