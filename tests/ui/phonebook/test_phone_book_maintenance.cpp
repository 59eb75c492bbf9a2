#include "Files.h"
#include "PhoneBookFixture.h"
#include "Utils.h"
#include "WithoutRoot.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct Fixture : PhoneBookFixture
{
    Fixture()
    {
        phoneBook.Autosave();
        Open();
    }

    [[nodiscard]] QString Path(const QString &name) const { return home.filePath(name); }
    [[nodiscard]] QByteArray Saved() { return ReadBytes(Book().FileName()); }

    void Trigger(const QString &action) const { Action(action).trigger(); }

    /// The next file dialog is that of backup or restore.
    void ExpectBackupDialog(bool isForRestore, const QString &proposal, const QString &path)
    {
        prompts.ExpectFileDialog(
            {.title = isForRestore ? u"Select Backup File to Restore"_s : u"Select File to Backup to"_s,
             .filter = u"Brevio Phonebook (*.kpb)|*.kpb"_s,
             .initialPath = proposal,
             .confirmOverwrite = !isForRestore},
            path);
    }

    void ExpectFailure(const QString &caption, const QString &text, PromptIcon icon = PromptIcon::Information)
    {
        prompts.ExpectBox(text, icon, PromptAnswer::Ok, caption);
    }

    /// Imports the file through the dialog, which then closes by itself or is cancelled.
    void ImportFile(const QString &path)
    {
        settings.Save(u"Import Contacts"_s, u"FileName"_s, path);
        WhenDialogOpens(u"Import"_s, [](QDialog &dialog) { Control<QPushButton>(dialog, "cmdOK").click(); });
        Trigger(u"mnuContactsImport"_s);
    }
};

} // namespace

