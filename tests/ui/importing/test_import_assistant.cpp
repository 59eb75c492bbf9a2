#include "FileSizeLimit.h"
#include "Files.h"
#include "PhoneBookFixture.h"
#include "Rows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kFile = "Who,Handy,Telefon,Gruppen,Notiz\nCy,07400 123456,07400 123457,Club;Work,9\n"
                         "Di,020 7946 0000,,Club,07400123461\nÉlan 2,07971001234,,Club,\n"
                         "Cy again,+44 7400 123456,,,\nEd,+1 201 555 0123,,,\nFay,06 12 34 56 79,,Club,\n"
                         "Gil,+49 1512 3456789,,,\nHal,,,,\n";

std::optional<FileSizeLimit> g_fullDisk;

/// Does one thing in the dialog, as a user would. Gives what "list" sees.
QString Do(QDialog &dialog, const QString &what, const QStringList &words)
{
    auto &list = Control<QTreeView>(dialog, "lvwCandidates");
    const QAbstractItemModel &rows = *list.model();
    const int number = words.value(0).toInt();
    if (what == u"wait") {
        [&] { QTRY_VERIFY_WITH_TIMEOUT(Control<QProgressBar>(dialog, "prgJudging").isHidden(), 30000); }();
    } else if (what.startsWith(u"cbo")) {
        auto &box = Control<QComboBox>(dialog, what.toLatin1());
        box.setCurrentIndex(box.findText(words.join(u' '), Qt::MatchStartsWith));
    } else if (what == u"role") {
        emit Control<QTreeView>(dialog, "lvwFile").header()->sectionClicked(number);
        Control<QMenu>(dialog, "mnuRoles").actions()[words[1].toInt()]->trigger();
        Control<QMenu>(dialog, "mnuRoles").close();
    } else if (what == u"select") {
        list.setCurrentIndex(rows.index(number, 1));
        list.selectionModel()->select({rows.index(number, 0), rows.index(words[1].toInt(), 0)},
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    } else if (what == u"key") {
        QTest::keyClick(&list, static_cast<Qt::Key>(QKeySequence(words[0])[0].toCombined()));
    } else if (what == u"list") {
        QString text;
        for (int row = 0; row < rows.rowCount(); ++row) {
            const QVariant tick = rows.index(row, 0).data(Qt::CheckStateRole);
            text += !tick.isValid() ? u'.' : tick.value<Qt::CheckState>() == Qt::Checked ? u'x' : u'o';
            for (int column = 0; column < rows.columnCount(); ++column)
                text += u' ' + rows.index(row, column).data().toString();
            text += u'/';
        }
        return text;
    } else if (what == u"full") {
        g_fullDisk.emplace(1);
    } else if (what == u"status") {
        return Control<QLabel>(dialog, "lblStatus").text() + u'/';
    } else {
        Control<QAbstractButton>(dialog, what.toLatin1()).click();
    }
    return {};
}

struct Fixture : PhoneBookFixture
{
    explicit Fixture(const QString &group = u"Work"_s)
    {
        programFolder = QStringLiteral(PROGRAM_DIR);
        work.SetName(group);
        phoneBook.Autosave();
        Open();
    }

    /// Imports the file with these steps in the dialog; gives what they saw.
    QString Import(const QByteArray &bytes, const QString &steps)
    {
        QString seen;
        ExpectFile(bytes);
        if (steps.contains(u"full"_s))
            prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        WhenDialogOpens(u"ImportAssistant"_s, [steps, &seen](QDialog &dialog) {
            const Mirror mirror(Control<QTreeView>(dialog, "lvwCandidates").model());
            QCOMPARE(Control<QLabel>(dialog, "lblFile").text().section(u':', 0, 0), u"new.csv"_s);
            for (const QString &step : steps.split(u", "_s))
                seen +=
                    !dialog.isVisible() ? u"closed "_s : Do(dialog, step.section(u' ', 0, 0), step.split(u' ').mid(1));
            seen += mirror.Stale();
        });
        Trigger(u"mnuContactsImportOther"_s);
        return seen;
    }
    void ExpectFile(const QByteArray &bytes)
    {
        QVERIFY(WriteBytes(home.filePath(u"new.csv"_s), bytes));
        prompts.ExpectAnyFileDialog(home.filePath(u"new.csv"_s));
    }
    [[nodiscard]] QByteArray Saved() { return ReadBytes(Book().FileName()); }
};

} // namespace

