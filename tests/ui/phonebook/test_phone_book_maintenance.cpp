#include "Files.h"
#include "Notices.h"
#include "PhoneBookFixture.h"
#include "Rows.h"

#include <QPlainTextEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

const auto kInvalid = u"Invalid country 0"_s;
const auto kNothing =
    u"No line of the file holds a mobile number of a known country and another field, separated by a comma or a tab."_s;
const auto kOtherWay =
    u"Files of other programs, such as vCards and spreadsheets with headings or numbers of several kinds, come in by "
    "Contacts, Import from Other Programs..."_s;

struct Fixture : PhoneBookFixture
{
    Fixture()
    {
        phoneBook.Autosave();
        Open();
    }

    [[nodiscard]] QString Path(const QString &name) const { return home.filePath(name); }
    [[nodiscard]] QByteArray Saved() { return ReadBytes(Book().FileName()); }
    [[nodiscard]] QString Lists() const { return Rows(Groups()) + u" | "_s + Rows(Contacts()); }

    /// Gives a command that file, and expects the failure that is told, unless it is empty.
    void TriggerWithFile(const QString &action, const QString &path, const QString &caption = {},
                         const QString &failure = {}, PromptIcon icon = PromptIcon::Information)
    {
        prompts.ExpectAnyFileDialog(path);
        if (!failure.isEmpty())
            prompts.ExpectBox(failure, icon, PromptAnswer::Ok, caption);
        Trigger(action);
        prompts.VerifyAllCame();
    }

    void ImportFile(const QByteArray &bytes)
    {
        QVERIFY(WriteBytes(Path(u"new.csv"_s), bytes));
        settings.Save(u"Import Contacts"_s, u"FileName"_s, Path(u"new.csv"_s));
        WhenDialogOpens(u"Import"_s, [](QDialog &dialog) { Control<QPushButton>(dialog, "cmdOK").click(); });
        Trigger(u"actImport"_s);
    }
};

} // namespace

