#include "Error.h"
#include "FakePrompts.h"
#include "Files.h"
#include "LxCountryList.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const auto kHeader = "Code,Country,Guaranteed\r\n"_ba;

/// Every country as "code name", with "!" when guaranteed.
QString Printed(const LxCountryList &list)
{
    QStringList printed;
    for (const LxCountry &country : list.Countries())
        printed += QString::number(country.CountryCode) + (country.Guaranteed ? u"! "_s : u" "_s) + country.CountryName;
    return printed.join(u'|');
}

} // namespace

class TestCountryList final : public QObject
{
    Q_OBJECT

private:
    FakePrompts m_prompts;

    void ExpectReinstall(const QString &problem)
    {
        m_prompts.ExpectBox(problem + u"\r\n\r\nPlease re-install Brevio."_s, PromptIcon::Critical);
    }
    void ExpectQuestion(int line, PromptAnswer answer)
    {
        const auto text = u"Error reading line %1 in countries.csv\r\n\r\nContinue reading data from the file?"_s;
        m_prompts.ExpectBox(text.arg(line), PromptIcon::Critical, answer);
    }
    LxCountryList Loaded(const QByteArray &file, const QStringList &arguments = {})
    {
        const QTemporaryDir folder;
        LxCountryList list;
        if (!file.isNull() && !WriteBytes(folder.filePath(u"countries.csv"_s), file))
            QTest::qFail("cannot write the file", __FILE__, __LINE__);
        list.LoadCountries(folder.path(), arguments, m_prompts);
        m_prompts.VerifyAllCame();
        return list;
    }

private slots:
    void Reads_data()
    {
        QTest::addColumn<QByteArray>("records");
        QTest::addColumn<QString>("countries");
        QTest::addColumn<QList<int>>("questions");
        const auto add = [](const char *name, const QByteArray &records, const QString &countries,
                            const QList<int> &questions = {}) {
            QTest::newRow(name) << records << countries << questions;
        };
        add("file order", "44,UK,1\r\n353,Ireland,0\r\n1,Canada,1\r\n", u"44! UK|353 Ireland|1! Canada"_s);
        add("lone LF, no last line end", "44,UK,1\n1,US,0", u"44! UK|1 US"_s);
        add("CR at the end of the file", "44,UK,1\r", u"44! UK"_s);
        add("flags", "1,A,2\r\n2,B,-1\r\n3,C,0\r\n", u"1! A|2! B|3 C"_s);
        add("quotes and spaces", "  44,  \"Korea, South\" x, 0\r\n\"1\",\"A\",\"1\"\r\n", u"44 Korea, South|1! A"_s);
        add("a record over several lines", "1\r\n\"A\r\nB\",1\r\n2,C\r\n0", u"1! A\r\nB|2 C"_s);
        add("code page", "225,C\xF4te d\x92Ivoire,0", u"225 Côte d’Ivoire"_s);
        add("largest code", "32767,A,0\r\n", u"32767 A"_s);
        add("code out of range", "32768,A,0\r\n", u""_s, {2});
        add("asked again after good ones", "1,A,0\r\n2,B,yes\r\n3,C,0\r\n4,D,0\r\n", u"1 A|3 C|4 D"_s, {3, 4, 5});
        add("code is taken", "1,A,0\r\n1,B,0\r\n", u"1 A"_s, {3});
        add("file ends in a record", "1,A,0\r\n2,B", u"1 A"_s, {3});
        add("blank last line", "1,A,0\r\n\r\n", u"1 A"_s, {3});
        add("quote is never closed", "1,A,0\r\n2,\"B,0\r\n", u"1 A"_s, {3});
    }
    void Reads()
    {
        QFETCH(const QByteArray, records);
        QFETCH(const QString, countries);
        QFETCH(const QList<int>, questions);
        for (const int line : questions)
            ExpectQuestion(line, PromptAnswer::Yes);
        if (countries.isEmpty())
            ExpectReinstall(u"No country data was found in countries.csv"_s);
        QCOMPARE(Printed(Loaded(kHeader + records)), countries);
    }

    void StopsAtTheFirstNo()
    {
        ExpectQuestion(3, PromptAnswer::Yes);
        ExpectQuestion(4, PromptAnswer::No);
        QCOMPARE(Printed(Loaded(kHeader + "1,A,0\r\nx,B,0\r\n2,C,0\r\n3,D,0\r\n")), u"1 A|2 C"_s);
    }

    void RefusesOtherFiles()
    {
        const QStringList arguments = {u"usetestcountry"_s};
        for (const auto &header : {""_ba, "Code,Country\r\n"_ba, "Code;Country;Guaranteed\r\n"_ba,
                                   "Code,\"Country, name\",Guaranteed\r\n"_ba}) {
            ExpectReinstall(u"Wrong number of columns in countries.csv. There should be 3 columns."_s);
            QCOMPARE(Printed(Loaded(header, arguments)), u""_s);
        }
        ExpectReinstall(u"Cannot open countries.csv for reading."_s);
        QCOMPARE(Printed(Loaded({}, arguments)), u""_s);
    }

    void AddsTheTestCountry()
    {
        QCOMPARE(Printed(Loaded(kHeader, {u"x"_s, u"--UseTestCountry=1"_s})), u"99 Test Country"_s);
        QCOMPARE(Printed(Loaded(kHeader + "44,UK,1", {u"usetestcountry"_s})), u"44! UK|99 Test Country"_s);
        QCOMPARE(Printed(Loaded(kHeader + "99,A,1", {u"usetestcountry"_s})), u"99! A"_s);
        QCOMPARE(Printed(Loaded(kHeader + "99,A,1\r\n1,B,0", {u"use"_s, u"testcountry"_s})), u"99! A|1 B"_s);
    }

    void LooksUp()
    {
        const LxCountryList list = Loaded(kHeader + "44,United %1 Kingdom,1\r\n0,None,0\r\n");
        QStringList items;
        list.FillCountryCombo([&items](const QString &text, int data) { items += text + QString::number(data); });
        QCOMPARE(items, (QStringList{u"United %1 Kingdom (+44)44"_s, u"None (+0)0"_s}));
        QVERIFY(list.CountryExists(0));
        QVERIFY(!list.CountryExists(4));
        QCOMPARE(list.Lookup(44).CountryName, u"United %1 Kingdom"_s);
        QVERIFY_EXCEPTION_THROWN((void)list.Lookup(4), Error);
    }
};

QTEST_GUILESS_MAIN(TestCountryList)
#include "test_country_list.moc"
