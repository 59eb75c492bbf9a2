#include "EmailAddresses.h"
#include "FakePrompts.h"
#include "Files.h"
#include "LxCountryList.h"
#include "PhoneNumbers.h"
#include "Rows.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace PhoneNumbers;

static const auto kHeader = "Code,Country,Guaranteed\r\n"_ba;

class TestNumbers final : public QObject
{
    Q_OBJECT

private:
    FakePrompts m_prompts;

    void ExpectQuestion(int line, PromptAnswer answer)
    {
        const auto text = u"Error reading line %1 in countries.csv\r\n\r\nContinue reading data from the file?"_s;
        m_prompts.ExpectBox(text.arg(line), PromptIcon::Critical, answer);
    }
    /// Every country of the file as "code name", with "!" when guaranteed.
    QString Loaded(const QByteArray &file, const QStringList &arguments = {})
    {
        const QTemporaryDir folder;
        LxCountryList list;
        WriteBytes(folder.filePath(u"countries.csv"_s), file);
        list.LoadCountries(folder.path(), arguments, m_prompts);
        m_prompts.VerifyAllCame();
        QStringList printed;
        for (const auto &[name, code, isGuaranteed] : list.Countries())
            printed += QString::number(code) + (isGuaranteed ? u"! "_s : u" "_s) + name;
        return printed.join(u'|');
    }

private slots:
    void countriesAreReadInTheOrderOfTheFile()
    {
        QCOMPARE(Loaded(kHeader + "353,Ireland,0\r\n1,Canada,1\n2,B,-1\r"), u"353 Ireland|1! Canada|2! B"_s);
        QCOMPARE(Loaded(kHeader + "  44,  \"Korea, South\" x, 0\r\n\"1\",\"A\",\"1\"\r\n"), u"44 Korea, South|1! A"_s);
        QCOMPARE(Loaded(kHeader + "32767,C\xF4te d\x92Ivoire,0"), u"32767 Côte d’Ivoire"_s);
        QCOMPARE(Loaded(kHeader, {u"x"_s, u"--UseTestCountry=1"_s}), u"99 Test Country"_s);
    }

    void noCountryIsReadAfterANo()
    {
        // After the first bad record the question comes for good ones too, to the first No.
        for (const int line : {3, 4, 5})
            ExpectQuestion(line, line < 5 ? PromptAnswer::Yes : PromptAnswer::No);
        QCOMPARE(Loaded(kHeader + "1,A,0\r\n2,B,yes\r\n3,C,0\r\n4,D,0\r\n5,E,0\r\n"), u"1 A|3 C|4 D"_s);
        m_prompts.ExpectBoxBeginning(u"No country data was found in countries.csv"_s, PromptIcon::Critical);
        QCOMPARE(Loaded(kHeader), u""_s);
        m_prompts.ExpectBoxBeginning(u"Wrong number of columns in countries.csv."_s, PromptIcon::Critical);
        QCOMPARE(Loaded("Code,\"Country, name\",Guaranteed\r\n1,A,0\r\n"), u""_s);
    }

    TABLE_TEST(badCountriesAreAskedAbout, (const QByteArray &bad), {"a code out of range", "32768,B,0\r\n"},
               {"a code that is taken", "1,B,0\r\n"}, {"too few fields", "2,B"}, {"an open quote", "2,\"B,0\r\n"})
    {
        ExpectQuestion(3, PromptAnswer::Yes);
        QCOMPARE(Loaded(kHeader + "1,A,0\r\n" + bad), u"1 A"_s);
    }

    // The table as the build puts it beside the program.
    void numbersFindTheCountriesOfTheProgram()
    {
        // A fault in the table (a bad field, a code that comes twice, a blank line) would raise a prompt.
        LxCountryList countries;
        countries.LoadCountries(QStringLiteral(PROGRAM_DIR), {}, m_prompts);
        QVERIFY(countries.Countries().size() > 200);
        // A code that stood behind one that begins with it would take its numbers. No code goes on with a 0 here.
        QString astray;
        for (const LxCountry &country : countries.Countries()) {
            const auto split = SplitInternational(countries, u"+%1000000"_s.arg(country.CountryCode));
            if (!split || split->code != country.CountryCode)
                astray += u' ' + country.CountryName;
        }
        QCOMPARE(astray, QString());
        QVERIFY(countries.Lookup(44).CountryName.startsWith(u"United Kingdom"_s));
    }

    TABLE_TEST(emailAddressesAreChecked, (const QString &address, const QString &valid),
               u"ANN.O'Hara_x-1@A-1.EXAMPLE -> valid", u"@a.b -> valid", u"a@.b.c -> valid", u"", u"a.b@c", u"a@.b",
               u"a@b.", u"a.b.c", u"a@b@c.d", u"a+b@c.d", u"\u212A@c.d")
    {
        QCOMPARE(EmailAddresses::IsValidEmailAddress(address), !valid.isEmpty());
    }

    TABLE_TEST(numbersAreCleaned, (const QString &typed, const QString &clean), u"07700 900-123 -> 07700900123",
               u"+44 (0)7700 900123 -> +447700900123", u"0044 7700.[0] -> +4477000",
               // What only forms when "(0)" is taken out is not taken out again.
               u"((0)0)1 -> 01", u"(00) 0044 -> +0044", u"100200/9OO#1\t -> 100200/9OO#1\t")
    {
        QCOMPARE(CleanPhoneNumber(typed), clean);
    }

    // The last are Arabic digits, which are none here.
    TABLE_TEST(numbersAreClassified, (const QString &number, const QString &kinds), u"", u"+", u"077009OO1",
               u"0123 -> valid ", u"1234 -> valid local", u"+1234 -> international valid ", u"\u0661\u0662\u0663\u0664")
    {
        const auto when = [](bool is, const QString &name) { return is ? name : QString(); };
        QCOMPARE(when(IsInternationalNumber(number), u"international "_s) +
                     when(IsValidPhoneNumber(number), u"valid "_s) + when(IsLocalNumber(number), u"local"_s),
                 kinds);
    }

    // The code 0 counts for nothing.
    TABLE_TEST(theLastCodeOfTheListThatFitsSplitsANumber, (const QString &number, const QString &split),
               u"+1876x -> 1876/x", u"+44 -> 44/", u"+1023 -> 1/023", u"+3531 -> 35/31", u"+4 -> none", u"4477 -> none",
               u"++447 -> none", u"+0123 -> none", u"+327671 -> 32767/1")
    {
        LxCountryList countries;
        for (const int code : {0, 1, 44, 1876, 353, 35, 32767})
            countries.Add({u"X"_s, static_cast<qint16>(code), false});
        const auto parts = SplitInternational(countries, number);
        QCOMPARE(parts ? u"%1/%2"_s.arg(parts->code).arg(parts->local) : u"none"_s, split);
    }
};

QTEST_GUILESS_MAIN(TestNumbers)
#include "test_numbers.moc"
