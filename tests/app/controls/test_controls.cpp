#include "Controls.h"
#include "Dialogs.h"
#include "FileFilters.h"
#include "NameValidator.h"
#include "Profile.h"
#include "SelectAllOnFocus.h"
#include "Settings.h"
#include "TextTable.h"
#include "WidgetPrompts.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QStandardItemModel>
#include <QTreeView>

using namespace Qt::StringLiterals;

class TestControls final : public QObject
{
    Q_OBJECT

    struct Fixture : Profile
    {
        Fixture()
        {
            window.setObjectName(u"Results"_s);
            window.setGeometry(50, 60, 300, 200);
        }

        [[nodiscard]] QString Layout() const
        {
            const QRect r(window.pos(), window.size());
            return u"%1,%2,%3,%4"_s.arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
        }

        /// The values of the keys in a section, joined by commas.
        [[nodiscard]] QString Stored(const QString &section, const QStringList &keys) const
        {
            QStringList values;
            for (const QString &key : keys)
                values += settings.Get(section, key);
            return values.join(u',');
        }

        Settings settings{Settings::DefaultFileName(), prompts};
        QDialog window;
    };

    inline static const QStringList kLayoutKeys = {u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s};

private slots:
    void windowPositionIsKeptInTwips()
    {
        Fixture f;
        f.window.show();
        const QPoint at = f.window.pos();
        const QString layout = f.Layout();
        Controls::SaveWindowPosition(f.settings, f.window);
        QCOMPARE(f.Stored(u"Results"_s, kLayoutKeys), u"%1,%2,4500,3000"_s.arg(at.x() * 15).arg(at.y() * 15));
        f.window.showMaximized();
        Controls::SaveWindowPosition(f.settings, f.window);
        f.window.showMinimized();
        Controls::SaveWindowPosition(f.settings, f.window);
        QDialog again;
        again.setObjectName(u"Results"_s);
        Controls::RestoreWindowPosition(f.settings, again);
        QCOMPARE(QRect(again.pos(), again.size()), QRect(at, QSize(300, 200)));
    }

    void fixedDialogKeepsItsDesignSize()
    {
        Fixture f;
        f.settings.Save(u"Results"_s, u"Height"_s, u"9000"_s);
        f.window.setFixedSize(200, 100);
        Controls::RestoreWindowPosition(f.settings, f.window);
        Controls::SaveWindowPosition(f.settings, f.window);
        QCOMPARE(f.Layout(), u"50,60,200,100"_s);
        QCOMPARE(f.Stored(u"Results"_s, kLayoutKeys), u"750,900,,9000"_s);
    }

    void badLayoutsArePassedOver_data()
    {
        AddTextTable({{u",,,", u"50,60,300,200"},
                      {u"x,?, ,1e", u"50,60,300,200"},
                      {u"nan,inf,-inf,nan", u"50,60,300,200"},
                      {u"1e30,-1e9,1e12,99999999999999999999", u"50,60,300,200"},
                      {u"150,150,0,-4500", u"10,10,300,200"},
                      {u"152.5,148.4,4500.9,3000", u"10,10,300,200"},
                      {u",450,,4500", u"50,30,300,300"},
                      {u"300000,450,,", u"499,30,300,200"}, // off every screen, and larger than the screen
                      {u"-60000,-60000,,", u"0,0,300,200"},
                      {u"450,300000,,", u"30,599,300,200"},
                      {u"0,0,60000,60000", u"0,0,800,800"}});
    }
    void badLayoutsArePassedOver()
    {
        QFETCH(QString, in);
        Fixture f;
        for (qsizetype i = 0; i < kLayoutKeys.size(); ++i) {
            if (const QString value = in.section(u',', i, i); !value.isEmpty())
                f.settings.Save(u"Results"_s, kLayoutKeys[i], value);
        }
        QCOMPARE(f.window.screen()->availableGeometry(), QRect(0, 0, 800, 800));
        Controls::RestoreWindowPosition(f.settings, f.window);
        QTEST(f.Layout(), "out");
    }

    void columnWidthsGoByCaption()
    {
        Fixture f;
        QStandardItemModel model(0, 3);
        model.setHorizontalHeaderLabels({u"Name"_s, u"Mobile"_s, u"Message"_s});
        QTreeView list;
        list.setObjectName(u"lvwTest"_s);
        list.setModel(&model);
        list.setColumnWidth(0, 77);
        list.setColumnWidth(1, 88);
        Controls::SaveColumnWidths(f.settings, list);
        QCOMPARE(f.Stored(u"lvwTest Column Widths"_s, {u"Name"_s, u"Mobile"_s}), u"1155,1320"_s);
        model.setHeaderData(1, Qt::Horizontal, u"Number"_s);
        f.settings.Save(u"lvwTest Column Widths"_s, u"Number"_s, u"-5"_s);
        list.setColumnWidth(0, 50);
        list.setColumnWidth(1, 50);
        Controls::RestoreColumnWidths(f.settings, list);
        QCOMPARE(list.columnWidth(0), 77);
        QCOMPARE(list.columnWidth(1), 50);
    }

