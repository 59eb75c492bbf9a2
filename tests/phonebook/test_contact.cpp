#include "LxContact.h"
#include "LxGroup.h"
#include "Raised.h"
#include "SampleCountries.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString Printed(const LxContact &contact)
{
    return u"%1 [%2] %3 %4"_s.arg(QString::number(contact.CountryCode()), contact.UserMobile(), contact.LocalMobile(),
                                  contact.InternationalMobile());
}

QString ContactError(const QString &description)
{
    return u"-2147221503 Corvane.Contact: "_s + description;
}

} // namespace

class TestContact final : public QObject
{
    Q_OBJECT

private:
    LxCountryList m_countries = SampleCountries();
    LxContactPtr m_ann;

private slots:
    void init()
    {
        m_ann = LxContact::Create(m_countries);
        m_ann->SetName(u"Joanne 0Lee"_s);
        m_ann->SetCountryCode(44);
        m_ann->SetUserMobile(u"07700 900123"_s);
    }

    void CutsNames()
    {
        for (const QString &tail : {u""_s, u"b"_s, u"😀"_s}) {
            m_ann->SetName(QString(49, u' ') + u'a' + tail);
            QCOMPARE(m_ann->Name(), QString(49, u' ') + u'a');
        }
        m_ann->SetName(QString(49, u'a') + u"😀"_s);
        QCOMPARE(m_ann->Name(), QString(49, u'a'));
    }

    void SetsNumbers_data()
    {
        QTest::addColumn<QString>("mobile");
        QTest::addColumn<QString>("asUserMobile");
        QTest::addColumn<QString>("asMobile");
        const auto nonLocal = ContactError(u"User mobile was passed a non-local mobile"_s);
        const auto unknown = ContactError(u"Unrecognised country code in mobile"_s);
        const auto ann = u"44 [7700900123] 7700900123 +447700900123"_s;
        const auto add = [](const QString &mobile, const QString &asUserMobile, const QString &asMobile) {
            QTest::addRow("'%s'", qUtf8Printable(mobile)) << mobile << asUserMobile << asMobile;
        };
        const auto typed = u"44 [07700-900 123] 7700900123 +447700900123"_s;
        add(u"07700-900 123"_s, typed, typed);
        add(u"(0)77.00 [900]"_s, u"44 [(0)77.00 [900]] 7700900 +447700900"_s, unknown);
        add(u"447700900123"_s, u"44 [447700900123] 447700900123 +44447700900123"_s, ann);
        add(u"0044 7700 900123"_s, nonLocal, ann);
        add(u"+44 (0)7700 900123"_s, nonLocal, ann);
        // A trunk zero without brackets stays, but only in the stored number.
        add(u"+44 07700 900123"_s, nonLocal, u"44 [07700900123] 7700900123 +447700900123"_s);
        add(u"+18765550100"_s, nonLocal, u"1876 [5550100] 5550100 +18765550100"_s);
        add(u"+353"_s, nonLocal, u"353 []  "_s);
        add(u"07700 9OO123"_s, nonLocal, nonLocal);
        add(u"0"_s, nonLocal, nonLocal);
        for (const auto &mobile : {u"+999123456"_s, u"+0447700900123"_s, u"\u0660\u0667\u0667"_s, u"007700"_s, u""_s})
            add(mobile, nonLocal, unknown);
    }
    void SetsNumbers()
    {
        QFETCH(const QString, mobile);
        const auto resultOf = [&](auto setter) {
            init();
            const QString before = Printed(*m_ann);
            const QString raised = Raised([&] { (m_ann.get()->*setter)(mobile); });
            if (raised.isEmpty())
                return Printed(*m_ann);
            return Printed(*m_ann) == before ? raised : u"changed"_s;
        };
        QTEST(resultOf(&LxContact::SetUserMobile), "asUserMobile");
        QTEST(resultOf(&LxContact::SetMobile), "asMobile");
    }

    void KnowsItsCountry()
    {
        // The last one is 44 in 16 bits.
        for (const int code : {999, 0, -1, 65536 + 44})
            QCOMPARE(Raised([&] { m_ann->SetCountryCode(code); }), ContactError(u"Invalid country %1"_s.arg(code)));
        QCOMPARE(Printed(*m_ann), u"44 [07700 900123] 7700900123 +447700900123"_s);
        m_ann->SetCountryCode(353);
        QCOMPARE(Printed(*m_ann), u"353 [07700 900123] 7700900123 +3537700900123"_s);
        const LxContactPtr bob = LxContact::Create(m_countries);
        bob->SetUserMobile(u"07700"_s);
        QCOMPARE(Printed(*bob), u"0 [07700] 7700 "_s);
    }

    void ClonesThroughItsSetters()
    {
        LxGroup group;
        m_ann->AddToGroup(group);
        const LxContactPtr clone = m_ann->Clone();
        QCOMPARE(clone->Name(), m_ann->Name());
        QCOMPARE(Printed(*clone), Printed(*m_ann));
        QCOMPARE(clone->Groups().Count(), 0);
        QVERIFY(clone->ContactID() != m_ann->ContactID());
        const LxCountryList known = std::exchange(m_countries, {});
        QCOMPARE(Raised([this] { (void)m_ann->Clone(); }), ContactError(u"Invalid country 44"_s));
        m_countries = known;
    }

    void Matches()
    {
        const auto matches = [this](bool exact) {
            const auto texts = u"| 0 |+|+4|+44| +4477|+447700900123 |+4478|+4477009001234|07700|07700900123|7700900123|"
                               u"4477|900|007700|aNN| joanne 0LEE |0Lee|0joanne 0lee|bob"_s;
            QStringList matching;
            for (const QString &text : texts.split(u'|')) {
                if (m_ann->Match(text, exact))
                    matching += text;
            }
            return matching.join(u'|');
        };
        // The zero in front of a name is dropped too.
        QCOMPARE(matches(false), u"| 0 |+|+4|+44| +4477|+447700900123 |07700|07700900123|7700900123|"
                                 u"aNN| joanne 0LEE |0Lee|0joanne 0lee"_s);
        QCOMPARE(matches(true), u"+447700900123 |07700900123|7700900123| joanne 0LEE |0joanne 0lee"_s);
        m_ann->SetMobile(u"+440"_s);
        QCOMPARE(matches(true), u"+44| joanne 0LEE |0joanne 0lee"_s);
    }
};

QTEST_GUILESS_MAIN(TestContact)
#include "test_contact.moc"
