#include "ContactOrder.h"
#include "Fakes.h"
#include "LxContactList.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "Rows.h"
#include "SampleCountries.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace ContactColumns;

class TestContactOrder final : public QObject
{
    Q_OBJECT

    struct Fixture
    {
        Fixture()
        {
            for (const QString &name : {u"bob"_s, u"Élan"_s, u"Elan"_s, u"Zoe"_s, u"bob"_s, u"anna maria longname"_s,
                                        u"anna maria longnamf"_s, u""_s})
                Add(name);
        }

        LxContactPtr Add(const QString &name)
        {
            const LxContactPtr contact = book.CreateContact();
            contact->SetName(name);
            contact->SetCountryCode(book.AllContacts().Count() % 2 ? 44 : 353);
            contact->SetUserMobile(QString::number(77009000 - book.AllContacts().Count()));
            book.AllContacts().Add(contact);
            places[contact.get()] = book.AllContacts().Count();
            return contact;
        }

        /// The rows by the places of their contacts in the group, which count from 1.
        [[nodiscard]] QString Rows() const
        {
            QStringList rows;
            for (int row = 0; row < order.RowCount(); ++row)
                rows += QString::number(places[order.ContactAt(row).get()]);
            return rows.join(u' ');
        }

        LxCountryList countries = SampleCountries();
        FixedClock clock;
        LxPhoneBook book{countries, clock};
        ContactOrder order{book};
        QHash<const LxContact *, int> places;
    };

private slots:
    TABLE_TEST(sortsByTextThenByGroupOrder, (int column, Qt::SortOrder direction, const QString &rows),
               {"names up, equal ones in the group's order", Name, Qt::AscendingOrder, u"8 6 7 1 5 3 2 4"_s},
               {"names down, equal ones in the group's order", Name, Qt::DescendingOrder, u"4 2 3 1 5 7 6 8"_s},
               {"numbers as they are shown", Mobile, Qt::AscendingOrder, u"7 5 3 1 8 6 4 2"_s})
    {
        Fixture f;
        f.order.SortBy(column, direction);
        f.order.Fill(f.book.AllContacts(), {});
        QCOMPARE(f.Rows(), rows);
    }

    TABLE_TEST(lettersSortBesideTheirPlainOnes, (const QString &text, const QString &key), u"Éİ -> ei", u"ıŁ -> il",
               u"ØǾ -> oo", u"ßẞ -> ssss", u"ĐĦŦ -> dht", u"ÆŒ -> aeoe", u"Я -> я", u"A Z -> a z")
    {
        QCOMPARE(SortKey(text), key);
    }

    void newAndGoneMembersKeepTheOrder()
    {
        Fixture f;
        f.order.Fill(f.book.AllContacts(), u"an"_s);
        QCOMPARE(f.Rows(), u"6 7 3 2"_s);
        QCOMPARE(f.order.Add(f.Add(u"Cy"_s)), std::nullopt);
        f.order.ShowAt(f.order.Add(f.Add(u"Dan"_s)).value());
        QCOMPARE(f.Rows(), u"6 7 10 3 2"_s);
        LxContactList gone;
        gone.Add(f.order.ContactAt(1));
        gone.Add(f.order.ContactAt(3));
        QCOMPARE(f.order.RangeOf(gone), std::pair(1, 3));
        f.order.HideRow(3);
        f.order.HideRow(1);
        f.order.Forget(gone);
        QCOMPARE(f.order.RangeOf(gone), std::nullopt);
        QCOMPARE(f.order.SortBy(ContactColumns::Name, Qt::DescendingOrder), (std::vector{2, 1, 0}));
        QCOMPARE(f.Rows(), u"2 10 6"_s);
        f.order.Find({});
        QCOMPARE(f.Rows(), u"4 2 10 9 1 5 6 8"_s);
    }
};

QTEST_GUILESS_MAIN(TestContactOrder)
#include "test_contact_order.moc"
