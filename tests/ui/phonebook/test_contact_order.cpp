#include "ContactOrder.h"
#include "Fakes.h"
#include "LxContactList.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "Rows.h"
#include "SampleCountries.h"
#include "SortKey.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <utility>
#include <vector>

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

    // Names that begin alike for long, that differ by case and marks alone, and that are the same, of shared groups.
    TABLE_TEST(anyNamesStandInTheOrderOfTheirWholeKeys, (int column, Qt::SortOrder direction),
               {"names up", Name, Qt::AscendingOrder}, {"names down", Name, Qt::DescendingOrder},
               {"numbers down", Mobile, Qt::DescendingOrder}, {"groups up", GroupMembership, Qt::AscendingOrder},
               {"groups down", GroupMembership, Qt::DescendingOrder})
    {
        const LxCountryList countries = SampleCountries();
        const FixedClock clock;
        LxPhoneBook book(countries, clock);
        const QStringList pieces =
            u",a,A,á,ß,ss,é,z,\0,\0!,ANNA MARIA VICTORIA LEE ,anna maria victoria lee ,Łódź "_s.split(u',');
        QRandomGenerator random(7);
        const auto piece = [&] { return pieces[random.bounded(static_cast<int>(pieces.size()))]; };
        QString file;
        for (int i = 0; i < 300; ++i) {
            file += u"x%1%2%3,44,0%4,%5;%6\n"_s.arg(piece(), piece(), piece(), QString::number(7000 + i % 90), piece(),
                                                    QString(90, piece().isEmpty() ? u'y' : u'Y'));
        }
        book.ParseContacts(file);
        const auto key = [&](const LxContactPtr &contact) {
            const QByteArray text = Text(*contact, column, book.AllContacts()).toUtf8();
            QByteArray sortKey;
            AppendSortKey(QUtf8StringView(text), sortKey);
            return std::pair(sortKey, text);
        };
        const LxContactList contacts = book.AllContacts().ContactList();
        LxGroup few;
        for (const LxContactPtr &contact : contacts) {
            if (few.Count() < 250)
                few.Add(contact);
        }
        std::vector<LxContactPtr> expected;
        for (const LxContactPtr &contact : contacts)
            expected.push_back(contact);
        std::stable_sort(expected.begin(), expected.end(), [&](const LxContactPtr &a, const LxContactPtr &b) {
            return direction == Qt::AscendingOrder ? key(a) < key(b) : key(b) < key(a);
        });
        ContactOrder order(book);
        order.SortBy(column, direction);
        // Most at once, and the last ones singly.
        order.Fill(few, {});
        for (const LxContactPtr &contact : contacts) {
            if (!few.IsMember(*contact))
                order.ShowAt(*order.Add(contact));
        }
        for (int row = 0; row < order.RowCount(); ++row)
            QCOMPARE(order.ContactAt(row)->ContactID(), expected[static_cast<size_t>(row)]->ContactID());
        QCOMPARE(order.RowCount(), contacts.Count());
    }

    void rewrittenRowsStandInNobodysWay()
    {
        const LxCountryList countries = SampleCountries();
        const FixedClock clock;
        LxPhoneBook book(countries, clock);
        book.ParseContacts(u"Ann,1234\nLea,1234\nMary,1234\nTom,1234\nZed,1234\nBob,1234\nYan,1234\n"_s);
        LxContactList all = book.AllContacts().ContactList();
        LxGroup five;
        for (int i = 1; i <= 5; ++i)
            five.Add(all.Item(i));
        ContactOrder order(book);
        order.Fill(five, {});
        LxContactList rewritten;
        rewritten.Add(all.Item(3));
        all.Item(3)->SetName(u"Aaron"_s);
        order.KeepPlacesOf(rewritten);
        for (const int added : {6, 7})
            order.ShowAt(*order.Add(all.Item(added)));
        QStringList names;
        for (int row = 0; row < order.RowCount(); ++row)
            names += order.ContactAt(row)->Name();
        QCOMPARE(names.join(u' '), u"Ann Bob Lea Aaron Tom Yan Zed"_s);
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
