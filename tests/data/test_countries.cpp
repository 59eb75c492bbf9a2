#include "FakePrompts.h"
#include "LxCountryList.h"
#include "PhoneNumbers.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool IsPrefix(const LxCountry &country, const LxCountry &other)
{
    return country.CountryCode != other.CountryCode &&
           QString::number(other.CountryCode).startsWith(QString::number(country.CountryCode));
}

} // namespace

/// The country table as the build puts it beside the program.
class TestCountries final : public QObject
{
    Q_OBJECT

private slots:
    /// A fault in the table (a bad field, a code that comes twice, a blank line) would raise a prompt.
    void initTestCase()
    {
        FakePrompts prompts;
        m_countries.LoadCountries(QStringLiteral(PROGRAM_DIR), {}, prompts);
        QVERIFY(m_countries.Countries().size() > 200);
    }

    void CodeStandsBeforeThoseItBegins()
    {
        const QList<LxCountry> &countries = m_countries.Countries();
        for (auto later = countries.begin(); later != countries.end(); ++later) {
            for (auto earlier = countries.begin(); earlier != later; ++earlier)
                QVERIFY2(!IsPrefix(*later, *earlier), qPrintable(earlier->CountryName));
        }
    }

    void NamesAreAlphabeticalButForCodesThatBeginOthers()
    {
        const QList<LxCountry> &countries = m_countries.Countries();
        QString previous;
        for (const LxCountry &country : countries) {
            QVERIFY(!country.CountryName.isEmpty());
            const auto isPrefix = [&country](const LxCountry &other) { return IsPrefix(country, other); };
            if (std::any_of(countries.begin(), countries.end(), isPrefix))
                continue;
            QVERIFY2(previous.compare(country.CountryName, Qt::CaseInsensitive) < 0, qPrintable(country.CountryName));
            previous = country.CountryName;
        }
    }

    void NumberFindsItsCountry_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("local");
        QTest::newRow("United States") << u"+12125550100"_s << 1 << u"2125550100"_s;
        QTest::newRow("Jamaica, not United States") << u"+18765550100"_s << 1876 << u"5550100"_s;
        QTest::newRow("Dominican Republic, newest code") << u"+18495550100"_s << 1849 << u"5550100"_s;
        QTest::newRow("United Kingdom") << u"+447700900123"_s << 44 << u"7700900123"_s;
        QTest::newRow("Kazakhstan, with Russia") << u"+77015550100"_s << 7 << u"7015550100"_s;
        QTest::newRow("Ireland") << u"+353851234567"_s << 353 << u"851234567"_s;
        QTest::newRow("unassigned") << u"+999123456"_s << 0 << QString();
    }

    void NumberFindsItsCountry()
    {
        QFETCH(const QString, number);
        QFETCH(const int, code);
        QFETCH(const QString, local);
        const auto split = PhoneNumbers::SplitInternational(m_countries, number);
        QCOMPARE(split ? int(split->code) : 0, code);
        QCOMPARE(split ? split->local : QString(), local);
    }

private:
    LxCountryList m_countries;
};

QTEST_GUILESS_MAIN(TestCountries)
#include "test_countries.moc"
