#include "Fakes.h"
#include "Files.h"
#include "Maintenance.h"
#include "Printed.h"
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
    const QString m_path = m_folder.filePath(u"book"_s);
    LxPhoneBook m_book{m_countries, m_clock};
    PhoneBookHistory &m_history = m_book.History();
    QRandomGenerator m_random{1};

    /// All there is, with its identities.
    [[nodiscard]] QString State()
    {
        QString state = Printed(m_book);
        for (const LxGroup *group : m_book.Groups()) {
            state += u'\n' + QString::number(group->GroupID());
            for (const LxContactPtr &contact : *group)
                state += u' ' + QString::number(contact->ContactID());
        }
        return state;
    }

    LxGroup &Any(LxGroupList &groups) { return **(groups.begin() + m_random.bounded(groups.Count())); }
    LxContactPtr Any()
    {
        return m_book.AllContacts().ContactList().Item(1 + m_random.bounded(m_book.AllContacts().Count()));
    }

    void Change(LxGroup &everyone, LxGroup &group, const LxContactPtr &contact)
    {
        LxGroupList &groups = m_book.Groups();
        const std::function<void()> rare[] = {
            [&] { Maintenance::MergeDuplicates(m_book); },
            [&] { m_random.bounded(40) ? QString() : m_book.Restore(m_path); },
            [&] { &group == &everyone ? void() : groups.DestroyGroup(group); },
            [&] { contact->AddToGroup(groups.CreateGroup(groups.UniqueName(u"G"_s))); },
            [&] { group.SetName(groups.UniqueName(u"R"_s, &group)); },
            [&] { contact->SetName(u"N%1"_s.arg(m_random.bounded(50))); },
            [&] { group.Remove(contact), group.Add(contact); },
            [&] { everyone.Count() < 3 ? void() : contact->Destroy(); }};
        if (const auto what = size_t(m_random.bounded(30)); what < std::size(rare))
            return rare[what]();
        const LxContactPtr other = m_random.bounded(3) ? contact : m_book.CreateHomeContact();
        group.Add(other);
        other->SetMobile(u"+%1"_s.arg(447700901000 + m_random.bounded(2) * m_random.bounded(9000)));
        everyone.Add(other);
    }
    /// There and back, and with one whom the user does not want.
    void ChangeNothing(const LxContactPtr &contact)
    {
        LxGroup &kept = Any(m_book.Groups());
        const QString name = kept.Name();
        kept.SetName(u"Other"_s), kept.SetName(name);
        LxGroup &group = m_book.Groups().CreateNewGroup(u"Gone"_s);
        const LxContactPtr unwanted = m_book.CreateHomeContact();
        group.Add(unwanted), group.Add(contact);
        unwanted->SetName(u"N"_s), contact->SetName(contact->Name());
        m_book.Groups().DestroyGroup(group);
    }

private slots:
    void everyCommandCanBeTakenBackAndDoneAgain()
    {
        QVERIFY(WriteBytes(m_path, "A,44,1,X;Y\r\nB,44,2,Y;X\r\nC,44,3\r\nD,44,4,Z\r\n"));
        m_book.OpenPhoneBook(m_path);
        QStringList states(State());
        qsizetype at = 0;
        for (int i = 0; i < 4000; ++i) {
            const QString step = QString::number(i);
            // Now mostly forth, now mostly back.
            if (const int what = m_random.bounded(100); what < (i % 100 < 60 ? 20 : 80)) {
                const int way = what % 4 ? -1 : 1;
                const bool isDone = (way < 0 ? m_history.Undo() : m_history.Redo()).has_value();
                QCOMPARE(isDone, way < 0 ? at > 0 : at + 1 < states.size());
                at += isDone ? way : 0;
            } else if (what == 99) { // no command
                m_random.bounded(2) ? m_book.RevertToSaved() : Any()->SetName(step);
                states = QStringList(State());
                at = 0;
            } else {
                {
                    const PhoneBookHistory::Recording recording(m_history, step);
                    const PhoneBookHistory::Recording within(m_history);
                    ChangeNothing(Any());
                    for (int changes = what > 95 ? 0 : m_random.bounded(30); changes > 0; --changes)
                        Change(m_book.AllContacts(), Any(m_book.Groups()), Any());
                    QVERIFY(!m_history.Undo() && !m_history.Redo());
                }
                if (m_history.UndoName() == step) {
                    QVERIFY(what <= 95);
                    states = (states.first(at + 1) + QStringList(State())).last(qMin(at + 2, qsizetype(21)));
                    at = states.size() - 1;
                }
            }
            QVERIFY2(State() == states[at], qPrintable(step));
        }
    }

    void forgetsTheOldestCommandsWhereTheyKeepManyContacts()
    {
        QVERIFY(WriteBytes(m_path, "A,44,1\r\nB,44,2\r\nC,44,3\r\nD,44,4\r\n"));
        m_book.OpenPhoneBook(m_path);
        m_history.KeepAtMost(3);
        const auto run = [this](int renamed) {
            const PhoneBookHistory::Recording recording(m_history);
            if (renamed == 0)
                (void)m_book.Restore(m_path);
            LxContactList contacts = m_book.AllContacts().ContactList();
            for (int i = 1; i <= renamed; ++i)
                contacts.Item(i)->SetName(contacts.Item(i)->Name() + u'+');
        };
        for (const auto &[commands, kept] :
             {std::pair(QList{1, 1, 1, 1}, 3), {{1, 2}, 2}, {{2, 2}, 1}, {{1, 4}, 1}, {{1, 0}, 1}, {{0, 1, 1}, 2}}) {
            for (const int renamed : commands)
                run(renamed);
            int undone = 0;
            while (m_history.Undo())
                ++undone;
            QCOMPARE(undone, kept);
        }
    }
};

QTEST_GUILESS_MAIN(TestPhoneBookHistory)
#include "test_phone_book_history.moc"
