#include "Fakes.h"
#include "LxContactList.h"
#include "LxGroup.h"
#include "Maintenance.h"
#include "NameMatch.h"
#include "Printed.h"
#include "Raised.h"
#include "Rows.h"
#include "SampleCountries.h"

using namespace Qt::StringLiterals;

namespace {

const auto kError = u"-2147221503 Corvane.Contact: "_s;
const auto kWas = u"44 [07700 900123] 7700900123 +447700900123"_s;
const auto kAnn = u"44 [7700900123] 7700900123 +447700900123"_s;
const QString kNonLocal = kError + u"User mobile was passed a non-local mobile"_s + kWas;
const QString kUnknown = kError + u"Unrecognised country code in mobile"_s + kWas;

QString Printed(const LxContact &contact)
{
    return u"%1 [%2] %3 %4"_s.arg(QString::number(contact.CountryCode()), contact.UserMobile(), contact.LocalMobile(),
                                  contact.InternationalMobile());
}

} // namespace

class TestContacts final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;

    LxContactPtr Contact(const QString &name)
    {
        LxContactPtr contact = LxContact::Create(m_countries);
        contact->SetName(name);
        contact->SetCountryCode(44);
        contact->SetUserMobile(u"07700 900123"_s);
        return contact;
    }

private slots:
    TABLE_TEST(numbersAreSetOrRefused, (const QString &mobile, const QString &asUserMobile, const QString &asMobile),
               {"local", u"(0)77.00 [900]"_s, u"44 [(0)77.00 [900]] 7700900 +447700900"_s, kUnknown},
               {"without a plus", u"447700900123"_s, u"44 [447700900123] 447700900123 +44447700900123"_s, kAnn},
               {"trunk zero in brackets", u"+44 (0)7700 900123"_s, kNonLocal, kAnn},
               // It stays, but only in the stored number.
               {"trunk zero", u"+44 07700 900123"_s, kNonLocal, u"44 [07700900123] 7700900123 +447700900123"_s},
               {"long code", u"+18765550100"_s, kNonLocal, u"1876 [5550100] 5550100 +18765550100"_s},
               {"two zeros", u"00447700900123"_s, kNonLocal, kAnn},
               {"letters behind a code", u"+447700 9OO123"_s, kNonLocal, kUnknown})
    {
        const LxContactPtr first = Contact(u"Ann"_s);
        const LxContactPtr second = first->Clone();
        const QString firstError = Raised([&] { first->SetUserMobile(mobile); });
        const QString secondError = Raised([&] { second->SetMobile(mobile); });
        QCOMPARE(firstError + Printed(*first), asUserMobile);
        QCOMPARE(secondError + Printed(*second), asMobile);
    }

    // The zero in front of a name is dropped too.
    TABLE_TEST(contactsMatchWholeOrFromTheStart, (const QString &text, const QString &matches),
               u"+447700900123  -> whole, start", u"07700900123 -> whole, start", u"7700900123 -> whole, start",
               u" joanne 0LEE  -> whole, start", u"0joanne 0lee -> whole, start", u" -> start", u" 0  -> start",
               u"+ -> start", u"+4 -> start", u" +4477 -> start", u"07700 -> start", u"aNN -> start", u"0Lee -> start",
               u"+4478", u"+4477009001234", u"4477", u"900", u"007700", u"bob")
    {
        const LxContactPtr contact = Contact(u"Joanne 0Lee"_s);
        QCOMPARE(contact->Match(text, true), matches.contains(u"whole"_s));
        QCOMPARE(contact->Match(text, false), matches.contains(u"start"_s));
    }

    TABLE_TEST(namesAreComparedAsTextsAre, (const QString &name), u" ", u"Ann Lee", u"annann LEE", u"Éva Łee",
               u"\u212A", u"straße", u"a very long name of more than 30 letters k")
    {
        for (const QString &text :
             u"|a|K|k|LEE|lee |\u212A|É|éva łee|ann lee|ßE|NNA|a very long name of more than 30 letters K"_s.split(
                 u'|')) {
            const LxContact::NameText kept(name);
            QCOMPARE(NameMatch::Equals(kept, text), name.compare(text, Qt::CaseInsensitive) == 0);
            QCOMPARE(NameMatch::BeginsWith(kept, text), name.startsWith(text, Qt::CaseInsensitive));
            QCOMPARE(NameMatch::Contains(kept, text), name.contains(text, Qt::CaseInsensitive));
        }
    }

    void namesOfGroupsAreCleanAndUnique()
    {
        LxGroupList groups;
        LxGroup &work = groups.CreateGroup(u"Work"_s);
        QCOMPARE(&groups.CreateGroup(u"W;ork"_s), &work);
        QCOMPARE(groups.UniqueName(u"Work"_s, &work) + groups.UniqueName(u"Work"_s), u"WorkWork (2)"_s);
        QCOMPARE(LxGroup::CleanName(u";"_s + QString(49, u'x') + u"😀"_s), QString(49, u'x'));
    }

    TABLE_TEST(contactsOfOneNumberAreMerged, (const QString &text, const QString &merged),
               u"Ann,+447700900123,X\nBo,+1234\nBob,44,07700 900123,Y;X\nCy,44,07700-900123 -> Cy 44 7700900123 "
               u"[X;Y]\nBo 1 234 [] | Everyone;X;Y",
               // A name that is the number, in whichever form, is none.
               u"Ann,44,07700900123\n44,07700900123\n07700900123,44,+44 7700-900123\n0044 7700900123,\n"
               u"447700900123,\n+447700900123,07700 900123 -> Ann 44 07700900123 [] | Everyone",
               u"44,07700900123\nAnn,44,+447700900123 -> Ann 44 07700900123 [] | Everyone",
               u"Ann,07700900123\nBob,07700900123 -> Ann 0 07700900123 []\nBob 0 07700900123 [] | Everyone")
    {
        LxPhoneBook book(m_countries, m_clock);
        book.ParseContacts(text);
        Maintenance::MergeDuplicates(book);
        QCOMPARE(Printed(book), merged);
    }

    // The line, and how many it deletes.
    TABLE_TEST(whatAnyLineMatchesIsDeleted, (const QString &line, const QString &deleted), u"straße -> 4",
               u"strasse -> 4", u"0 -> 0", u"00 -> 4", u" -> 0", u"44 -> 4", u"044 -> 4", u"0+441234 -> 4",
               u"+441234 -> 12", u"01234 -> 18", u"1234 -> 18", u" Ann -> 4", u"001234 -> 4", u"441234 -> 9")
    {
        LxPhoneBook book(m_countries, m_clock);
        for (const auto *name : {u"Straße", u"STRASSE", u"0", u"", u"44", u"+441234", u"ann ", u"ANN", u"01234"}) {
            for (const auto *mobile : {u"+441234", u"01234", u"+353441234", u"+44"}) {
                const LxContactPtr contact = book.CreateContact();
                contact->SetName(QString::fromUtf16(name));
                contact->SetMobile(QString::fromUtf16(mobile));
                book.AllContacts().Add(contact);
            }
        }
        QCOMPARE(QString::number(Maintenance::DeleteByList(book, u"Bob\n \r\n"_s + line)), deleted);
        QCOMPARE(book.AllContacts().Count(), 36 - deleted.toInt());
        for (const LxContactPtr &contact : book.AllContacts())
            QVERIFY(!contact->Match(line, true)); // as every contact answers for itself
    }
};

QTEST_GUILESS_MAIN(TestContacts)
#include "test_contacts.moc"
