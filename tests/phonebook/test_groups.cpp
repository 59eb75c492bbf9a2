#include "LxContactList.h"
#include "LxGroup.h"
#include "Raised.h"
#include "SampleCountries.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

template <typename Contacts>
QString Names(const Contacts &contacts)
{
    QStringList names;
    for (const LxContactPtr &contact : contacts)
        names += contact->Name();
    return names.join(u' ');
}

} // namespace

class TestGroups final : public QObject
{
    Q_OBJECT

private:
    LxCountryList m_countries = SampleCountries();

    LxContactPtr Contact(const QString &name)
    {
        LxContactPtr contact = LxContact::Create(m_countries);
        contact->SetName(name);
        return contact;
    }

private slots:
    void KeepsOrderThroughAnyChanges()
    {
        std::vector<LxContactPtr> pool;
        for (int i = 0; i < 20; ++i)
            pool.push_back(Contact(QString::number(i)));
        for (quint32 seed = 0; seed < 50; ++seed) {
            QRandomGenerator random(seed);
            LxContactList list;
            std::vector<LxContactPtr> expected;
            for (int change = 0; change < 200; ++change) {
                // Phases of growing and of shrinking, so that lists are full of holes, and empty, at times.
                const LxContactPtr contact = pool[static_cast<size_t>(random.bounded(20))];
                if (random.bounded(4) < (change / 50 % 2 ? 1 : 3)) {
                    list.Add(contact);
                    if (std::count(expected.begin(), expected.end(), contact) == 0)
                        expected.push_back(contact);
                } else {
                    list.Remove(*contact);
                    std::erase(expected, contact);
                }
                QCOMPARE(Names(list), Names(expected));
                QCOMPARE(list.Count(), static_cast<int>(expected.size()));
                if (list.Count() > 0 && random.bounded(8) == 0) {
                    const int index = random.bounded(list.Count());
                    QCOMPARE(list.Item(index + 1), expected[static_cast<size_t>(index)]);
                    QCOMPARE(list.GetContact(list.Item(index + 1)->ContactID()), expected[static_cast<size_t>(index)]);
                }
                QVERIFY(!Raised([&list] { (void)list.Item(0); }).isEmpty());
                QVERIFY(!Raised([&list] { (void)list.Item(list.Count() + 1); }).isEmpty());
            }
        }
    }

    void KeepsBothSidesInStep()
    {
        LxGroupList groups;
        LxGroup &work = groups.CreateGroup(u"Work"_s);
        QCOMPARE(&groups.CreateGroup(u"Work"_s), &work);
        LxGroup &lower = groups.CreateGroup(u"work"_s);
        QVERIFY(&lower != &work);
        QCOMPARE(groups.AsString(u";"_s), u"Work;work"_s);

        // All of one number; the first of them is found by it.
        const std::array contacts = {Contact(u"Ann"_s), Contact(u"Bob"_s), Contact(u"Cy"_s)};
        for (const LxContactPtr &contact : contacts) {
            contact->SetMobile(u"+447700900123"_s);
            contact->AddToGroup(work);
            work.Add(contact);
            lower.Add(contact);
            QCOMPARE(contact->Groups().AsString(u";"_s), u"Work;work"_s);
        }
        QCOMPARE(work.FindContactByMobile(u"+447700900123"_s), contacts[0]);
        QCOMPARE(work.FindContactByMobile(u"+44770090012"_s), nullptr);
        work.Remove(contacts[1]);
        work.Remove(contacts[1]);
        QCOMPARE(Names(work), u"Ann Cy"_s);
        work.Add(contacts[1]);
        QCOMPARE(Names(work), u"Ann Cy Bob"_s);
        QCOMPARE(contacts[1]->Groups().AsString(u";"_s), u"work;Work"_s);

        const auto clone = work.Clone();
        QCOMPARE(Names(clone->ContactList()), u"Ann Cy Bob"_s);
        QCOMPARE(clone->ContactList().Name(), u"Work"_s);
        contacts[0]->RemoveFromGroups(lower);
        QCOMPARE(contacts[0]->Groups().AsString(u";"_s), u"work"_s);
        contacts[2]->Destroy();
        QCOMPARE(contacts[2]->Groups().Count(), 0);
        QCOMPARE(Names(work) + u'|' + Names(lower) + u'|' + Names(*clone), u"Bob|Ann Bob|Bob"_s);

        const int workID = work.GroupID();
        QCOMPARE(&groups.GetGroup(workID), &work);
        groups.DestroyGroup(work);
        QVERIFY(!groups.ExistsID(workID) && !groups.Exists(u"Work"_s));
        QCOMPARE(contacts[1]->Groups().AsString(u";"_s), u"work;Work"_s);
        QVERIFY(clone->IsMember(*contacts[1]));
        QCOMPARE(Raised([&] { (void)groups.GetGroup(workID); }), u"5 Corvane.GroupList: There is no such group"_s);
        QCOMPARE(groups.GetFirstGroup(), &lower);
        groups.DestroyGroup(lower);
        QCOMPARE(groups.GetFirstGroup(), nullptr);
    }

    void CleansAndJoinsNames()
    {
        LxGroupList groups;
        const QString longName(70, u'x');
        QCOMPARE(groups.AsString(u";"_s), u""_s);
        LxGroup &first = groups.CreateGroup(u";"_s);
        QCOMPARE(groups.AsString(u";"_s, &first), u""_s);
        LxGroup &second = groups.CreateGroup(u";A, B;"_s);
        QCOMPARE(&groups.CreateGroup(u"A, ;B"_s), &second);
        QCOMPARE(groups.AsString(u";"_s), u";A, B"_s);
        QCOMPARE(groups.AsString(u", "_s), u", AB"_s);
        groups.Remove(first);
        groups.Add(first);
        groups.Add(first);
        QCOMPARE(groups.AsString(u";"_s), u"A, B;"_s);
        LxGroup &cut = groups.CreateGroup(longName);
        QCOMPARE(cut.Name(), longName.first(50));
        QCOMPARE(&groups.CreateGroup(longName + u'y'), &cut);
        cut.SetName(u";"_s + QString(49, u'x') + u"😀"_s);
        QCOMPARE(cut.Name(), longName.first(49));
    }

    /// Whatever ends first, nothing that is left points to it.
    void EndsInAnyOrder()
    {
        std::array order = {0, 1, 2, 3};
        do {
            std::optional<LxGroupList> groups(std::in_place);
            auto loose = std::make_unique<LxGroup>();
            loose->SetName(u"Loose"_s);
            LxContactPtr ann = Contact(u"Ann"_s);
            std::optional<LxContactList> list(std::in_place);
            std::weak_ptr<LxContact> watched = ann;
            list->Add(ann);
            ann->AddToGroup(groups->CreateGroup(u"Work"_s));
            ann->AddToGroup(*loose);
            for (const int step : order) {
                const LxContactPtr held = watched.lock();
                QVERIFY(held);
                if (step == 0)
                    groups.reset();
                else if (step == 1)
                    loose.reset();
                else if (step == 2)
                    ann.reset();
                else
                    list.reset();
                const QString left = (groups ? u"Work;"_s : u""_s) + (loose ? u"Loose;"_s : u""_s);
                QCOMPARE(held->Groups().AsString(u";"_s), left.chopped(left.isEmpty() ? 0 : 1));
            }
            QVERIFY(watched.expired());
        } while (std::next_permutation(order.begin(), order.end()));
    }
};

QTEST_GUILESS_MAIN(TestGroups)
#include "test_groups.moc"
