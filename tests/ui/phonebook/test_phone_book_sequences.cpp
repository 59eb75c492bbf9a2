#include "Files.h"
#include "PhoneBookFixture.h"
#include "RowKeys.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

/// Says yes or no to every question, at random.
class RandomPrompts final : public Prompts
{
public:
    explicit RandomPrompts(QRandomGenerator &random)
        : m_random(random)
    {
    }
    PromptAnswer ShowMessageBox(const MessageBoxRequest &, QObject *) override
    {
        return m_random.bounded(3) == 0 ? PromptAnswer::No : PromptAnswer::Yes;
    }
    QString AskOpenFile(const FileDialogRequest &, QObject *) override { return {}; }
    QString AskSaveFile(const FileDialogRequest &, QObject *) override { return {}; }

private:
    QRandomGenerator &m_random;
};

/// Thousands of commands in any order, as no table would put them.
class TestPhoneBookSequences final : public QObject
{
    Q_OBJECT

    struct Fixture : Profile
    {
        explicit Fixture(quint32 seed)
            : random(seed)
        {
            countries.Add({u"France"_s, 33, false});
            countries.Add({u"United Kingdom"_s, 44, true});
            phoneBook.LoadData();
            phoneBook.show();
            for (const char *list : {"lvwGroups", "lvwContacts"})
                new QAbstractItemModelTester(Control<QTreeView>(phoneBook, list).model(),
                                             QAbstractItemModelTester::FailureReportingMode::QtTest, &phoneBook);
            answers.callOnTimeout(&answers, [this] { AnswerDialog(); });
            answers.start(0);
        }

        [[nodiscard]] QString Name()
        {
            const QString names[] = {u"Ann"_s,  u"bob"_s,  u"Élan"_s, u"Zoe; \"Z\""_s,   u" "_s,        u"Everyone"_s,
                                     u"Wörk"_s, u"a, b"_s, u"x\ny"_s, QString(60, u'q'), u"New Group"_s};
            return names[random.bounded(11)] + (random.bounded(2) ? QString::number(random.bounded(30)) : QString());
        }

        void AnswerDialog()
        {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            if (auto *name = dialog->findChild<QLineEdit *>(u"txtName"_s)) {
                name->setText(u"N"_s + Name());
                Control<QLineEdit>(*dialog, "txtMobile").setText(u"0%1"_s.arg(7700900000 + random.bounded(1000)));
                auto &groups = *Control<QTreeView>(*dialog, "lvwGroups").model();
                for (int row = 0; row < groups.rowCount(); ++row)
                    groups.setData(groups.index(row, 0), random.bounded(2) ? Qt::Checked : Qt::Unchecked,
                                   Qt::CheckStateRole);
            } else {
                Control<QComboBox>(*dialog, "cboGroup").setCurrentIndex(random.bounded(2));
            }
            random.bounded(4) ? dialog->accept() : dialog->reject();
        }

        [[nodiscard]] QTreeView &List(const char *name) const { return Control<QTreeView>(phoneBook, name); }

