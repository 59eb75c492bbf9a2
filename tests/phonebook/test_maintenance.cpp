#include "Maintenance.h"

#include "Fakes.h"
#include "Printed.h"
#include "Rows.h"
#include "SampleCountries.h"

using namespace Qt::StringLiterals;

class TestMaintenance final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;

private slots:
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

    void aNameIsKeptFromABlankOne()
    {
        LxPhoneBook book(m_countries, m_clock);
        book.ParseContacts(u"Ann,+441234\nBob,+441234"_s);
        book.AllContacts().ContactList().Item(2)->SetName(u" "_s);
        Maintenance::MergeDuplicates(book);
        QCOMPARE(Printed(book), u"Ann 44 1234 [] | Everyone"_s);
    }

    // The line, and how many it deletes.
    TABLE_TEST(whatAnyLineMatchesIsDeleted, (const QString &line, const QString &deleted), u"straße -> 4",
               u"strasse -> 4", u"0 -> 0", u"00 -> 4", u" -> 0", u"44 -> 4", u"044 -> 4", u"0+441234 -> 4",
               u"+441234 -> 12", u"01234 -> 18", u"1234 -> 18", u" Ann -> 4", u"001234 -> 4", u"441234 -> 9")
    {
        LxPhoneBook book(m_countries, m_clock);
        QList<LxContactPtr> kept;
        for (const auto *name : {u"Straße", u"STRASSE", u"0", u"", u"44", u"+441234", u"ann ", u"ANN", u"01234"}) {
            for (const auto *mobile : {u"+441234", u"01234", u"+353441234", u"+44"}) {
                const LxContactPtr contact = book.CreateContact();
                contact->SetName(QString::fromUtf16(name));
                contact->SetMobile(QString::fromUtf16(mobile));
                book.AllContacts().Add(contact);
                if (!contact->Match(line, true)) // as every contact would answer for itself
                    kept += contact;
            }
        }
        QCOMPARE(QString::number(Maintenance::DeleteByList(book, u"Bob\n \r\n"_s + line)), deleted);
        QList<LxContactPtr> left;
        for (const LxContactPtr &contact : book.AllContacts())
            left += contact;
        QCOMPARE(left, kept);
    }
};

QTEST_GUILESS_MAIN(TestMaintenance)
#include "test_maintenance.moc"