    void fileFilters_data()
    {
        AddTextTable({{u"CSV (Comma delimited) (*.csv)|*.csv", u"CSV (Comma delimited) (*.csv) -> csv"},
                      {u"Text (*.csv;*.txt)|*.csv;*.txt|All|*.*", u"Text (*.csv *.txt);All (*.*) -> csv"},
                      {u"All files (*.*)|*.*", u"All files (*.*) -> "},
                      {u"Text", u" -> "}});
    }
    void fileFilters()
    {
        QFETCH(QString, in);
        QTEST(FileFilters::ForQt(in).join(u';') + u" -> "_s + FileFilters::DefaultExtension(in), "out");
    }

    void selectsAllWhenTheUserGoesThere()
    {
        QWidget window;
        auto *layout = new QFormLayout(&window);
        auto *line = new QLineEdit(u"line"_s);
        auto *text = new QPlainTextEdit(u"text"_s);
        layout->addRow(u"&Line"_s, line);
        layout->addRow(u"&Text"_s, text);
        new SelectAllOnFocus(line);
        new SelectAllOnFocus(text);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto selection = [&] { return line->selectedText() + u'|' + text->textCursor().selectedText(); };
        const auto leave = [&] {
            window.setFocus();
            line->deselect();
            text->moveCursor(QTextCursor::End);
        };

        leave();
        line->setFocus(Qt::OtherFocusReason);
        QCOMPARE(selection(), u"|"_s);
        QTest::keyClick(line, Qt::Key_Tab);
        QCOMPARE(selection(), u"|text"_s);
        // Typed on at once, the second key must not replace the first.
        QTest::keyClicks(text, u"ab"_s);
        QCoreApplication::processEvents();
        QCOMPARE(text->toPlainText(), u"ab"_s);
        leave();
        QTest::keyClick(&window, Qt::Key_T, Qt::AltModifier);
        QCOMPARE(selection(), u"|ab"_s);
        leave();
        QTest::mouseClick(text->viewport(), Qt::LeftButton);
        QTRY_COMPARE(selection(), u"|ab"_s);
        QTest::mouseClick(text->viewport(), Qt::LeftButton, {}, {3, 3});
        QCoreApplication::processEvents();
        QCOMPARE(selection(), u"|"_s);
        QTest::mouseClick(line, Qt::LeftButton);
        QTRY_COMPARE(selection(), u"line|"_s);

        // The window's own return is no wish to replace the text.
        leave();
        text->setFocus();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        window.activateWindow();
        QTRY_VERIFY(text->hasFocus());
        QCoreApplication::processEvents();
        QCOMPARE(selection(), u"|"_s);
    }

    void namesFitTheFile_data()
    {
        AddTextTable({{u"\"Al\" Bo", u"'Al' Bo"},
                      {u"a\r\nb\nc\u0085d\u2029", u"a b c d "},
                      {u"0123456789x", u"0123456789"},
                      {u"012345678😀", u"012345678"},
                      {u"01234567😀", u"01234567😀"}});
    }
    void namesFitTheFile()
    {
        QFETCH(QString, in);
        QLineEdit box;
        box.setMaxLength(10);
        box.setValidator(new NameValidator(&box));
        box.insert(in);
        QTEST(box.text(), "out");
        box.setText(u"012345678"_s);
        box.setCursorPosition(4);
        box.insert(u"😀"_s); // half of which has room
        QCOMPARE(box.text(), u"012345678"_s);
        QCOMPARE(box.cursorPosition(), 4);
    }

    void boxesShowPlainText()
    {
        QWidget owner;
        owner.show();
        const auto answer = [&owner](PromptButtons buttons, Qt::Key key) {
            WhenDialogOpens({}, [&owner, key](QDialog &dialog) {
                auto &box = static_cast<QMessageBox &>(dialog);
                QCOMPARE(box.text(), u"<b>a</b>\n\nb & c"_s);
                QCOMPARE(box.textFormat(), Qt::PlainText);
                QCOMPARE(box.windowTitle(), u"Brevio"_s);
                QCOMPARE(box.windowModality(), Qt::ApplicationModal);
                QCOMPARE(box.parentWidget(), &owner);
                QTest::keyClick(&box, key);
            });
            return WidgetPrompts().ShowMessageBox({.text = u"<b>a</b>\r\n\r\nb & c"_s, .buttons = buttons}, &owner);
        };
        QCOMPARE(answer(PromptButtons::YesNo, Qt::Key_Escape), PromptAnswer::No);
        QCOMPARE(answer(PromptButtons::YesNo, Qt::Key_Return), PromptAnswer::Yes);
        QCOMPARE(answer(PromptButtons::Ok, Qt::Key_Escape), PromptAnswer::Ok);
    }

    void saveDialogAddsTheExtension()
    {
        Fixture f;
        const QString folder = f.home.path();
        WhenDialogOpens(u"QFileDialog"_s, [](QDialog &dialog) {
            auto &name = Control<QLineEdit>(dialog, "fileNameEdit");
            QCOMPARE(name.text(), u"Send Results"_s);
            name.setText(u"mine"_s);
            QTest::keyClick(&name, Qt::Key_Return);
        });
        WidgetPrompts prompts;
        QCOMPARE(prompts.AskSaveFile({u"Save"_s, u"CSV (*.csv)|*.csv"_s, folder + u"/Send Results"_s}, nullptr),
                 folder + u"/mine.csv"_s);
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