class TestPhoneBookMaintenance final : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!QApplication::overrideCursor()); }

    TABLE_TEST(aTypedListIsDeletedAfterAnOk, (const QString &button, const QString &left),
               u"cmdOK -> Bob:Work Élan: | Work, 3 contacts deleted",
               u"cmdCancel -> Bob:Work Ann:Work Zoe: Élan: A\u00A0B: | Work, 4 contacts")
    {
        Fixture f;
        f.Add(u"A\u00A0B"_s, u"1"_s);
        WhenDialogOpens(u"DeleteMany"_s, [name = button.toLatin1()](QDialog &dialog) {
            auto &box = Control<QPlainTextEdit>(dialog, "txtExclude");
            QCOMPARE(dialog.windowTitle() + box.textCursor().selectedText(),
                     u"Delete Multiple07971001234\u2029Fred Bloggs\u2029"_s);
            box.insertPlainText(u"ann\n\n ZOE \na\u00A0b\n07971 001234\nNobody"_s);
            Control<QPushButton>(dialog, name).click();
        });
        f.Trigger(u"mnuExclude"_s);
        QCOMPARE(f.Print() + u", "_s + f.Status(), left);
    }

    void aRestoreFindsTheChosenGroupByItsName()
    {
        Fixture f;
        f.ChooseGroup(1);
        const QString file = f.Path(u"backup.kpb"_s);
        QVERIFY(WriteBytes(file, "\"Cy\",44,\"1\",\"Club;Work\"\r\n"));
        f.TriggerWithFile(u"mnuRestore"_s, file);
        f.TriggerWithFile(u"mnuBackup"_s, f.Book().FileName());
        f.TriggerWithFile(u"mnuRestore"_s, f.Book().FileName());
        f.TriggerWithFile(u"mnuRestore"_s, {});
        QCOMPARE(f.Lists(), u"Everyone Club Work*< | Cy"_s);
        QCOMPARE(f.Saved(), ReadBytes(file));
        QVERIFY(WriteBytes(file, "\"Di\",44,\"2\"\r\nx\r\n"));
        f.TriggerWithFile(u"mnuRestore"_s, file);
        QCOMPARE(f.Lists(), u"Everyone*< | Di"_s);
        QVERIFY(f.Status().startsWith(u"The old phone book file was kept as "_s));
    }

    void restoresTheOldestCopyByTheFirstSaveOfADay()
    {
        Fixture f;
        const QString copy = f.Book().FileName() + u".2004110%1.bak"_s;
        for (int day = 1; day <= 7; ++day)
            QVERIFY(WriteBytes(copy.arg(day), "\"Day " + QByteArray::number(day) + "\",44,\"1\"\r\n"));
        f.TriggerWithFile(u"mnuRestore"_s, copy.arg(1));
        QCOMPARE(f.Lists(), u"Everyone*< | Day 1"_s);
    }

    void aFailureLeavesEverythingAsItWas()
    {
        Fixture f;
        f.Book().Groups().CreateGroup(u"Empty"_s);
        const QByteArray saved = f.Saved();
        const QString print = f.Print();
        const QString folder = QFileInfo(f.Book().FileName()).path();
        const QString other = f.Path(u"other"_s);
        QVERIFY(WriteBytes(other, "\x89PNG\r\nAnn,07700900123\r\n"));
        const QString notRestored = u"The phonebook could not be restored"_s;
        const auto restore = [&](const QString &path, const QString &why, PromptIcon icon = PromptIcon::Information) {
            f.TriggerWithFile(u"mnuRestore"_s, path, u"Restore Failed"_s, notRestored + why, icon);
        };
        restore(other, u": other is not a phone book"_s);
        restore(f.Path(u"gone/b.kpb"_s), u": File not found"_s);
        f.TriggerWithFile(u"mnuBackup"_s, f.Path(u"gone/b.kpb"_s), u"Backup Failed"_s,
                          u"The phonebook could not be backed up: No such file or directory"_s);
        f.TriggerWithFile(u"mnuContactsExport"_s, f.Path(u"gone/b.csv"_s), u"Export Failed"_s,
                          u"The phonebook could not be exported: No such file or directory"_s);
        QVERIFY(QDir().rename(folder, folder + u"2"_s));
        restore(other, u", as the existing phonebook could not be saved: No such file or directory"_s,
                PromptIcon::Critical);
        QVERIFY(QDir().rename(folder + u"2"_s, folder));
        QCOMPARE(f.Saved(), saved);
        QCOMPARE(f.Print(), print);
        QCOMPARE(f.Lists(), u"Everyone*< Work Empty | Ann Bob Élan Zoe"_s);
    }

    void theChosenGroupIsExported()
    {
        Fixture f;
        f.ChooseGroup(1);
        const QString file = f.Path(u"out.csv"_s);
        f.TriggerWithFile(u"mnuContactsExport"_s, file);
        QVERIFY(ReadBytes(file).endsWith("\"Bob\",\"+447700900002\"\r\n\"Ann\",\"+447700900003\"\r\n"));
        QCOMPARE(f.Status(), u"2 contacts exported to out.csv"_s);
    }

    void anImportMakesAGroupThatIsNamedAtOnce()
    {
        Fixture f;
        f.Find().setText(u"q"_s);
        const auto file = "Zo\xC3\xAB,+441,Friends\r\nName;Mobile\n\"# Name\"\nCy\t33\t0612345678,"_ba;
        f.ImportFile(file);
        QCOMPARE(f.Lists() + f.Status(),
                 u"Everyone Work Imported*< | Cy1 contacts; lines of the file that hold no contact: 2"_s);
        f.ImportFile(file);
        QTest::keyClicks(f.Editor(f.Groups()), u"Club\r"_s);
        QTRY_COMPARE(f.Rows(f.Groups()), u"Everyone Work Imported Club*<"_s);
        QVERIFY(f.Saved().endsWith("\"Cy\",33,\"0612345678\",\"Imported\"\r\n\"Cy\",33,\"0612345678\",\"Club\"\r\n"));
    }

    TABLE_TEST(
        whatCouldNotBeImportedIsTold,
        (const QByteArray &bytes, const QString &failure, const QString &added, const QString &status,
         const QString &details),
        {"some without a country", "# all\r\rname\rCy,+447700900123\nDi,07700900124\nEd,+447700900125", kInvalid,
         u"Cy:Imported | Work,Imported"_s,
         u"1 contacts; line 5 of the file stopped the import; lines of the file that hold no contact: 1"_s,
         u"Line 5 of the file stopped the import. Before it, 1 contacts came in.\r\n\r\n"_s},
        {"all without a country", "Di,07700900124", kInvalid, u"| Work"_s,
         u"0 contacts; line 1 of the file stopped the import"_s,
         u"Line 1 of the file stopped the import. Before it, 0 contacts came in.\r\n\r\n"_s},
        {"another separator", "Cy;44;07700900123\nDi;44;07700900124", kNothing, u"| Work"_s, u"4 contacts"_s, {}})
    {
        Fixture f;
        const QString before = f.Print().remove(u"| Work"_s);
        f.prompts.ExpectBox(u"The contacts could not be imported: "_s + failure, PromptIcon::Information,
                            PromptAnswer::Ok, u"Import Failed"_s, details + kOtherWay);
        f.ImportFile(bytes);
        QCOMPARE(f.Print(), before + added);
        QCOMPARE(f.Saved().count('\n'), f.Book().AllContacts().Count());
        QVERIFY(!f.Editor(f.Groups()));
        QCOMPARE(f.Status(), status);
    }

    void mergingTellsHowManyWentAndAsksFirst()
    {
        Fixture f;
        const auto merge = [&f](PromptAnswer answer) {
            f.prompts.ExpectCarefulQuestion(
                u"This will merge contacts with the same mobile phone number across the entire phone book.\r\n\r\n"
                "Are you sure you want to merge duplicate contacts?"_s,
                PromptIcon::None, answer, u"Merge Duplicates"_s);
            f.Trigger(u"mnuMergeDuplicates"_s);
            return f.Status();
        };
        f.Add(u"Anne"_s, u"07700 900003"_s);
        f.ChooseGroup(1);
        QCOMPARE(merge(PromptAnswer::No), u"2 contacts"_s);
        QCOMPARE(merge(PromptAnswer::Yes), u"1 contact merged"_s);
        QCOMPARE(f.Lists(), u"Everyone Work*< | Anne Bob"_s);
    }

    void aNoticeWaitsForTheNextStart()
    {
        Fixture f;
        Notices(f.settings).Add(u"one"_s);
        QCOMPARE(Notices(f.settings).Take(), u"one"_s);
        QCOMPARE(Notices(f.settings).Take(), QString());
    }

    void theImportDialogStaysUntilAFileIsRead()
    {
        Fixture f;
        const QString missing = f.Path(u"missing.csv"_s);
        const QString empty = f.Path(u"empty.csv"_s);
        QVERIFY(WriteBytes(empty, "\xEF\xBB\xBF"));
        WhenDialogOpens(u"Import"_s, [&](QDialog &dialog) {
            auto &ok = Control<QPushButton>(dialog, "cmdOK");
            const auto browse = [&](const QString &path) {
                f.prompts.ExpectAnyFileDialog(path);
                Control<QPushButton>(dialog, "cmdBrowse").click();
            };
            QVERIFY(!ok.isEnabled());
            browse(missing);
            f.prompts.ExpectBox(u"The selected file cannot not be opened: File not found\r\n\r\n"
                                "Please ensure the file is not in use in another application, and try again."_s,
                                PromptIcon::Exclamation, PromptAnswer::Ok, u"File not available"_s);
            ok.click();
            browse(empty);
            f.prompts.ExpectBox(u"The selected file was empty."_s, PromptIcon::Exclamation, PromptAnswer::Ok,
                                u"File empty"_s);
            ok.click();
            QVERIFY(dialog.isVisible());
        });
        f.Trigger(u"mnuContactsImport"_s);
        QCOMPARE(f.settings.Get(u"Import Contacts"_s, u"FileName"_s), empty);
    }
};

QTEST_MAIN(TestPhoneBookMaintenance)
#include "test_phone_book_maintenance.moc"
