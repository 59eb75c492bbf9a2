#include "Controls.h"
#include "Dialogs.h"
#include "FileFilters.h"
#include "NameValidator.h"
#include "Profile.h"
#include "SelectAllOnFocus.h"
#include "Settings.h"
#include "WidgetPrompts.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
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
        Settings settings{Settings::DefaultFileName(), prompts};
    };

    struct Window : QDialog
    {
        Window()
        {
            setObjectName(u"Results"_s);
            resize(300, 200);
            move(50, 60);
        }
    };

    /// The section's values as "key=value", in the order of `keys`, without those that are missing.
    static QString Stored(const Settings &settings, const QString &section, const QStringList &keys)
    {
        QStringList values;
        for (const QString &key : keys) {
            const QString value = settings.Get(section, key);
            if (!value.isEmpty())
                values += key + u'=' + value;
        }
        return values.join(u' ');
    }

    inline static const QStringList kGeometry = {u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s};

private slots:
    void windowPositionIsKeptInTwips()
    {
        Fixture f;
        {
            Window window;
            window.show();
            window.setGeometry(120, 80, 400, 300);
            Controls::SaveWindowPosition(f.settings, window);
            QCOMPARE(Stored(f.settings, u"Results"_s, kGeometry),
                     u"Left=%1 Top=%2 Width=6000 Height=4500"_s.arg(window.x() * 15).arg(window.y() * 15));
            window.move(10, 20);
            window.showMaximized();
            Controls::SaveWindowPosition(f.settings, window);
            window.showMinimized();
            Controls::SaveWindowPosition(f.settings, window);
        }
        Window window;
        Controls::RestoreWindowPosition(f.settings, window);
        QCOMPARE(window.pos() * 15, QPoint(f.settings.Get(u"Results"_s, u"Left"_s).toInt(),
                                           f.settings.Get(u"Results"_s, u"Top"_s).toInt()));
        QCOMPARE(window.size(), QSize(400, 300));
    }

    void fixedDialogKeepsItsDesignSize_data()
    {
        QTest::addColumn<bool>("byLayout");
        QTest::newRow("layout") << true;
        QTest::newRow("fixed size") << false;
    }
    void fixedDialogKeepsItsDesignSize()
    {
        QFETCH(bool, byLayout);
        Fixture f;
        f.settings.Save(u"Results"_s, u"Height"_s, u"9000"_s);
        Window window;
        if (byLayout)
            (new QFormLayout(&window))->setSizeConstraint(QLayout::SetFixedSize);
        else
            window.setFixedSize(200, 100);
        const QSize design = window.size();
        Controls::SaveWindowPosition(f.settings, window);
        QCOMPARE(Stored(f.settings, u"Results"_s, kGeometry), u"Left=750 Top=900 Height=9000"_s);
        Controls::RestoreWindowPosition(f.settings, window);
        QCOMPARE(window.size(), design);
    }

    void badValuesArePassedOver_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QRect>("expected");
        const QRect design(50, 60, 300, 200);
        QTest::newRow("none") << u",,,"_s << design;
        QTest::newRow("no numbers") << u"x,?, ,1e"_s << design;
        QTest::newRow("not finite") << u"nan,inf,-inf,nan"_s << design;
        QTest::newRow("absurd") << u"1e30,-1e9,1e12,99999999999999999999"_s << design;
        QTest::newRow("sizes not positive") << u"150,150,0,-4500"_s << QRect(10, 10, 300, 200);
        QTest::newRow("fractions") << u"152.5,148.4,4500.9,3000"_s << QRect(10, 10, 300, 200);
        QTest::newRow("some") << u",450,,4500"_s << QRect(50, 30, 300, 300);
        QTest::newRow("off to the right") << u"300000,450,,"_s << QRect(499, 30, 300, 200);
        QTest::newRow("off to the left and top") << u"-60000,-60000,,"_s << QRect(0, 0, 300, 200);
        QTest::newRow("below") << u"450,300000,,"_s << QRect(30, 599, 300, 200);
        QTest::newRow("larger than the screen") << u"0,0,60000,60000"_s << QRect(0, 0, 800, 800);
    }
    void badValuesArePassedOver()
    {
        QFETCH(QString, stored);
        QFETCH(QRect, expected);
        Fixture f;
        for (qsizetype i = 0; i < kGeometry.size(); ++i) {
            if (const QString value = stored.section(u',', i, i); !value.isEmpty())
                f.settings.Save(u"Results"_s, kGeometry[i], value);
        }
        Window window;
        QCOMPARE(window.screen()->availableGeometry(), QRect(0, 0, 800, 800));
        Controls::RestoreWindowPosition(f.settings, window);
        QCOMPARE(QRect(window.pos(), window.size()), expected);
    }

    void columnWidthsGoByCaption()
    {
        Fixture f;
        QStandardItemModel model(0, 3);
        model.setHorizontalHeaderLabels({u"Name"_s, u"Mobile"_s, u"Message"_s});
        const auto show = [&model](QTreeView &list) {
            list.setObjectName(u"lvwTest"_s);
            list.setModel(&model);
        };
        QTreeView list;
        show(list);
        list.setColumnWidth(0, 77);
        list.setColumnWidth(1, 88);
        Controls::SaveColumnWidths(f.settings, list);
        QCOMPARE(Stored(f.settings, u"lvwTest Column Widths"_s, {u"Name"_s, u"Mobile"_s}), u"Name=1155 Mobile=1320"_s);

        model.setHeaderData(1, Qt::Horizontal, u"Number"_s);
        f.settings.Save(u"lvwTest Column Widths"_s, u"Message"_s, u"-5"_s);
        QTreeView again;
        show(again);
        const int design = again.columnWidth(1);
        Controls::RestoreColumnWidths(f.settings, again);
        QCOMPARE(again.columnWidth(0), 77);
        QCOMPARE(again.columnWidth(1), design);
        QVERIFY(again.columnWidth(2) > 0);
    }

    void controlSizeNeedsBothValues()
    {
        Fixture f;
        QWidget container;
        container.setObjectName(u"picContainer"_s);
        container.setGeometry(1, 2, 30, 40);
        QCOMPARE(Controls::StoredControlSize(f.settings, container), std::nullopt);
        Controls::SaveControlSize(f.settings, container);
        QCOMPARE(Stored(f.settings, u"picContainer"_s, kGeometry), u"Left=15 Top=30 Width=450 Height=600"_s);
        QCOMPARE(Controls::StoredControlSize(f.settings, container), QSize(30, 40));
        f.settings.Save(u"picContainer"_s, u"Height"_s, u"x"_s);
        QCOMPARE(Controls::StoredControlSize(f.settings, container), std::nullopt);
    }

    void fileFilters_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("forQt");
        QTest::addColumn<QString>("extension");
        QTest::newRow("patterns in the name")
            << u"CSV (Comma delimited) (*.csv)|*.csv"_s << QStringList{u"CSV (Comma delimited) (*.csv)"_s} << u"csv"_s;
        QTest::newRow("several") << u"Text (*.csv;*.txt)|*.csv;*.txt|All files|*.*"_s
                                 << QStringList{u"Text (*.csv *.txt)"_s, u"All files (*.*)"_s} << u"csv"_s;
        QTest::newRow("wild card") << u"All files (*.*)|*.*"_s << QStringList{u"All files (*.*)"_s} << QString();
        QTest::newRow("name alone") << u"Text"_s << QStringList() << QString();
        QTest::newRow("empty") << QString() << QStringList() << QString();
    }
    void fileFilters()
    {
        QFETCH(QString, filter);
        QTEST(FileFilters::ForQt(filter), "forQt");
        QTEST(FileFilters::DefaultExtension(filter), "extension");
    }

    void selectsAllWhenTheUserGoesThere()
    {
        QWidget window;
        auto *layout = new QFormLayout(&window);
        auto *line = new QLineEdit(u"line"_s);
        auto *text = new QPlainTextEdit(u"text"_s);
        text->setTabChangesFocus(true);
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
        text->setPlainText(u"text"_s);
        leave();
        QTest::keyClick(&window, Qt::Key_T, Qt::AltModifier);
        QCOMPARE(selection(), u"|text"_s);
        leave();
        QTest::mouseClick(text->viewport(), Qt::LeftButton);
        QTRY_COMPARE(selection(), u"|text"_s);
        QTest::mouseClick(text->viewport(), Qt::LeftButton, {}, {3, 3});
        QCoreApplication::processEvents();
        QCOMPARE(selection(), u"|"_s);
        leave();
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
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTRY_VERIFY(text->hasFocus());
        QCoreApplication::processEvents();
        QCOMPARE(selection(), u"|"_s);
    }

    void namesFitTheFile_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("quotes") << u"\"Al\" Bo"_s << u"'Al' Bo"_s;
        QTest::newRow("line breaks") << u"a\r\nb\nc\u0085d\u2029"_s << u"a b c d "_s;
        QTest::newRow("cut at 10") << u"0123456789x"_s << u"0123456789"_s;
        QTest::newRow("pair at the cut") << u"012345678😀"_s << u"012345678"_s;
        QTest::newRow("pair before it") << u"01234567😀"_s << u"01234567😀"_s;
    }
    void namesFitTheFile()
    {
        QFETCH(QString, typed);
        QLineEdit box;
        box.setMaxLength(10);
        box.setValidator(new NameValidator(&box));
        box.insert(typed);
        QTEST(box.text(), "name");
        box.setText(typed);
        QTEST(box.text(), "name");
    }

    void pairInTheMiddleIsNotHalved()
    {
        QLineEdit box(u"012345678"_s);
        box.setMaxLength(10);
        box.setValidator(new NameValidator(&box));
        box.setCursorPosition(4);
        box.insert(u"😀"_s);
        QCOMPARE(box.text(), u"012345678"_s);
        QCOMPARE(box.cursorPosition(), 4);
    }

    void comboItemByData()
    {
        QComboBox combo;
        combo.addItem(u"a"_s, 44);
        combo.addItem(u"b"_s, 1);
        Controls::SelectComboItemByData(combo, 1);
        QCOMPARE(combo.currentText(), u"b"_s);
        Controls::SelectComboItemByData(combo, 7);
        QCOMPARE(combo.currentIndex(), -1);
    }

    void boxesShowPlainText_data()
    {
        QTest::addColumn<bool>("asks");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("answer");
        QTest::newRow("Escape is No") << true << int(Qt::Key_Escape) << int(PromptAnswer::No);
        QTest::newRow("Enter is Yes") << true << int(Qt::Key_Return) << int(PromptAnswer::Yes);
        QTest::newRow("told") << false << int(Qt::Key_Escape) << int(PromptAnswer::Ok);
    }
    void boxesShowPlainText()
    {
        QFETCH(bool, asks);
        QFETCH(int, key);
        QWidget owner;
        owner.show();
        WhenDialogOpens({}, [&](QDialog &dialog) {
            auto *box = qobject_cast<QMessageBox *>(&dialog);
            QVERIFY(box);
            QCOMPARE(box->text(), u"<b>a</b>\n\nb & c"_s);
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->windowTitle(), asks ? u"Title"_s : u"Brevio"_s);
            QCOMPARE(box->windowModality(), Qt::ApplicationModal);
            QCOMPARE(box->parentWidget(), &owner);
            QTest::keyClick(box, Qt::Key(key));
        });
        WidgetPrompts prompts;
        const PromptAnswer answer = prompts.ShowMessageBox({.text = u"<b>a</b>\r\n\r\nb & c"_s,
                                                            .buttons = asks ? PromptButtons::YesNo : PromptButtons::Ok,
                                                            .caption = asks ? u"Title"_s : QString()},
                                                           &owner);
        QTEST(int(answer), "answer");
    }

    void saveDialogAddsTheExtension()
    {
        Fixture f;
        const QString folder = f.home.path();
        WhenDialogOpens(u"QFileDialog"_s, [&](QDialog &dialog) {
            auto &files = static_cast<QFileDialog &>(dialog);
            QCOMPARE(files.nameFilters(), QStringList{u"CSV (*.csv)"_s});
            QCOMPARE(files.directory().path(), folder);
            QVERIFY(files.testOption(QFileDialog::DontConfirmOverwrite));
            auto &name = Control<QLineEdit>(dialog, "fileNameEdit");
            QCOMPARE(name.text(), u"Send Results"_s);
            name.setText(u"mine"_s);
            QTest::keyClick(&name, Qt::Key_Return);
        });
        WidgetPrompts prompts;
        QCOMPARE(prompts.AskSaveFile({u"Save"_s, u"CSV (*.csv)|*.csv"_s, folder + u"/Send Results"_s}, nullptr),
                 folder + u"/mine.csv"_s);
        WhenDialogOpens(u"QFileDialog"_s, [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QCOMPARE(prompts.AskOpenFile({u"Open"_s, u"All files (*.*)|*.*"_s, folder}, nullptr), QString());
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
