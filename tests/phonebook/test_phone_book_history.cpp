#include "Fakes.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Maintenance.h"
#include "SampleCountries.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

class TestPhoneBookHistory final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    FixedClock m_clock;
    QTemporaryDir m_folder;
    LxPhoneBook m_book{m_countries, m_clock};
    PhoneBookHistory &m_history = m_book.History();
    QRandomGenerator m_random;

    [[nodiscard]] QString State()
    {
        QString state;
        for (const LxGroup *group : m_book.Groups()) {
            state += u"\n%1 %2:"_s.arg(QString::number(group->GroupID()), group->Name());
            for (const LxContactPtr &contact : *group)
                state += u' ' + QString::number(contact->ContactID());
        }
        for (const LxContactPtr &contact : m_book.AllContacts()) {
            state +=
                u"\n%1 %2 %3 %4 %5"_s.arg(QString::number(contact->ContactID()), contact->Name(), contact->UserMobile(),
                                          contact->InternationalMobile(), contact->Groups().AsString(u";"_s));
        }
        return state;
    }

    LxGroup &AnyGroup() { return **(m_book.Groups().begin() + m_random.bounded(m_book.Groups().Count())); }
    LxContactPtr Any()
    {
        return m_book.AllContacts().ContactList().Item(1 + m_random.bounded(m_book.AllContacts().Count()));
    }
    /// A name, and a number that few contacts share.
    void Fill(LxContact &contact)
    {
        contact.SetName(u"N%1"_s.arg(m_random.bounded(50)));
        contact.SetMobile(u"+44770090%1"_s.arg(m_random.bounded(10000), 4, 10, QChar(u'0')));
    }
    void AddContacts(int count, LxGroup &group)
    {
        for (; count > 0; --count) {
            const LxContactPtr contact = m_book.CreateHomeContact();
            group.Add(contact);
            Fill(*contact);
            m_book.AllContacts().Add(contact);
        }
    }
    void EachOfSome(const std::function<void(const LxContactPtr &)> &act)
    {
        for (int i = m_random.bounded(15); i > 0 && m_book.AllContacts().Count() > 1; --i)
            act(Any());
    }

    void Act()
    {
        LxGroupList &groups = m_book.Groups();
        LxGroup &everyone = m_book.AllContacts();
        LxGroup &group = AnyGroup();
        if (everyone.Count() < 2)
            return AddContacts(2, group);
        switch (m_random.bounded(14)) {
        case 0:
            return EachOfSome([](const LxContactPtr &contact) { contact->Destroy(); });
        case 1:
            return EachOfSome([this](const LxContactPtr &contact) { Fill(*contact); });
        case 2: {
            LxGroup &made = groups.CreateGroup(groups.UniqueName(u"G"_s));
            made.SetName(groups.UniqueName(u"H"_s));
            return EachOfSome([&made](const LxContactPtr &contact) { made.Add(contact); });
        }
        case 3:
            return &group == &everyone ? void() : groups.DestroyGroup(group);
        case 4:
            return &group == &everyone ? void() : group.SetName(groups.UniqueName(u"R"_s, &group));
        case 5:
            return EachOfSome([&group](const LxContactPtr &contact) { group.Add(contact); });
        case 6:
            return EachOfSome([&](const LxContactPtr &contact) { contact->RemoveFromGroups(everyone); });
        case 7: // of numbers that others have
            EachOfSome([this](const LxContactPtr &contact) { contact->SetMobile(Any()->InternationalMobile()); });
            return Maintenance::MergeDuplicates(m_book);
        case 8:
            return void(Maintenance::DeleteByList(m_book, u"N1\nN2"_s));
        case 9:
            return AddContacts(m_random.bounded(40), group);
        case 10:
            return m_random.bounded(3) ? void() : void(m_book.Restore(m_folder.filePath(u"other"_s)));
        case 11: { // what changes nothing
            const LxContactPtr contact = m_book.CreateHomeContact();
            group.Add(contact);
            contact->Destroy();
            const LxContactPtr other = Any();
            const QString name = other->Name();
            other->SetName(u"X"_s);
            other->SetName(name);
            return groups.DestroyGroup(groups.CreateGroup(u"Gone"_s));
        }
        case 12: { // to the end
            const LxContactPtr first = *everyone.begin();
            everyone.Remove(first);
            return everyone.Add(first);
        }
        default:
            return EachOfSome(
                [&](const LxContactPtr &contact) { m_random.bounded(2) ? group.Add(contact) : contact->Destroy(); });
        }
    }

private slots:
    void init()
    {
        QVERIFY(WriteBytes(m_folder.filePath(u"other"_s), "O,44,1,X;R\r\nP,44,2,R\r\nQ,353,3\r\n"));
        QVERIFY(WriteBytes(m_folder.filePath(u"book"_s), "A,44,1,X;Y\r\nB,44,2,Y;X\r\nC,44,3\r\nD,44,4,Z\r\n"));
        m_book.OpenPhoneBook(m_folder.filePath(u"book"_s));
    }

    void everyCommandCanBeTakenBackAndDoneAgain()
    {
        const int given = qEnvironmentVariableIntValue("BREVIO_TEST_SEED");
        const quint32 seed = given > 0 ? quint32(given) : QRandomGenerator::global()->bounded(1'000'000U) + 1;
        qInfo("BREVIO_TEST_SEED=%u", seed);
        m_random.seed(seed);
        QStringList past;
        QStringList future;
        QString now = State();
        for (int i = 0; i < 4000; ++i) {
            const int what = m_random.bounded(10);
            QStringList &from = what == 0 ? future : past;
            if (what < 4) {
                const auto outcome = what == 0 ? m_history.Redo() : m_history.Undo();
                QCOMPARE(outcome.has_value(), !from.isEmpty());
                if (outcome) {
                    (what == 0 ? past : future) += now;
                    now = from.takeLast();
                }
            } else {
                {
                    const PhoneBookHistory::Recording recording(m_history);
                    Act();
                }
                const QString before = std::exchange(now, State());
                if (now != before) {
                    past += before;
                    future.clear();
                }
                if (past.size() > qsizetype(PhoneBookHistory::kDepth))
                    past.removeFirst();
            }
            QVERIFY2(State() == now, qPrintable(u"step %1"_s.arg(i)));
            QCOMPARE(m_history.CanUndo(), !past.isEmpty());
            QCOMPARE(m_history.CanRedo(), !future.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TestPhoneBookHistory)
#include "test_phone_book_history.moc"
