#include "ContactOrder.h"
#include "Fakes.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "Rows.h"
#include "SampleCountries.h"
#include "SortKey.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace ContactColumns;

class TestContactOrder final : public QObject
{
    Q_OBJECT

private slots:
    TABLE_TEST(sortsByTextThenByGroupOrder, (int column, Qt::SortOrder direction, const QString &rows),
               {"names up, equal ones in the group's order", Name, Qt::AscendingOrder, u"8 6 7 1 5 4 3 2"_s},
               {"names down, equal ones in the group's order", Name, Qt::DescendingOrder, u"2 3 4 1 5 7 6 8"_s},
               {"numbers as they are shown", Mobile, Qt::AscendingOrder, u"7 5 3 1 8 6 4 2"_s})
    {
        const LxCountryList countries = SampleCountries();
        const FixedClock clock;
        LxPhoneBook book(countries, clock);
        QStringList mobiles; // in the order of the group
        for (const QString &name : u"bob,Élan,Elan,bob b,bob,anna maria longname,anna maria longnamf,"_s.split(u',')) {
            const LxContactPtr contact = book.CreateContact();
            contact->SetName(name);
            contact->SetCountryCode(book.AllContacts().Count() % 2 ? 44 : 353);
            contact->SetUserMobile(QString::number(77009000 - book.AllContacts().Count()));
            book.AllContacts().Add(contact);
            mobiles += contact->UserMobile();
        }
        ContactOrder order(book);
        order.SortBy(column, direction);
        order.Fill(book.AllContacts(), {});
        QStringList shown;
        for (int row = 0; row < order.RowCount(); ++row)
            shown += QString::number(mobiles.indexOf(order.ContactAt(row)->UserMobile()) + 1);
        QCOMPARE(shown.join(u' '), rows);
    }

    TABLE_TEST(lettersSortBesideTheirPlainOnes, (const QString &text, const QString &key), u"Éİ -> ei", u"ıŁ -> il",
               u"ØǾ -> oo", u"ßẞ -> ssss", u"ĐĦŦ -> dht", u"ÆŒ -> aeoe", u"Я -> я", u"A Z -> a z")
    {
        QByteArray got;
        AppendSortKey(text.toUtf8(), got);
        QCOMPARE(got, key.toUtf8());
    }
};

QTEST_GUILESS_MAIN(TestContactOrder)
#include "test_contact_order.moc"
