#include "FakePrompts.h"
#include "LxCountryList.h"
#include "PhoneNumbers.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;

/// The country table as the build puts it beside the program.
class TestCountries final : public QObject
{
    Q_OBJECT

private slots:
    void NumbersFindTheirCountries()
    {
        // A fault in the table (a bad field, a code that comes twice, a blank line) would raise a prompt.
        FakePrompts prompts;
        LxCountryList countries;
        countries.LoadCountries(QStringLiteral(PROGRAM_DIR), {}, prompts);
        QVERIFY(countries.Countries().size() > 200);
        const auto codeOf = [&countries](const QString &number) {
            const auto split = PhoneNumbers::SplitInternational(countries, number);
            return split ? QString::number(split->code) : u"none"_s;
        };
        // A code that stood behind one that begins with it would take its numbers. No code goes on with a 0 here.
        for (const LxCountry &country : countries.Countries())
            QCOMPARE(codeOf(u"+%1000000"_s.arg(country.CountryCode)), QString::number(country.CountryCode));
        CompareTable({{u"+18495550100", u"1849"}, {u"+77015550100", u"7"}, {u"+999123456", u"none"}}, codeOf);
        QVERIFY(countries.Lookup(44).CountryName.startsWith(u"United Kingdom"_s));
    }
};

QTEST_GUILESS_MAIN(TestCountries)
#include "test_countries.moc"
