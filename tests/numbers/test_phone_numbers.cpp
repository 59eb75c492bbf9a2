#include "LxCountryList.h"
#include "PhoneNumbers.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;
using namespace PhoneNumbers;

class TestPhoneNumbers final : public QObject
{
    Q_OBJECT

private slots:
    void Cleans_data()
    {
        AddTextTable({{u"", u""},
                      {u"07700 900-123", u"07700900123"},
                      {u"+44 (0)7700 900123", u"+447700900123"},
                      {u"0044 7700.900.123", u"+447700900123"},
                      {u"+44 [0] 20", u"+44020"},
                      {u"0(0)12345", u"012345"},
                      {u"(0)1(0)2", u"12"},
                      {u"([0])1", u"1"},
                      // What only forms when "(0)" is taken out is not taken out again.
                      {u"((0)0)1", u"01"},
                      {u"(00) 44", u"+44"},
                      {u"0-0", u"+"},
                      {u"0000", u"+00"},
                      {u"100200", u"100200"},
                      {u"07700/9OO#1\t", u"07700/9OO#1\t"}});
    }
    void Cleans()
    {
        QFETCH(const QString, in);
        QTEST(CleanPhoneNumber(in), "out");
    }

    void Classifies_data()
    {
        // The last are Arabic digits, which are none here.
        AddTextTable({{u"", u""},
                      {u"+", u""},
                      {u"0", u"digits code "},
                      {u"7", u"digits local code "},
                      {u"1234", u"digits valid local "},
                      {u"0123", u"digits valid "},
                      {u"+1", u"international "},
                      {u"+1234", u"international valid "},
                      {u"+0123", u"valid "},
                      {u"++1234", u""},
                      {u"+00", u""},
                      {u"07700 1", u""},
                      {u"077009OO123", u""},
                      {u"\u0661\u0662\u0663\u0664", u""}});
    }
    void Classifies()
    {
        QFETCH(const QString, in);
        const auto when = [](bool is, const QString &name) { return is ? name : QString(); };
        QTEST(when(IsAllDigits(in), u"digits "_s) + when(IsInternationalNumber(in), u"international "_s) +
                  when(IsValidPhoneNumber(in), u"valid "_s) + when(IsLocalNumber(in), u"local "_s) +
                  when(IsDiallingCode(in), u"code "_s),
              "out");
    }

    void RemovesPrefixes()
    {
        QCOMPARE(RemoveTrunkZero(u"007"_s), u"07"_s);
        QCOMPARE(RemoveTrunkZero(u"70"_s), u"70"_s);
        QCOMPARE(RemovePlus(u"++1"_s), u"+1"_s);
        QCOMPARE(RemovePlus(u"1+"_s), u"1+"_s);
    }

    void SplitsInternationalNumbers_data()
    {
        // The codes of the country list, in its order, and the number.
        AddTextTable({{u"1,44,353:+447700900123", u"44/7700900123"},
                      {u"1,44:+44", u"44/"},
                      {u"1,44,1876:+18765550100", u"1876/5550100"},
                      {u"1876,1:+18765550100", u"1/8765550100"},
                      {u"32767:+32767x", u"32767/x"},
                      {u"353:+35", u"none"},
                      {u"353:+35 3", u"none"},
                      {u"44:447700900123", u"none"},
                      {u"44:++44770", u"none"},
                      {u"44:+044770", u"none"},
                      {u"1,0:+0123", u"none"},
                      {u"1,0:+1023", u"1/023"},
                      {u":+447", u"none"},
                      {u"44:", u"none"}});
    }
    void SplitsInternationalNumbers()
    {
        QFETCH(const QString, in);
        LxCountryList countries;
        for (const QString &code : in.section(u':', 0, 0).split(u',', Qt::SkipEmptyParts))
            QVERIFY(countries.Add({u"X"_s, code.toShort(), false}));
        const auto split = SplitInternational(countries, in.section(u':', 1));
        QTEST(split ? u"%1/%2"_s.arg(split->code).arg(split->local) : u"none"_s, "out");
    }
};

QTEST_GUILESS_MAIN(TestPhoneNumbers)
#include "test_phone_numbers.moc"
