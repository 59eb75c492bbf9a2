#include "Files.h"
#include "PhoneBookFixture.h"
#include "Rows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QProgressBar>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

/// The dialog and what a user does in it.
struct Assistant
{
    explicit Assistant(QDialog &shown)
        : dialog(shown)
        , list(Control<QTreeView>(shown, "lvwCandidates"))
        , mirror(list.model())
    {
    }
    ~Assistant() { QTest::qCompare(mirror.Stale(), QString(), "told", "shown", __FILE__, __LINE__); }

    void Wait() const
    {
        QTRY_VERIFY_WITH_TIMEOUT(!Control<QProgressBar>(dialog, "prgJudging").isVisibleTo(&dialog), 30000);
    }
    void Click(const char *button) const { Control<QPushButton>(dialog, button).click(); }
    void Show(int kind) const
    {
        auto &kinds = Control<QComboBox>(dialog, "cboShow");
        kinds.setCurrentIndex(kinds.findData(kind));
    }
    /// By the keyboard: to the heading of a column and so many entries on in its menu.
    void ChooseRole(int column, int role) const
    {
        emit Control<QTreeView>(dialog, "lvwFile").header()->sectionClicked(column);
        Control<QMenu>(dialog, "mnuRoles").actions()[role]->trigger();
        Control<QMenu>(dialog, "mnuRoles").close();
    }
    void ChooseCountry(const QString &code) const
    {
        auto &countries = Control<QComboBox>(dialog, "cboCountry");
        countries.setCurrentIndex(countries.findData(code));
    }
    void Check(const char *box, bool isChecked) const { Control<QCheckBox>(dialog, box).setChecked(isChecked); }
    void SelectRows(int first, int last) const
    {
        list.setCurrentIndex(list.model()->index(first, 1));
        list.selectionModel()->select({list.model()->index(first, 0), list.model()->index(last, 0)},
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    [[nodiscard]] QString Rows() const
    {
        QString text;
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            const QVariant tick = list.model()->index(row, 0).data(Qt::CheckStateRole);
            text += !tick.isValid() ? u"."_s : tick.value<Qt::CheckState>() == Qt::Checked ? u"x"_s : u"o"_s;
            for (int column = 0; column < list.model()->columnCount(); ++column)
                text += u' ' + list.model()->index(row, column).data().toString();
            text = text.trimmed() + u'\n';
        }
        return text + Control<QLabel>(dialog, "lblStatus").text();
    }

    QDialog &dialog;
    QTreeView &list;
    Mirror mirror;
};

using Act = void (*)(const Assistant &);

const QByteArray kFile = "Who,Handy,Telefon,Gruppen,Notiz\n"
                         "Cy,07400 123456,07400 123457,Club;Work,9\n"
                         "Di,020 7946 0000,,Club,07400123461\n"
                         "Élan 2,07971001234,,Club,\n"
                         "Cy again,+44 7400 123456,,,\n"
                         "Ed,+1 201 555 0123,,,\n"
                         "Fay,06 12 34 56 79,,Club,\n"
                         "Gil,+49 1512 3456789,,,\n"
                         "Hal,,,,\n";

struct Fixture : PhoneBookFixture
{
    Fixture()
    {
        programFolder = QStringLiteral(PROGRAM_DIR);
        phoneBook.Autosave();
        Open();
    }

    void Import(const QByteArray &bytes, Act act)
    {
        const QString path = home.filePath(u"new.csv"_s);
        QVERIFY(WriteBytes(path, bytes));
        prompts.ExpectAnyFileDialog(path);
        WhenDialogOpens(u"ImportAssistant"_s, [act](QDialog &dialog) { act(Assistant(dialog)); });
        Trigger(u"mnuContactsImportOther"_s);
    }
    [[nodiscard]] QByteArray Saved() { return ReadBytes(Book().FileName()); }
};

} // namespace

class TestImportAssistant final : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!QApplication::overrideCursor()); }

    void theFileIsShownAndJudged()
    {
        Fixture f;
        f.Import(kFile, [](const Assistant &a) {
            QCOMPARE(Control<QTreeView>(a.dialog, "lvwFile").model()->index(1, 4).data().toString(), u"07400123461"_s);
            QVERIFY(!Control<QPushButton>(a.dialog, "cmdOK").isEnabled());
            a.Wait();
            QCOMPARE(a.Rows(), QString());
        });
    }
};

QTEST_MAIN(TestImportAssistant)
#include "test_import_assistant.moc"
