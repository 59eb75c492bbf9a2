#include "Controls.h"
#include "Profile.h"
#include "Rows.h"
#include "SelectAllOnFocus.h"
#include "Settings.h"
#include "Version.h"
#include "WidgetPrompts.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;
using enum PromptAnswer;

class TestControls final : public QObject
{
    Q_OBJECT

    struct Fixture : Profile
    {
        Fixture() { window.setObjectName(u"Results"_s); }

        Settings settings{Settings::DefaultFileName(), prompts};
        QDialog window;
    };

private slots:
    // Left, top, width and height in the settings, in twips, and where the window then is, in pixels. Its frame is 2
    // pixels wide.
    TABLE_TEST(windowsComeBackWholeOntoTheScreen, (const QString &stored, const QString &place),
               u",,, -> 50,60,300,200", u"nan,inf,?,1e30 -> 50,60,300,200", u"152.5,148.4,0,-4500 -> 10,10,300,200",
               u"300000,450,, -> 496,30,300,200", u"-60000,-60000,, -> 0,0,300,200",
               u"10800,11400,, -> 496,596,300,200", u"0,0,60000,60000 -> 0,0,796,796")
    {
        Fixture f;
        for (const int i : {0, 1, 2, 3})
            f.settings.Save(u"Results"_s, QStringList{u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s}[i],
                            stored.section(u',', i, i));
        f.window.resize(300, 200);
        f.window.move(50, 60);
        // Shown again, and in another session, it is where it was.
        for (int round = 0; round < 2; ++round) {
            Controls::RestoreWindowPosition(f.settings, f.window);
            f.window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&f.window));
            Controls::SaveWindowPosition(f.settings, f.window);
            f.window.hide();
        }
        QDialog again;
        again.setObjectName(u"Results"_s);
        Controls::RestoreWindowPosition(f.settings, again);
        QCOMPARE(u"%1,%2,%3,%4"_s.arg(again.x()).arg(again.y()).arg(again.width()).arg(again.height()), place);
    }

    void aDialogOfFixedSizeDoesNotClimb()
    {
        Fixture f;
        (new QVBoxLayout(&f.window))->setSizeConstraint(QLayout::SetFixedSize);
        f.window.move(50, 60);
        Controls::SaveWindowPosition(f.settings, f.window);
        Controls::RestoreWindowPosition(f.settings, f.window);
        // As the desktop does, since such a layout makes Qt forget that the position includes the title bar.
        f.window.move(49, 40);
        f.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f.window));
        QCOMPARE(f.window.pos(), QPoint(50, 60));
        QVERIFY(f.settings.Get(u"Results"_s, u"Width"_s).isEmpty());
    }

    void aDialogThatIsTooHighScrollsToTheFocus()
    {
        QDialog dialog;
        auto *layout = new QVBoxLayout(&dialog);
        auto *high = new QWidget;
        high->setMinimumHeight(2000);
        auto *first = new QLineEdit;
        auto *last = new QLineEdit;
        for (QWidget *widget : std::initializer_list<QWidget *>{first, high, last})
            layout->addWidget(widget);
        auto *button = new QPushButton;
        layout->addLayout(new QHBoxLayout);
        layout->itemAt(3)->layout()->addWidget(button);
        Controls::FitToContents(dialog);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QVERIFY(dialog.frameGeometry().height() <= 800 && last->visibleRegion().isEmpty());
        QVERIFY(!button->visibleRegion().isEmpty());
        QTest::keyClick(first, Qt::Key_Tab);
        QVERIFY(last->hasFocus() && !last->visibleRegion().isEmpty());
    }

    void goingToABoxSelectsItsText()
    {
        QWidget window;
        QHBoxLayout layout(&window);
        QLineEdit other;
        QLineEdit line(u"text"_s);
        QPlainTextEdit text(u"text"_s);
        for (QWidget *box : std::initializer_list<QWidget *>{&other, &line, &text})
            layout.addWidget(box);
        new SelectAllOnFocus(&line);
        new SelectAllOnFocus(&text);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto selected = [&](QWidget &box, auto go) {
            other.setFocus();
            line.deselect();
            text.setTextCursor(QTextCursor(text.document()));
            go(box);
            QCoreApplication::processEvents();
            if (QWidget *menu = QApplication::activePopupWidget())
                menu->close();
            return line.selectedText() + text.textCursor().selectedText();
        };
        const auto by = [&window](Qt::MouseButton button) {
            return [&window, button](QWidget &box) {
                QTest::mouseClick(window.windowHandle(), button, {}, box.mapTo(&window, QPoint(4, 8)));
            };
        };
        const auto byFocus = [](Qt::FocusReason reason) { return [reason](QWidget &box) { box.setFocus(reason); }; };
        for (QWidget *box : std::initializer_list<QWidget *>{&line, &text}) {
            QCOMPARE(selected(*box, by(Qt::LeftButton)), u"text"_s);
            QCOMPARE(selected(*box, by(Qt::RightButton)), box == &line ? u"text"_s : u""_s);
            QCOMPARE(selected(*box, by(Qt::MiddleButton)), u""_s);
            for (const auto reason : {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason})
                QCOMPARE(selected(*box, byFocus(reason)), u"text"_s);
            QCOMPARE(selected(*box, byFocus(Qt::ActiveWindowFocusReason)), u""_s);
        }
    }

    // What Enter answers, what is pressed, and the answer.
    TABLE_TEST(aBoxAsksAsItIsTold, (PromptAnswer byEnter, Qt::Key key, PromptAnswer answer),
               {"no question", Ok, Qt::Key_Escape, Ok}, {"Enter is Yes", Yes, Qt::Key_Return, Yes},
               {"Enter is No", No, Qt::Key_Return, No}, {"Escape is No", Yes, Qt::Key_Escape, No})
    {
        const MessageBoxRequest request{.text = u"<b>\r\ntwo"_s,
                                        .icon = PromptIcon::Exclamation,
                                        .buttons = byEnter == Ok ? PromptButtons::Ok : PromptButtons::YesNo,
                                        .caption = answer == No ? u"Title"_s : QString(),
                                        .defaultAnswer = byEnter,
                                        .details = u"<i>\r\ntwo"_s};
        QStringList told;
        QTimer::singleShot(0, this, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box->textFormat() == Qt::PlainText && box->icon() == QMessageBox::Warning)
                told = QStringList{box->windowTitle(), box->text(), box->detailedText()};
            QTest::keyClick(box, key);
        });
        QCOMPARE(WidgetPrompts().ShowMessageBox(request, nullptr), answer);
        QCOMPARE(told, (QStringList{answer == No ? u"Title"_s : ApplicationTitle(), u"<b>\ntwo"_s, u"<i>\ntwo"_s}));
    }

    TABLE_TEST(aFileIsAskedFor, (bool isForSaving, int result), {"open", false, QDialog::Accepted},
               {"save", true, QDialog::Accepted}, {"canceled", true, QDialog::Rejected})
    {
        const QTemporaryDir home;
        const FileDialogRequest request{.title = u"Which?"_s,
                                        .filters = {{u"CSV"_s, {u"*.csv"_s, u"*.*"_s}}},
                                        .initialPath = home.filePath(u"a.b.csv"_s),
                                        .confirmOverwrite = isForSaving,
                                        .offeredFolder = home.path()};
        QStringList told;
        QTimer::singleShot(0, this, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (dialog->sidebarUrls().contains(QUrl::fromLocalFile(home.path())) &&
                !(isForSaving && dialog->testOption(QFileDialog::DontConfirmOverwrite)))
                told = QStringList{dialog->windowTitle(), dialog->nameFilters().join(u'|'), dialog->defaultSuffix()} +
                       dialog->selectedFiles();
            static_cast<QDialog *>(dialog)->done(result);
        });
        const auto ask = isForSaving ? &Prompts::AskSaveFile : &Prompts::AskOpenFile;
        WidgetPrompts prompts;
        QCOMPARE((prompts.*ask)(request, nullptr), result == QDialog::Accepted ? request.initialPath : QString());
        const QString suffix = isForSaving ? u"csv"_s : QString();
        QCOMPARE(told, (QStringList{u"Which?"_s, u"CSV (*.csv *)"_s, suffix, request.initialPath}));
    }

    TABLE_TEST(aSavedNameGetsTheExtensionOfTheFilter,
               (const QString &name, const QString &filter, const QString &extension), {"first", u"/a"_s, {}, u"csv"_s},
               {"chosen", u"/a"_s, u"Cards (*.vcf)"_s, u"vcf"_s}, {"of the name", u"/a.vcf"_s, {}, u"vcf"_s})
    {
        QString told;
        QTimer::singleShot(0, this, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!filter.isEmpty())
                emit dialog->filterSelected(filter);
            told = dialog->defaultSuffix() + dialog->selectedNameFilter().section(u'.', 1);
            dialog->reject();
        });
        (void)WidgetPrompts().AskSaveFile({u"T"_s, {{u"CSV"_s, {u"*.csv"_s}}, {u"Cards"_s, {u"*.vcf"_s}}}, name},
                                          nullptr);
        QCOMPARE(told, extension + (name == u"/a.vcf" ? u"vcf)"_s : u"csv)"_s));
    }
};

QTEST_MAIN(TestControls)
#include "test_controls.moc"