        void SelectSome()
        {
            QTreeView &list = List("lvwContacts");
            list.clearSelection();
            const int first = random.bounded(qMax(1, list.model()->rowCount()));
            const int step = 1 + random.bounded(3);
            for (int row = first; row < qMin(list.model()->rowCount(), first + 3 * step); row += step)
                list.selectionModel()->setCurrentIndex(list.model()->index(row, 0),
                                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }

        /// Sometimes it stays open for the next command.
        void TypeInEditor(const QTreeView &list)
        {
            QLineEdit *editor = PhoneBookFixture::Editor(list);
            if (!editor)
                return;
            editor->selectAll();
            editor->insert(Name());
            const Qt::Key keys[] = {Qt::Key_Return, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Shift};
            QTest::keyClick(editor, keys[random.bounded(4)]);
        }

        /// Does one thing at random, and says what.
        QString Act()
        {
            const QStringList entries =
                u"mnuNewGroup mnuAddContactsToNewGroup mnuAddContactsToExistingGroup mnuAddContactsToExistingGroup "
                "mnuRemoveContactsFromAllGroups mnuRemoveContactsFromThisGroup mnuDelete mnuPopupDeleteContacts "
                "mnuPopupDeleteGroup mnuAddContact mnuAddContact mnuAddContact mnuEditContact"_s.split(u' ');
            QTreeView &groups = List("lvwGroups");
            QTreeView &contacts = List("lvwContacts");
            switch (const int what = random.bounded(20); what) {
            case 0:
            case 1:
                groups.setCurrentIndex(groups.model()->index(random.bounded(groups.model()->rowCount()), 0));
                return u"choose"_s;
            case 2:
                Control<QLineEdit>(phoneBook, "txtFind").setText(random.bounded(2) ? QString() : Name().left(1));
                return u"find"_s;
            case 3:
                emit contacts.header()->sectionClicked(random.bounded(3));
                return u"sort"_s;
            case 4:
            case 5:
            case 6: {
                QTreeView &list = what == 4 ? groups : contacts;
                list.setFocus();
                QTest::keyClick(&list, Qt::Key_F2);
                TypeInEditor(list);
                return u"rename in "_s + list.objectName();
            }
            case 7:
                if (random.bounded(10) == 0) {
                    phoneBook.close();
                    phoneBook.show();
                    return u"close and open"_s;
                }
                [[fallthrough]];
            default:
                if (what % 2)
                    SelectSome();
                (random.bounded(2) ? groups : contacts).setFocus();
                const QString &entry = entries[random.bounded(int(entries.size()))];
                Control<QAction>(phoneBook, entry.toLatin1()).trigger();
                TypeInEditor(groups);
                return entry;
            }
        }

        /// What is wrong now; empty when nothing is.
        QString Wrong()
        {
            LxPhoneBook &book = phoneBook.ReadOnlyPhoneBook();
            int excess = 0; // of members over memberships
            QStringList names;
            for (const LxGroup *group : book.Groups()) {
                names += group->Name();
                excess += group->Count();
                for (const LxContactPtr &contact : *group) {
                    if (!contact->Groups().Contains(*group) || !contact->Groups().Contains(book.AllContacts()))
                        return u"a member that does not know it"_s;
                }
            }
            for (const LxContactPtr &contact : book.AllContacts())
                excess -= contact->Groups().Count();
            if (excess != 0)
                return u"a group that does not know its member"_s;

            const QAbstractItemModel &groups = *List("lvwGroups").model();
            QStringList shownNames;
            for (int row = 0; row < groups.rowCount(); ++row)
                shownNames += groups.index(row, 0).data().toString();
            if (shownNames != names || QSet<QString>(names.begin(), names.end()).size() != names.size())
                return u"the groups: "_s + shownNames.join(u'|');
            const QModelIndexList chosen = List("lvwGroups").selectionModel()->selectedRows();
            if (chosen.size() != 1 || chosen[0] != List("lvwGroups").currentIndex())
                return u"no group is visibly chosen"_s;

            const QAbstractItemModel &contacts = *List("lvwContacts").model();
            QSet<int> shown;
            for (int row = 0; row < contacts.rowCount(); ++row) {
                const int id = RowKeys::IdentityOf(contacts.index(row, 0).data(RowKeys::kKeyRole).toString());
                const LxContactPtr contact = book.AllContacts().GetContact(id);
                shown += id;
                const QStringList cells = {contact->Name(), u'0' + contact->LocalMobile(),
                                           contact->Groups().AsString(u", "_s, &book.AllContacts())};
                for (int column = 0; column < 3; ++column) {
                    if (contacts.index(row, column).data() != cells[column])
                        return u"a row of "_s + contact->Name();
                }
            }
            if (shown.size() != contacts.rowCount())
                return u"a contact is shown twice"_s;
            const QString typed = Control<QLineEdit>(phoneBook, "txtFind").text();
            const int groupID = RowKeys::IdentityOf(chosen[0].data(RowKeys::kKeyRole).toString());
            for (const LxContactPtr &contact : book.Groups().GetGroup(groupID)) {
                if ((typed.isEmpty() || contact->Match(typed, false)) && !shown.contains(contact->ContactID()))
                    return u"no row for "_s + contact->Name();
            }

            const QString copy = home.filePath(u"copy.kpb"_s);
            book.Backup(copy);
            return ReadBytes(copy) == ReadBytes(book.FileName()) ? QString() : u"the file"_s;
        }

        QRandomGenerator random;
        RandomPrompts randomPrompts{random};
        LxCountryList countries;
        Settings settings{Settings::DefaultFileName(), prompts};
        PhoneBook phoneBook{PhoneBook::Services{countries, clock, randomPrompts, shell, settings}};
        QTimer answers;
    };

private slots:
    void anyOrderOfCommandsKeepsEverythingInStep()
    {
        const int given = qEnvironmentVariableIntValue("BREVIO_TEST_SEED");
        const quint32 seed = given > 0 ? quint32(given) : QRandomGenerator::global()->bounded(1'000'000U) + 1;
        qInfo("BREVIO_TEST_SEED=%u", seed);
        Fixture f(seed);
        for (int i = 0; i < 2000; ++i) {
            const QString done = f.Act();
            QCoreApplication::processEvents();
            const QString wrong = f.Wrong();
            QVERIFY2(wrong.isEmpty(), qPrintable(u"step %1, %2: %3"_s.arg(QString::number(i), done, wrong)));
        }
        QVERIFY(f.phoneBook.ReadOnlyPhoneBook().AllContacts().Count() > 0);
    }
};

QTEST_MAIN(TestPhoneBookSequences)
#include "test_phone_book_sequences.moc"
