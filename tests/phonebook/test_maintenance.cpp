#include "Maintenance.h"

#include "Fakes.h"
#include "Printed.h"
#include "SampleCountries.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;

class TestMaintenance final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;

private slots:
    void MergesContactsOfOneNumber()
    {
        CompareTable({{u"Ann,+447700900123,X\nBo,+1234\nBob,44,07700 900123,Y;X\nCy,44,07700-900123",
                       u"Cy 44 7700900123 [X;Y]\nBo 1 234 [] | Everyone;X;Y"},
                      // A name that is the number, in whichever form, is none.
                      {u"Ann,44,07700900123\n44,07700900123\n07700900123,44,+44 7700-900123\n0044 7700900123,\n"
                       u"447700900123,\n+447700900123,07700 900123",
                       u"Ann 44 07700900123 [] | Everyone"},
                      {u"44,07700900123\nAnn,44,+447700900123", u"Ann 44 07700900123 [] | Everyone"},
                      {u"Ann,07700900123\nBob,07700900123", u"Ann 0 07700900123 []\nBob 0 07700900123 [] | Everyone"}},
                     [this](const QString &text) {
                         LxPhoneBook book(m_countries, m_clock);
                         book.ParseContacts(text);
                         Maintenance::MergeDuplicates(book);
                         return Printed(book);
                     });
    }

    void KeepsANameFromABlankOne()
    {
        LxPhoneBook book(m_countries, m_clock);
        book.ParseContacts(u"Ann,+441234\nBob,+441234"_s);
        book.AllContacts().ContactList().Item(2)->SetName(u" "_s);
        Maintenance::MergeDuplicates(book);
        QCOMPARE(Printed(book), u"Ann 44 1234 [] | Everyone"_s);
    }

    void DeletesWhatAnyLineMatches()
    {
        // As every contact would answer for itself.
        for (const auto *line : {u"straße", u"strasse", u"0", u"00", u"", u"44", u"044", u"0+441234", u"+441234",
                                 u"01234", u"1234", u" Ann", u"001234", u"441234"}) {
            LxPhoneBook book(m_countries, m_clock);
            QList<LxContactPtr> kept;
            for (const auto *name : {u"Straße", u"STRASSE", u"0", u"", u"44", u"+441234", u"ann ", u"ANN", u"01234"}) {
                for (const auto *mobile : {u"+441234", u"01234", u"+353441234", u"+44"}) {
                    const LxContactPtr contact = book.CreateContact();
                    contact->SetName(QString::fromUtf16(name));
                    contact->SetMobile(QString::fromUtf16(mobile));
                    book.AllContacts().Add(contact);
                    if (!contact->Match(QString::fromUtf16(line), true))
                        kept += contact;
                }
            }
            const auto count = book.AllContacts().Count() - kept.size();
            QCOMPARE(Maintenance::DeleteByList(book, u"Bob\n \r\n"_s + QString::fromUtf16(line)), count);
            QList<LxContactPtr> left;
            for (const LxContactPtr &contact : book.AllContacts())
                left += contact;
            QCOMPARE(left, kept);
        }
    }
};

QTEST_GUILESS_MAIN(TestMaintenance)
#include "test_maintenance.moc"