class TestPhoneBookMaintenance final : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!QApplication::overrideCursor()); }

    void mergesWhenTheUserSaysYes()
    {
        Fixture f;
        f.Add(u"Bobby"_s, u"7700900002"_s);
        f.ChooseGroup(1);
        const auto expect = [&f](PromptAnswer answer) {
            f.prompts.ExpectBox(
                u"This will merge contacts with the same mobile phone number across the entire phone book."
                "\r\n\r\nAre you sure you want to merge duplicate contacts?"_s,
                PromptIcon::None, answer, u"Merge Duplicates"_s);
        };
        const QString before = f.Print();
        expect(PromptAnswer::No);
        f.Trigger(u"mnuMergeDuplicates"_s);
        QCOMPARE(f.Print(), before);
        expect(PromptAnswer::Yes);
        f.Trigger(u"mnuMergeDuplicates"_s);
        QCOMPARE(f.Rows(f.Groups()) + f.Rows(f.Contacts()), u"Everyone Work*<Ann Bobby"_s);
        QVERIFY(f.Saved().startsWith("\"Bobby\",44,\"07700900002\",\"Work\"\r\n"));
    }

    void deletesByATypedList()
    {
        const std::tuple<QString, const char *, QString, QString> rows[] = {
            {u"ann\n\n ZOE \n07971 001234\nNobody"_s, "cmdOK", u"2 contacts deleted"_s, u"Bob:Work Élan: | Work"_s},
            {u"07971001234"_s, "cmdOK", u"1 contacts deleted"_s, u"Bob:Work Ann:Work Zoe: | Work"_s},
            {u"Bob"_s, "cmdCancel", u"4 contacts"_s, u"Bob:Work Ann:Work Zoe: Élan: | Work"_s},
        };
        for (const auto &[typed, button, status, left] : rows) {
            Fixture f;
            WhenDialogOpens(u"DeleteMany"_s, [typed = typed, button = button](QDialog &dialog) {
                auto &box = Control<QPlainTextEdit>(dialog, "txtExclude");
                QCOMPARE(dialog.windowTitle() + box.textCursor().selectedText(),
                         u"Delete Multiple07971001234\u2029Fred Bloggs"_s);
                QCOMPARE(Control<QLabel>(dialog, "lblHeading").text(),
                         u"To delete mutliple contacts from the phone book, enter their names or mobile numbers below, "
                         "one per line."_s);
                QCOMPARE(dialog.focusWidget(), &box);
                box.insertPlainText(typed);
                Control<QPushButton>(dialog, button).click();
            });
            f.Trigger(u"mnuExclude"_s);
            QCOMPARE(f.Status(), status);
            QCOMPARE(f.Print(), left);
            QCOMPARE(f.Saved().count('\n'), f.Book().AllContacts().Count());
        }
    }

    void backsUpAndRestores()
    {
        Fixture f;
        const QString file = f.Path(u"backup.kpb"_s);
        const QString proposal = Utils::MyDocumentsFolder() + u"/Backup of Brevio phonebook"_s;
        f.ExpectBackupDialog(false, proposal, {});
        f.Trigger(u"mnuBackup"_s);
        f.ExpectBackupDialog(false, proposal, file);
        f.Trigger(u"mnuBackup"_s);
        QCOMPARE(ReadBytes(file), f.Saved());
        QCOMPARE(f.Status(), u"Backed up to backup.kpb"_s);
        f.ExpectBackupDialog(true, file, {});
        f.Trigger(u"mnuRestore"_s);
        // The groups are made anew; the one of the chosen one's name is chosen.
        f.ChooseGroup(1);
        WriteBytes(file, "\"Cy\",44,\"1\",\"Club;Work\"\r\n");
        f.ExpectBackupDialog(true, file, file);
        f.Trigger(u"mnuRestore"_s);
        QCOMPARE(f.Rows(f.Groups()) + f.Rows(f.Contacts()), u"Everyone Club Work*<Cy"_s);
        QCOMPARE(f.Saved(), ReadBytes(file));
        const QString own = f.Book().FileName();
        f.ExpectBackupDialog(false, file, own);
        f.Trigger(u"mnuBackup"_s);
        f.ExpectBackupDialog(true, own, own);
        f.Trigger(u"mnuRestore"_s);
        QCOMPARE(f.Saved(), ReadBytes(file));
        const QString gone = f.Path(u"gone/backup.kpb"_s);
        f.ExpectBackupDialog(false, own, gone);
        f.ExpectFailure(u"Backup Failed"_s, u"The phonebook could not be backed up: No such file or directory"_s);
        f.Trigger(u"mnuBackup"_s);
        f.ExpectBackupDialog(true, gone, gone);
        f.ExpectFailure(u"Restore Failed"_s, u"The phonebook could not be restored: File not found"_s);
        f.Trigger(u"mnuRestore"_s);
        QCOMPARE(f.Saved(), ReadBytes(file));
    }

    void aFailedRestoreLeavesEverythingAsItWas()
    {
        Fixture f;
        f.Book().Groups().CreateGroup(u"Empty"_s);
        const QByteArray saved = f.Saved();
        const QString print = f.Print();
        const QString folder = QFileInfo(f.Book().FileName()).path();
        const QString file = f.Path(u"other"_s);
        QVERIFY(WriteBytes(file, "\x89PNG\r\nAnn,07700900123\r\n"));
        const auto restore = [&f](const QString &path, const QString &why, PromptIcon icon = PromptIcon::Information) {
            f.settings.Save(u"Backup Phonebook"_s, u"File"_s, u"last"_s);
            f.ExpectBackupDialog(true, u"last"_s, path);
            f.ExpectFailure(u"Restore Failed"_s, u"The phonebook could not be restored"_s + why, icon);
            f.Trigger(u"mnuRestore"_s);
        };
        restore(file, u": other is not a phone book"_s);
        restore(folder, u": It is not a file"_s);
        restore(u"/dev/zero"_s, u": It is not a file"_s);
        QVERIFY(QDir().rename(folder, folder + u"2"_s));
        restore(file, u", as the existing phonebook could not be saved: No such file or directory"_s,
                PromptIcon::Critical);
        QVERIFY(QDir().rename(folder + u"2"_s, folder));
        QCOMPARE(f.Saved(), saved);
        QCOMPARE(f.Print(), print);
        QCOMPARE(f.Rows(f.Groups()) + f.Rows(f.Contacts()), u"Everyone*< Work EmptyAnn Bob Élan Zoe"_s);
    }

    void exportsTheChosenGroup()
    {
        Fixture f;
        f.ChooseGroup(1);
        FileDialogRequest request{.title = u"Select File to Export to"_s,
                                  .filter = u"CSV (Comma delimited) (*.csv)|*.csv"_s,
                                  .initialPath = Utils::MyDocumentsFolder() + u"/Brevio Contacts"_s,
                                  .confirmOverwrite = true};
        f.prompts.ExpectFileDialog(request, {});
        f.Trigger(u"mnuContactsExport"_s);
        const QString file = f.Path(u"out.csv"_s);
        f.prompts.ExpectFileDialog(request, file);
        f.Trigger(u"mnuContactsExport"_s);
        QVERIFY(ReadBytes(file).endsWith("\"Bob\",\"+447700900002\"\r\n\"Ann\",\"+447700900003\"\r\n"));
        QCOMPARE(f.Status(), u"2 contacts exported to out.csv"_s);
        request.initialPath = file;
        f.prompts.ExpectFileDialog(request, f.Path(u"gone/out.csv"_s));
        f.ExpectFailure(u"Export Failed"_s, u"The phonebook could not be exported: No such file or directory"_s);
        f.Trigger(u"mnuContactsExport"_s);
    }

    void importsIntoAGroupThatIsNamedAtOnce()
    {
        Fixture f;
        const QString file = f.Path(u"new.csv"_s);
        QVERIFY(WriteBytes(file, "Zo\xC3\xAB,+441,Friends\r\nName;Mobile\nCy\t33\t0612345678,"));
        f.Find().setText(u"q"_s);
        f.ImportFile(file);
        QCOMPARE(f.Rows(f.Groups()) + f.Rows(f.Contacts()), u"Everyone Work Imported*<Cy"_s);
        QCOMPARE(f.Status(), u"1 contacts"_s);
        QCOMPARE(f.Editor(f.Groups())->text(), u"Imported"_s);
        f.ImportFile(file); // the name that is being typed stays
        QCOMPARE(f.Rows(f.Groups()), u"Everyone Work Imported Imported (2)*<"_s);
        QTest::keyClicks(f.Editor(f.Groups()), u"Club\r"_s);
        QTRY_COMPARE(f.Rows(f.Groups()), u"Everyone Work Imported Club*<"_s);
        QVERIFY(f.Saved().endsWith("\"Cy\",33,\"0612345678\",\"Imported\"\r\n\"Cy\",33,\"0612345678\",\"Club\"\r\n"));
    }

    void tellsWhatCouldNotBeImported()
    {
        const QString nothing =
            u"No line of the file holds a mobile number and another field, separated by a comma or a "
            "tab."_s;
        const std::tuple<QByteArray, QString, QString> rows[] = {
            {"Cy,+447700900123\nDi,07700900124\nEd,+447700900125", u"Invalid country 0"_s,
             u"Cy:Imported | Work,Imported"_s},
            {"Di,07700900124", u"Invalid country 0"_s, u"| Work"_s},
            {"Cy;44;07700900123\nDi;44;07700900124", nothing, u"| Work"_s},
            {"\x89PNG\r\n\x1A\n\0\0\0\rIHDR,\xFF\xFE"_ba, nothing, u"| Work"_s},
        };
        for (const auto &[bytes, why, added] : rows) {
            Fixture f;
            const QString before = f.Print().remove(u"| Work"_s);
            QVERIFY(WriteBytes(f.Path(u"new.csv"_s), bytes));
            f.ExpectFailure(u"Import Failed"_s, u"The contacts could not be imported: "_s + why);
            f.ImportFile(f.Path(u"new.csv"_s));
            QCOMPARE(f.Print(), before + added);
            QCOMPARE(f.Saved().count('\n'), f.Book().AllContacts().Count());
            QVERIFY(!f.Editor(f.Groups()));
        }
    }

    void theImportDialogKeepsItsFile()
    {
        Fixture f;
        const QString missing = f.Path(u"missing.csv"_s);
        const QString secret = f.Path(u"secret.csv"_s);
        QVERIFY(WriteBytes(secret, "Cy,07700900123") && QFile::setPermissions(secret, QFile::WriteOwner));
        QVERIFY(WriteBytes(f.Path(u"empty.csv"_s), "\xEF\xBB\xBF") && WriteBytes(f.Path(u"line.csv"_s), "\r\n"));
        QVERIFY(::mkfifo(QFile::encodeName(f.Path(u"pipe.csv"_s)).constData(), 0600) == 0);
        FileDialogRequest request{
            .title = u"Select File to Import from"_s,
            .filter = u"All contact files (*.csv, *.txt, *.kpb)|*.csv;*.txt;*.kpb|CSV (Comma delimited) (*.csv)|*.csv|"
                      "Text (Tab delimited) (*.txt)|*.txt|Brevio phonebook (*.kpb)|*.kpb|All files (*.*)|*.*"_s,
            .initialPath = Utils::MyDocumentsFolder() + u'/'};
        const auto stored = [&f] { return f.settings.Get(u"Import Contacts"_s, u"FileName"_s); };
        WhenDialogOpens(u"Import"_s, [&](QDialog &dialog) {
            auto &ok = Control<QPushButton>(dialog, "cmdOK");
            const auto &title = Control<QLineEdit>(dialog, "txtFileTitle");
            const auto browse = [&](const QString &path) {
                f.prompts.ExpectFileDialog(request, path);
                QTest::mouseClick(&Control<QPushButton>(dialog, "cmdBrowse"), Qt::LeftButton);
            };
            QCOMPARE(dialog.windowTitle() + title.text(), u"Import Contacts from CSV FilePlease browse for a file"_s);
            QVERIFY(!ok.isEnabled());
            browse({});
            QVERIFY(!ok.isEnabled());
            emit Control<QLabel>(dialog, "lblHelpLink").linkActivated({});
            const std::pair<QString, QString> rows[] = {{missing, u"File not found"_s},
                                                        {secret, u"Permission denied"_s},
                                                        {f.home.path(), u"It is not a file"_s},
                                                        {f.Path(u"pipe.csv"_s), u"It is not a file"_s},
                                                        {f.Path(u"empty.csv"_s), {}}};
            for (const auto &[path, why] : rows) {
                browse(path);
                QCOMPARE(title.text(), QFileInfo(path).fileName());
                if (why.isEmpty())
                    f.ExpectFailure(u"File empty"_s, u"The selected file was empty."_s, PromptIcon::Exclamation);
                else
                    f.ExpectFailure(u"File not available"_s,
                                    u"The selected file cannot not be opened: "_s + why +
                                        u"\r\n\r\nPlease ensure the file is not in use in another application, and try "
                                        "again."_s,
                                    PromptIcon::Exclamation);
                const WithoutRoot withoutRoot(f.home.path());
                ok.click();
                QVERIFY(dialog.isVisible());
                request.initialPath = path;
            }
            Control<QPushButton>(dialog, "cmdCancel").click();
        });
        f.Trigger(u"actImport"_s);
        QCOMPARE(stored(), f.Path(u"empty.csv"_s));
        QCOMPARE(f.shell.opened, QStringList(u"http://www.corvane.example/brevio/help_importing.html"_s));
        f.ExpectFailure(u"Import Failed"_s,
                        u"The contacts could not be imported: No line of the file holds a mobile number and another "
                        "field, separated by a comma or a tab."_s);
        f.ImportFile(f.Path(u"line.csv"_s));
        QCOMPARE(stored(), f.Path(u"line.csv"_s));
    }
};

QTEST_MAIN(TestPhoneBookMaintenance)
#include "test_phone_book_maintenance.moc"
