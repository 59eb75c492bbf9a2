#include "Fakes.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Maintenance.h"
#include "SampleCountries.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using Recording = PhoneBookHistory::Recording;

class TestPhoneBookHistory final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    FixedClock m_clock;
    QTemporaryDir m_folder;
    LxPhoneBook m_book{m_countries, m_clock};
    PhoneBookHistory &m_history = m_book.History();
    QRandomGenerator m_random;

    /// All there is, with its identities.
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

    void Change(LxGroup &everyone, LxGroup &group, const LxContactPtr &contact)
    {
        LxGroupList &groups = m_book.Groups();
        switch (m_random.bounded(30)) {
        case 0:
            return Maintenance::MergeDuplicates(m_book);
        case 1:
            return m_random.bounded(9) ? void() : void(m_book.Restore(m_folder.filePath(u"other"_s)));
        case 2:
            return &group == &everyone ? void() : groups.DestroyGroup(group);
        case 3:
            return contact->AddToGroup(groups.CreateGroup(groups.UniqueName(u"G"_s)));
        case 4:
            return group.SetName(groups.UniqueName(u"R"_s, &group));
        case 5:
            return contact->RemoveFromGroups(everyone);
        case 6: // to the end
            group.Remove(contact);
            return group.Add(contact);
        case 7:
            return contact->SetName(u"N%1"_s.arg(m_random.bounded(50)));
        case 8:
            return contact->SetMobile(u"+3531%1"_s.arg(m_random.bounded(20)));
        case 9:
            return everyone.Count() < 3 ? void() : contact->Destroy();
        case 10:
            return groups.DestroyGroup(groups.CreateGroup(u"Gone"_s));
        default:
            const LxContactPtr other = m_random.bounded(3) ? contact : m_book.CreateHomeContact();
            group.Add(other);
            other->SetMobile(u"+44770090%1"_s.arg(m_random.bounded(9000) + 1000));
            return everyone.Add(other);
        }
    }

    void ChangeMuch()
    {
        for (int changes = m_random.bounded(30); changes > 0; --changes) {
            const auto group = m_book.Groups().begin() + m_random.bounded(m_book.Groups().Count());
            LxContactList all = m_book.AllContacts().ContactList();
            Change(m_book.AllContacts(), **group, all.Item(1 + m_random.bounded(all.Count())));
        }
    }
    /// There and back.
    void ChangeNothing()
    {
        LxGroupList &groups = m_book.Groups();
        LxGroup &group = groups.CreateNewGroup(u"Gone"_s);
        const LxContactPtr contacts[] = {m_book.CreateHomeContact(), *m_book.AllContacts().begin()};
        for (const LxContactPtr &contact : contacts) {
            group.Add(contact);
            contact->SetName(contact->Name() + u'!');
        }
        contacts[1]->SetName(contacts[1]->Name().chopped(1));
        group.SetName(u"Going"_s);
        groups.DestroyGroup(group);
    }

private slots:
    void everyCommandCanBeTakenBackAndDoneAgain()
    {
        QVERIFY(WriteBytes(m_folder.filePath(u"other"_s), "O,44,1,X;R\r\nP,44,2,R\r\nQ,353,3\r\n"));
        QVERIFY(WriteBytes(m_folder.filePath(u"book"_s), "A,44,1,X;Y\r\nB,44,2,Y;X\r\nC,44,3\r\nD,44,4,Z\r\n"));
        m_book.OpenPhoneBook(m_folder.filePath(u"book"_s));
        const int given = qEnvironmentVariableIntValue("BREVIO_TEST_SEED");
        const quint32 seed = given > 0 ? quint32(given) : QRandomGenerator::global()->bounded(1'000'000U) + 1;
        qInfo("BREVIO_TEST_SEED=%u", seed);
        m_random.seed(seed);
        QStringList past;
        QStringList future;
        QString now = State();
        for (int i = 0; i < 4000; ++i) {
            const QString step = QString::number(i);
            const int what = m_random.bounded(10);
            if (what < 4) {
                const bool isDone = (what == 0 ? m_history.Redo() : m_history.Undo()).has_value();
                QStringList &from = what == 0 ? future : past;
                QCOMPARE(isDone, !from.isEmpty());
                if (isDone)
                    (what == 0 ? past : future) += std::exchange(now, from.takeLast());
            } else if (m_random.bounded(50) == 0) { // no command
                m_random.bounded(2) ? m_book.RevertToSaved() : (*m_book.AllContacts().begin())->SetName(step);
                past.clear();
                future.clear();
                now = State();
            } else {
                {
                    const Recording recording(m_history, step);
                    const Recording within(m_history, u"within"_s);
                    what == 4 ? ChangeNothing() : ChangeMuch();
                    QVERIFY(!m_history.Undo() && !m_history.Redo());
                }
                QVERIFY(what != 4 || m_history.UndoName() != step);
                if (m_history.UndoName() == step) {
                    past = (past + QStringList(now)).last(qMin(past.size() + 1, qsizetype(20)));
                    future.clear();
                    now = State();
                }
            }
            QVERIFY2(State() == now, qPrintable(step));
            QCOMPARE(QPair(m_history.CanUndo(), m_history.CanRedo()), QPair(!past.isEmpty(), !future.isEmpty()));
        }
    }
};

QTEST_GUILESS_MAIN(TestPhoneBookHistory)
#include "test_phone_book_history.moc"
