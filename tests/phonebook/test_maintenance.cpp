#include "Maintenance.h"

#include "Fakes.h"
#include "Printed.h"
#include "SampleCountries.h"
#include "TextTable.h"

#include <QRandomGenerator>

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
        // Against every contact tried on every line.
        QRandomGenerator random(7);
        const auto some = [&random](std::initializer_list<const char16_t *> texts) {
            const auto place = random.bounded(static_cast<int>(texts.size()));
            return QString::fromUtf16(*(texts.begin() + place));
        };
        for (int round = 0; round < 2000; ++round) {
            LxPhoneBook book(m_countries, m_clock);
            for (int i = 0; i < 4; ++i) {
                const LxContactPtr contact = book.CreateContact();
                contact->SetName(
                    some({u"Straße", u"STRASSE", u"0", u"", u"44", u"+441234", u"ann ", u"ANN", u"01234"}));
                if (random.bounded(4) > 0)
                    contact->SetMobile(some({u"+441234", u"01234", u"+353441234", u"+44"}));
                book.AllContacts().Add(contact);
            }
            QStringList lines;
            for (int i = 0; i < 2; ++i)
                lines += some({u"straße", u"strasse", u"0", u"00", u"", u"44", u"044", u"0+441234", u"+441234",
                               u"01234", u"1234", u" Ann", u"001234", u"441234"});
            QStringList kept;
            for (const LxContactPtr &contact : book.AllContacts()) {
                if (!contact->Match(lines[0], true) && !contact->Match(lines[1], true))
                    kept += QString::number(contact->ContactID());
            }
            const int count = book.AllContacts().Count();
            QCOMPARE(Maintenance::DeleteMany(book, lines.join(some({u"\r\n", u"\n", u" \r\n\r\n"}))),
                     count - kept.size());
            QStringList left;
            for (const LxContactPtr &contact : book.AllContacts())
                left += QString::number(contact->ContactID());
            QCOMPARE(left, kept);
        }
    }
};

QTEST_GUILESS_MAIN(TestMaintenance)
#include "test_maintenance.moc"
