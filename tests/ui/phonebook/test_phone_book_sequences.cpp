#include "Files.h"
#include "Mirror.h"
#include "PhoneBookWindow.h"
#include "YesPrompts.h"

#include <QHeaderView>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

/// Thousands of commands in any order, as no table would put them.
class TestPhoneBookSequences final : public QObject, private YesProfile, private PhoneBookWindow
{
    Q_OBJECT

    QRandomGenerator m_random;
    QList<Mirror *> m_mirrors;

    [[nodiscard]] QString Name()
    {
        const QStringList names = {u"Ann"_s,  u"Élan"_s, u"Zoe; \"Z\""_s,   u" "_s,        u"Everyone"_s,
                                   u"a, b"_s, u"x\ny"_s, QString(60, u'q'), u"New Group"_s};
        return names[m_random.bounded(9)] + (m_random.bounded(2) ? QString::number(m_random.bounded(30)) : QString());
    }

    void AnswerDialog()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        if (auto *name = dialog->findChild<QLineEdit *>(u"txtName"_s)) {
            name->setText(u"N"_s + Name());
            Control<QLineEdit>(*dialog, "txtMobile").setText(u"0%1"_s.arg(7700900000 + m_random.bounded(1000)));
        }
        if (auto *list = dialog->findChild<QPlainTextEdit *>())
            list->setPlainText(Name() + u'\n' + Name());
        m_random.bounded(4) ? dialog->accept() : dialog->reject();
    }

    /// Gives a command at random, at times after a change of what it is for, and says which.
    QString Act()
    {
        static const QStringList entries =
            u"mnuNewGroup mnuAddContactsToNewGroup mnuAddContactsToExistingGroup mnuRemoveContactsFromAllGroups "
            "mnuRemoveContactsFromThisGroup mnuDelete mnuPopupDeleteContacts mnuPopupDeleteGroup mnuMergeDuplicates "
            "mnuExclude mnuBackup mnuRestore mnuContactsImport mnuAddContact mnuAddContact mnuAddContact "
            "mnuEditContact mnuUndo mnuUndo mnuRedo rename rename find sort close"_s.split(u' ');
        QTreeView &list = m_random.bounded(2) ? Groups() : Contacts();
        list.setFocus();
        if (m_random.bounded(2)) {
            list.setCurrentIndex(list.model()->index(m_random.bounded(qMax(1, list.model()->rowCount())), 0));
            QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
        }
        const QString &entry = entries[m_random.bounded(int(entries.size()))];
        if (entry == u"rename")
            QTest::keyClick(&list, Qt::Key_F2);
        else if (entry == u"find")
            Find().setText(m_random.bounded(2) ? QString() : Name().left(1));
        else if (entry == u"sort")
            emit Contacts().header()->sectionClicked(m_random.bounded(3));
        else if (entry == u"close" && phoneBook.close())
            phoneBook.show();
        else if (entry != u"close")
            Trigger(entry);
        for (const QTreeView *edited : {&Groups(), &Contacts()}) {
            if (QLineEdit *editor = Editor(*edited)) {
                editor->setText(Name());
                // The last leaves it open for the next command.
                const std::array keys = {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Shift};
                QTest::keyClick(editor, keys[m_random.bounded(3U)]);
            }
        }
        return entry;
    }

    /// What is wrong now; empty when nothing is.
    QString Wrong()
    {
        QStringList names;
        for (const LxGroup *group : book.Groups())
            names += group->Name();
        names[Groups().currentIndex().row()] += u"*<"_s;
        if (Rows(Groups()) != names.join(u' '))
            return u"the groups: "_s + Rows(Groups());
        for (const Mirror *mirror : m_mirrors) {
            if (const QString stale = mirror->Stale(); !stale.isEmpty())
                return stale;
        }
        const QString copy = home.filePath(u"copy.kpb"_s);
        book.Backup(copy);
        return ReadBytes(copy) == ReadBytes(book.FileName()) ? QString() : u"the file"_s;
    }

public:
    TestPhoneBookSequences()
        : PhoneBookWindow(static_cast<Machine &>(*this), prompts)
    {
    }

private slots:
    void anyOrderOfCommandsKeepsEverythingInStep()
    {
        const int given = qEnvironmentVariableIntValue("BREVIO_TEST_SEED");
        const quint32 seed = given > 0 ? quint32(given) : QRandomGenerator::global()->bounded(1'000'000U) + 1;
        qInfo("BREVIO_TEST_SEED=%u", seed);
        m_random.seed(seed);
        prompts.file = home.filePath(u"backup"_s);
        WriteBytes(home.filePath(u"people"_s), "Ann,44,07700900001\nZoe,+447700900002\n");
        settings.Save(u"Import Contacts"_s, u"FileName"_s, home.filePath(u"people"_s));
        phoneBook.LoadData();
        phoneBook.show();
        for (const QTreeView *list : {&Groups(), &Contacts()})
            m_mirrors += new Mirror(list->model());
        QTimer answers;
        answers.callOnTimeout(this, [this] { AnswerDialog(); });
        answers.start(0);
        QByteArray before = ReadBytes(book.FileName());
        for (int i = 0; i < 1000; ++i) {
            const QString done = Act();
            QCoreApplication::processEvents();
            if (i % 8 == 7) {
                while (book.History().CanUndo())
                    Trigger(u"mnuUndo"_s);
                QCOMPARE(ReadBytes(book.FileName()), before);
                while (book.History().CanRedo())
                    Trigger(u"mnuRedo"_s);
                book.History().Clear();
                before = ReadBytes(book.FileName());
            }
            const QString wrong = Wrong();
            QVERIFY2(wrong.isEmpty(), qPrintable(u"step %1, %2: %3"_s.arg(QString::number(i), done, wrong)));
        }
        QVERIFY(Book().AllContacts().Count() > 0);
    }
};

QTEST_MAIN(TestPhoneBookSequences)
#include "test_phone_book_sequences.moc"
