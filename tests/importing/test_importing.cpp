#include "Candidates.h"
#include "ContactFile.h"
#include "Error.h"
#include "FakePrompts.h"
#include "Fakes.h"
#include "Files.h"
#include "LxCountryList.h"
#include "NumberJudge.h"
#include "Printed.h"
#include "Raised.h"
#include "Rows.h"

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class TestImporting final : public QObject
{
    Q_OBJECT

    const NumberJudge &m_judge = NumberJudge::Load(QStringLiteral(PROGRAM_DIR));
    LxCountryList m_countries;
    const FixedClock m_clock;
    const QDir m_samples{QStringLiteral(SAMPLES_DIR)};

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

    [[nodiscard]] static QString Line(const Candidate &candidate)
    {
        static const QStringList s_kinds{u"NoNumber"_s, u"NotANumber"_s,  u"NotServed"_s, u"UnknownCountry"_s,
                                         u"Landline"_s, u"MayBeMobile"_s, u"Mobile"_s};
        return (candidate.isTicked ? u"x "_s : u"- "_s) + s_kinds[static_cast<int>(candidate.judged.kind)] + u": "_s +
               candidate.name + u' ' + candidate.judged.International() + u" ["_s + candidate.groups.join(u';') + u']' +
               (candidate.sameAsRow < 0 ? QString() : u" as row %1"_s.arg(candidate.sameAsRow)) +
               (candidate.isKnown ? u" known as "_s + candidate.knownAs : QString());
    }

    static void Add(LxPhoneBook &book, const QString &name, const QString &mobile)
    {
        const LxContactPtr contact = book.CreateHomeContact();
        contact->SetName(name);
        contact->SetUserMobile(mobile);
        book.AllContacts().Add(contact);
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
        for (const QString &file : m_samples.entryList({u"*.vcf"_s, u"*.csv"_s, u"*.txt"_s}))
            QTest::newRow(qPrintable(file)) << file;
    }
    void samplesGiveTheirContacts()
    {
        QFETCH(QString, file);
        QStringList expected = QString::fromUtf8(ReadBytes(m_samples.filePath(file + u".expected"_s))).split(u'\n');
        const QString region = expected.takeFirst().section(u' ', 1);
        LxPhoneBook book(m_countries, m_clock);
        Add(book, u"Kim"_s, u"7400999999"_s);
        QStringList printed;
        try {
            for (const Candidate &candidate : CandidatesOf(ReadBytes(m_samples.filePath(file)), region, book))
                printed += Line(candidate);
        } catch (const Error &error) {
            printed += u"! "_s + error.Description();
        }
        QCOMPARE(printed.join(u'\n') + u'\n', expected.join(u'\n'));
    }

    // Rows of a table end with "/". How many hold people, and what the columns are for: N name, F first name, L last
    // name, M mobile, C country code, G groups, with the label h for home and work, c for mobile, o for others, and its
    // column.
    TABLE_TEST(columnsAreProposed, (const QString &table, const QString &proposed),
               u"Name,Mobile/Ann,07400 123456 -> 1 N Mc", u"Name,Vorname,Handy/Lee,Ann,0151 23456789 -> 1 L F Mc",
               u"Name;Surname;Mobile/Ann;Lee;1 -> 1 F L Mc",
               u"Anrede;Vor- und Nachname;Handy/Herr;Al Lee;1 -> 1 - N Mc", u"Nachname, Vorname;Tel/Lee, Al;1 -> 1 N M",
               u"Cognome e nome;Tel/Lee Al;1 -> 1 N M", u"x;Nom Prénom;Tel/Mr;Lee Al;1 -> 1 - N M",
               u"File As,Last Name,Tel/Lee Al,Lee,1 -> 1 - L M", u"Speichern unter;Tel/Lee Al;1 -> 1 N M",
               u"File As,Name,Tel/Lee Al,Al,1 -> 1 - N M", u"nom;prénom;portable/Lee;Zoé;06 12 34 56 78 -> 1 L F Mc",
               u"Nombre;Móvil/Ana;612345678 -> 1 N Mc",
               u"Full Name,Given Name,Surname,Display Name,Mobile/a,b,c,d,1 -> 1 N F L - Mc",
               u"Name,Mobile Email,Mobile Carrier,Mobile Phone Model/a,b,c,d -> 1 N -c -c -c",
               u"Name,Phonetic Name,Telefax,Telefon Firma,Emergency Phone/a,b,1,2,3 -> 1 N - -o -o -o",
               u"Name,Firmenhandy,Company mobile,Portable société/a,1,2,3 -> 1 N Mc Mc Mc",
               u"Name,Móvil empresa,Cellulare aziendale,Teléfono del ayudante/a,1,2,3 -> 1 N Mc Mc -o",
               u"Name,Cel.,WhatsApp,Tfno,Telnr/a,1,2,3,4 -> 1 N Mc Mc M M",
               u"Name,Telefon (privat),Rufnummer,Fixe,Tel/a,1,2,3,4 -> 1 N Mh M -h M",
               u"Name,Phone Country Code,Phone Number,Phone Type/Ann,44,07400123456,Home -> 1 N C M3 -",
               u"Who,Ring,Born,Post/Ann Lee,07400 123456,19800131,01310-100/Bo,07400 1234567,19800228,12345-678 -> "
               u"2 N M - -",
               u"Name,Customer,Value/Ann,100000001,+447400123456/Bob,100000002,+447400123457 -> 2 N - M",
               u"Name,Ring/Ann,2015550123/Bob,2015550124 -> 2 N M", u"Name,Ring/Ann,192.168.10.100 -> 1 N -",
               u"Name,Ring/Ann,31.01.1980/Bob,1980-01-31 10:00 -> 2 N -", u"Ann,Lee,+44,7400 123456 -> 1 F L C M",
               u"Ann Lee,London,07400 123456 -> 1 N - M", u"a@example.com,Ann,07400 123456 -> 1 - N M",
               u"Ann,x/Bob,y -> 2 F L", u"Name,a@example.com/Bob,b@example.com -> 2 N -", u"Mobile,17/Bob,18 -> 2 N -",
               u"x,y,z/Ann,07400 123456,1/Bob,07400 123457,2 -> 2 N M -")
    {
        const auto content = ContactFile::Read(QString(table).replace(u'/', u'\n').toUtf8());
        QString printed = QString::number(content.table.RowCount());
        for (const ImportColumn &column : content.columns) {
            printed += u' ' + QString(u"-NFLMCG"[static_cast<int>(column.role)]) +
                       QStringList{QString(), u"c"_s, u"h"_s, u"o"_s}[static_cast<int>(column.label)] +
                       (column.labelColumn < 0 ? QString() : QString::number(column.labelColumn));
        }
        QCOMPARE(printed, proposed);
    }

    // A number, its country and whether its label is 1, mobile, 2, home or work, or 3, somebody else's; what it is,
    // seen from Germany.
    TABLE_TEST(numbersAreJudged, (const QString &text, const QString &judged), u"+12015550123||1 -> 6 +12015550123",
               u"+12015550123||2 -> 4 +12015550123", u"0151 23456789||2 -> 6 +4915123456789",
               u"030 123456||1 -> 4 +4930123456", u"0151 23456789||3 -> 4 +4915123456789", u"0151||3 -> 1 ",
               u"06 12 34 56 78|fr -> 6 +33612345678", u"512 345 678|Polska -> 6 +48512345678",
               u"07400 123456|united kingdom -> 6 +447400123456", u"+447400123456|FR -> 6 +447400123456",
               u"07400 123456|England -> 6 +447400123456", u"201 555 0123|U.S.A.|1 -> 6 +12015550123",
               u"06 12 34 56 78|FRANKREICH -> 6 +33612345678", u"612345678|España -> 6 +34612345678",
               u"8 912 345-67-89|RU -> 6 +79123456789", u"07400 123456|Royaume-Uni -> 6 +447400123456",
               u"0151 23456789|Nowhere -> 3 ", u"4915123456789|Nowhere -> 3 ",
               u"+44 7400 123456|Nowhere -> 6 +447400123456", u"210-1234|+1876 -> 6 +18762101234",
               u"TEL: +44 (0)7400 123456 -> 6 +447400123456", u"0151 23456789 x 12 -> 4 +4915123456789",
               u"０１５１ ２３４５６７８９ -> 6 +4915123456789", u"0900 1 123456||1 -> 4 +499001123456",
               u"+447700900123||2 -> 4 +447700900123", u"0151 CALLBOSS -> 1 ", u"31.01.1980|DK -> 1 ", u"0151 -> 1 ",
               u"+44 7400 123456 7890 1234 -> 1 +44740012345678901234", u"+44 79111 -> 1 +4479111", u"+44 -> 1 ",
               u"491512345678.9 -> 1 ", u"4915123456789.0 -> 5 +4915123456789", u"491512345678,90 -> 1 ",
               u"+888 123 456 78901 -> 2 ", u"\u200B|DE -> 0 ")
    {
        const QStringList cells = text.split(u'|') + QStringList{QString(), QString()};
        const JudgedNumber number = NumberRules(m_judge, m_countries, u"DE"_s)
                                        .Judge(cells[0], cells[1], static_cast<NumberLabel>(cells[2].toInt()));
        QCOMPARE(QString::number(static_cast<int>(number.kind)) + u' ' + number.International(), judged);
    }

    void takingIsOneStep()
    {
        LxPhoneBook book(m_countries, m_clock);
        book.Groups().CreateGroup(u"Imported"_s);
        book.Groups().CreateGroup(u"Work"_s);
        const QByteArray file =
            "Name,Mobile,Groups\nAnn,07400123456;07400123457,Work;New\nBob,07400123458,Everyone;New\n"
            "Cat,020 7946 0000,New\nDan,x,Work\n" +
            QByteArray(60, 'z') + ",07400123459;07400123460,\n";
        std::vector<Candidate> candidates = CandidatesOf(file, u"GB"_s, book);
        candidates[2].isTicked = false;
        candidates[3].isTicked = candidates[4].isTicked = true;
        // Nothing of it stays when one cannot come in.
        std::vector<Candidate> damaged = candidates;
        damaged.back().judged.countryCode = 999;
        QCOMPARE(Raised([&] { (void)Candidates::Take(damaged, true, book); }),
                 u"-2147221503 Corvane.Contact: Invalid country 999"_s);
        QCOMPARE(Printed(book), u" | Everyone;Imported;Work"_s);

        const Candidates::Taken taken = Candidates::Take(candidates, true, book);
        QCOMPARE(Printed(book).replace(QString(46, u'z'), u"z.."_s),
                 u"Ann 44 7400123456 [Imported (2);Work;New]\nAnn (2) 44 7400123457 [Imported (2);Work;New]\n"
                 u"Cat 44 2079460000 [Imported (2);New]\nz..zzzz 44 7400123459 [Imported (2)]\n"
                 u"z.. (2) 44 7400123460 [Imported (2)] | Everyone;Imported;Work;Imported (2);New"_s);
        QVERIFY(taken.contacts == 5 && taken.newGroups == 1);
        candidates[2].isTicked = true;
        QCOMPARE(Candidates::Take(std::span(candidates).subspan(2, 1), false, book).group->Count(), 1);
        QCOMPARE(book.Groups().Lookup(u"New"_s)->Count(), 3);
        QVERIFY(!Candidates::Take({}, true, book).group);
    }

    void cardsComeBackWhole()
    {
        LxPhoneBook book(m_countries, m_clock);
        for (const QString &name :
             {u"Ann, \\; Lee"_s, u"Zoë 😀 می‌خواهم"_s, QString(50, u'Ж'), u"two  blanks"_s})
            Add(book, name, u"740012345%1"_s.arg(book.AllContacts().Count()));
        const LxContactPtr first = book.AllContacts().ContactList().Item(1);
        for (const QString &group : {u"Friends, old"_s, u"back\\slash"_s, QString(50, u'山')})
            first->AddToGroup(book.Groups().CreateGroup(group));
        const QTemporaryDir folder;
        book.Export(folder.filePath(u"a"_s), book.AllContacts(), LxPhoneBook::ExportKind::VCards);
        const QByteArray bytes = ReadBytes(folder.filePath(u"a"_s));
        QVERIFY(bytes.startsWith(
            "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Ann\\, \\\\\\; Lee\r\nTEL;TYPE=cell:+447400123450\r\nCATEGORIES:"));
        for (const QByteArray &line : bytes.split('\n'))
            QVERIFY2(line.size() <= 76 && line.isValidUtf8(), line);
        LxPhoneBook again(m_countries, m_clock);
        (void)Candidates::Take(CandidatesOf(bytes, u"DE"_s, again), true, again);
        QCOMPARE(Printed(again).remove(u"Imported;"_s).remove(u"Imported"_s), Printed(book));
    }

    void aMillionRowsAndNoPlugin()
    {
        QByteArray file = "Name;Vorname;Handy\r\n";
        for (int i = 0; i < 1'000'000; ++i)
            file += "\"Lee\";Ann;0151" + QByteArray::number(20'000'000 + i) + "\r\n";
        const ContactFile::Content content = ContactFile::Read(file);
        std::vector<Candidate> candidates = Candidates::Of(content.table, content.columns);
        QCOMPARE(candidates.size(), size_t(1'000'000));
        QCOMPARE(candidates.back().number, u"015120999999"_s);
        QVERIFY(!Candidates::Judge(candidates, NumberRules(m_judge, m_countries, u"DE"_s), true));
        QCOMPARE(candidates.front().judged.kind, NumberKind::NoNumber);
        QVERIFY(Raised([] { (void)NumberJudge::Load(u"/nowhere"_s); }).startsWith(u"53 Corvane.NumberJudge: Phone"_s));
    }
};

QTEST_GUILESS_MAIN(TestImporting)
#include "test_importing.moc"