class TestImportAssistant final : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        g_fullDisk.reset();
        QVERIFY(!QApplication::overrideCursor());
    }

    // What the user does and sees, what the status bar says then, and what the phone book holds besides its own.
    TABLE_TEST(
        whatIsTickedComesIn, (const QString &steps, const QString &outcome),
        u"wait, list, status, cmdOK -> x Cy +447400123456 mobile  Club, Work/"
        "x Cy (2) +447400123457 mobile  Club, Work/o Di +442079460000 landline  Club/"
        "o Élan 2 +447971001234 mobile in the phone book as Élan Club/"
        "o Cy again +447400123456 mobile in the file as Cy /x Ed +12015550123 mobile  /"
        ". Fay 06 12 34 56 79 not a number  Club/. Gil +49 1512 3456789 cannot be kept in the phone book  /"
        ". Hal  no number  /3 of 9 ticked/Imported 3 contacts to group Imported; 6 were left out | "
        "Cy:Imported+Club+Work Cy (2):Imported+Club+Work Ed:Imported | Work,Imported,Club",
        u"wait, cboShow landline, list, status, cmdTick, cboShow mobile, cmdUntick, cmdOK -> "
        "o Di +442079460000 landline  Club/3 of 9 ticked/Imported 1 contact to group Imported; 8 were left out | "
        "Di:Imported+Club | Work,Imported,Club",
        u"wait, chkGroups, cmdTick, status, cmdUntick, cboShow already, cmdTick, cboShow twice, cmdTick, status, "
        "cmdOK -> 6 of 9 ticked/2 of 9 ticked/Imported 2 contacts to group Imported; 7 were left out | Élan 2:Imported "
        "Cy again:Imported | Work,Imported",
        u"wait, select 2 3, key Space, select 0 0, key F2, cmdOK -> Imported 4 contacts to group Imported; 5 were left "
        "out | Cy (2):Imported+Club+Work Di:Imported+Club Élan 2:Imported+Club Ed:Imported | Work,Imported,Club",
        u"wait, cboCountry France, wait, cmdOK -> Imported 3 contacts to group Imported; 6 were left out | "
        "Cy again:Imported Ed:Imported Fay:Imported+Club | Work,Imported,Club",
        u"wait, select 2 2, key Space, select 5 5, key Space, cboCountry France, wait, cboCountry United Kingdom, "
        u"wait, "
        "cmdOK -> Imported 3 contacts to group Imported; 6 were left out | Cy:Imported+Club+Work "
        "Cy (2):Imported+Club+Work Di:Imported+Club | Work,Imported,Club",
        u"wait, role 1 6, role 2 6, wait, cmdOK, role 4 3, chkHeading, wait, cmdOK -> "
        "Imported 1 contact to group Imported; 8 were left out | Di:Imported+Club | Work,Imported,Club")
    {
        Fixture f;
        const QByteArray saved = f.Saved();
        const QString before = f.Print();
        const QString seen = f.Import(kFile, steps);
        QCOMPARE(seen + f.Status() + u" | "_s + f.Print().remove(before.section(u'|', 0, 0)), outcome);
        QVERIFY(f.Saved() != saved && f.Editor(f.Groups()));
        QTest::keyClick(f.Editor(f.Groups()), Qt::Key_Escape);
        QVERIFY(Control<QAction>(f.phoneBook, "mnuUndo").text().contains(u"Import"));
        f.Trigger(u"mnuUndo"_s);
        QCOMPARE(f.Print(), before);
        QCOMPARE(f.Saved(), saved);
        f.Trigger(u"mnuRedo"_s);
        QCOMPARE(f.Groups().currentIndex().data().toString(), u"Imported"_s);
    }

    // It is told, and in memory, and the next save brings it to the disk.
    void aFailedSaveLosesNothing()
    {
        Fixture f;
        const QByteArray saved = f.Saved();
        f.Import(kFile, u"wait, full, cmdOK"_s);
        QCOMPARE(f.Saved(), saved);
        QCOMPARE(f.Status(), u"Imported 3 contacts to group Imported; 6 were left out"_s);
        QTest::keyClick(f.Editor(f.Groups()), Qt::Key_Escape);
        f.prompts.ExpectBoxBeginning(u"The phone book could not be saved: "_s, PromptIcon::Exclamation);
        f.Trigger(u"mnuUndo"_s);
        g_fullDisk.reset();
        f.Trigger(u"mnuRedo"_s);
        QCOMPARE(f.Saved().count("Imported"), 3);
    }

    // Closed or begun anew while threads work; Enter imports nothing yet.
    TABLE_TEST(judgingEndsWhereItMust, (const QString &steps, const QString &added), u"key Return, cmdOK -> | Work",
               u"cboCountry France, role 0 6, cboCountry United Kingdom, wait, status, cmdUntick, select 19999 19999, "
               "key Space, cmdOK -> 07400019999:Imported | Work,Imported")
    {
        Fixture f;
        const QString before = f.Print();
        QByteArray file = "Name,Mobile\n";
        for (int i = 0; i < 20'000; ++i)
            file += "Ann,074" + QByteArray::number(i).rightJustified(8, '0') + '\n';
        const QString seen = f.Import(file, steps);
        QVERIFY(seen.isEmpty() || seen == u"20,000 of 20,000 ticked/"_s);
        QCOMPARE(f.Print().remove(before.section(u'|', 0, 0)), added);
        QCOMPARE(f.settings.Get(u"Import from Other Programs"_s, u"Country"_s), u"GB"_s);
    }

    TABLE_TEST(whatCannotBeReadIsTold, (const QByteArray &bytes, const QString &told),
               {"empty", "", u"The file is empty."_s},
               {"picture", "\x89PNG\r\n\x1a\n\1\2\3", u"The file holds no text"_s},
               {"cut card", "BEGIN:VCARD\nFN:Ann\nTEL:07400123456\n", u"The file is cut off: it ends"_s},
               {"no plugin", kFile, u"Phone numbers cannot be judged."_s})
    {
        Fixture f;
        f.programFolder += bytes == kFile ? u"/gone"_s : QString();
        const QByteArray saved = f.Saved();
        f.ExpectFile(bytes);
        f.prompts.ExpectBoxBeginning(u"The contacts could not be imported: "_s + told, PromptIcon::Information,
                                     u"Import Failed"_s);
        f.Trigger(u"mnuContactsImportOther"_s);
        QCOMPARE(f.Saved(), saved);
    }

    void exportedCardsComeBackWhole()
    {
        Fixture f(u"Ärzte, 東京"_s);
        const QString before = f.Print();
        f.prompts.ExpectAnyFileDialog(f.home.filePath(u"a.VCF"_s));
        f.Trigger(u"mnuContactsExport"_s);
        f.Contacts().selectAll();
        f.ExpectDeleteQuestion(u"permanently delete the 4 selected contacts from"_s, PromptAnswer::Yes);
        f.Trigger(u"mnuPopupDeleteContacts"_s);
        f.Import(ReadBytes(f.home.filePath(u"a.VCF"_s)), u"wait, cmdOK"_s);
        QCOMPARE(f.Print().remove(QRegularExpression(u",?Imported\\+?"_s)), before);
    }
};

QTEST_MAIN(TestImportAssistant)
#include "test_import_assistant.moc"
