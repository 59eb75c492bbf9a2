#include "About.h"
#include "Accessibility.h"
#include "AccountDetails.h"
#include "CGIPost.h"
#include "CGIPostWindow.h"
#include "ChooseGroup.h"
#include "Compose.h"
#include "ContactProperties.h"
#include "DeleteMany.h"
#include "Import.h"
#include "ImportAssistant.h"
#include "LinkLabel.h"
#include "LxGroupList.h"
#include "NumberJudge.h"
#include "PhoneBookFixture.h"
#include "Rows.h"
#include "SendResults.h"
#include "SentMessages.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTabWidget>

using namespace Qt::StringLiterals;

/// What a screen reader finds in the windows and is told.
class TestAccessibility final : public QObject
{
    Q_OBJECT

    struct Fixture : PhoneBookFixture
    {
        /// The window of this name, shown.
        [[nodiscard]] QWidget &Shown(const QString &name)
        {
            if (name == u"PhoneBook") {
                Open();
                return phoneBook;
            }
            window = Make(name);
            window->show();
            return *window;
        }

        [[nodiscard]] std::unique_ptr<QWidget> Make(const QString &name)
        {
            if (name == u"Compose")
                return std::make_unique<Compose>(Compose::Services{services, gateway, sentLog, phoneBook});
            if (name == u"AccountDetails")
                return std::make_unique<AccountDetails>(services, gateway, nullptr);
            if (name == u"About")
                return std::make_unique<About>(services, nullptr);
            if (name == u"Import")
                return std::make_unique<Import>(services, nullptr, nullptr);
            if (name == u"ImportAssistant")
                return std::make_unique<ImportAssistant>(
                    ImportAssistant::Services{countries, NumberJudge::Load(QStringLiteral(PROGRAM_DIR)), services},
                    Book(), u"a.csv"_s, ContactFile::Read("Name,Mobile\nAnn,07400123456\n"), nullptr);
            if (name == u"DeleteMany")
                return std::make_unique<DeleteMany>(services, nullptr);
            if (name == u"ChooseGroup") {
                auto dialog = std::make_unique<::ChooseGroup>(services, nullptr);
                dialog->Populate(Book().Groups());
                return dialog;
            }
            if (name == u"SendResults") {
                auto results = std::make_unique<SendResults>(services, nullptr, nullptr);
                results->Results({{u"+1555"_s, u"Bob"_s, u"Hi"_s, LxMessageResponse{1, false, u"No credit"_s}}});
                return results;
            }
            if (name == u"SentMessages")
                return std::make_unique<SentMessages>(services, sentLog, nullptr, nullptr);
            if (name == u"CGIPost")
                return std::make_unique<CGIPostWindow>(post);
            auto dialog = std::make_unique<ContactProperties>(countries, services, nullptr);
            dialog->Setup(*Book().AllContacts().begin(), Book(), false, {}, {});
            return dialog;
        }

        CGIPost post{posts};
        std::unique_ptr<QWidget> window;
    };

    static inline QObjectList s_focused;

    /// What is wrong with a thing on the screen and all that it holds, a line each.
    static QStringList Faults(QAccessibleInterface &thing)
    {
        QStringList faults;
        const auto *widget = qobject_cast<QWidget *>(thing.object());
        const QString name = thing.text(QAccessible::Name);
        const bool canBeUsed = widget && widget->isVisible() && widget->focusPolicy() != Qt::NoFocus;
        const bool isPart = !widget || widget->objectName().startsWith(u"qt_");
        if (canBeUsed && !isPart && name.isEmpty())
            faults += u"no name: "_s + QString::fromLatin1(widget->metaObject()->className()) + widget->objectName();
        if (qobject_cast<const LinkLabel *>(widget)) {
            const QStringList actions =
                thing.actionInterface() ? thing.actionInterface()->actionNames() : QStringList();
            if (thing.role() != QAccessible::Link || !actions.contains(QAccessibleActionInterface::pressAction()))
                faults += u"no link: "_s + name;
        }
        for (int i = 0; i < thing.childCount(); ++i) {
            if (QAccessibleInterface *child = thing.child(i))
                faults += Faults(*child);
        }
        return faults;
    }

private slots:
    void initTestCase()
    {
        QAccessible::installUpdateHandler([](QAccessibleEvent *event) {
            if (event->type() == QAccessible::Focus)
                s_focused += event->object();
        });
        Accessibility::Install();
        QAccessible::setActive(true);
    }

    TABLE_TEST(everyControlHasANameAndEveryLinkIsOne, (const QString &window), u"Compose", u"PhoneBook",
               u"ContactProperties", u"ChooseGroup", u"DeleteMany", u"Import", u"ImportAssistant", u"AccountDetails",
               u"SendResults", u"SentMessages", u"About", u"CGIPost")
    {
        Fixture f;
        QCOMPARE(Faults(*QAccessible::queryAccessibleInterface(&f.Shown(window))).join(u", "), QString());
    }

    // Qt 6.4 tells so of each whose current row changes; offscreen nobody listens, and Qt asks no handler.
    void onlyAListThatHasTheFocusTellsOfIt()
    {
        Fixture f;
        f.Open();
        const QAccessible::UpdateHandler tell = QAccessible::installUpdateHandler(nullptr);
        QAccessible::installUpdateHandler(tell);
        for (QWidget *place : {static_cast<QWidget *>(&f.Find()), static_cast<QWidget *>(&f.Contacts())}) {
            place->setFocus();
            s_focused.clear();
            for (QObject *teller : {static_cast<QObject *>(&f.Find()), static_cast<QObject *>(&f.Contacts())}) {
                QAccessibleEvent focus(teller, QAccessible::Focus);
                tell(&focus);
            }
            QCOMPARE(s_focused.contains(&f.Contacts()), place == &f.Contacts());
            QVERIFY(s_focused.contains(&f.Find()));
        }
    }

    void aLinkIsPressed()
    {
        Fixture f;
        auto &link = Control<LinkLabel>(f.Shown(u"About"_s), "lblSupport");
        QAccessible::queryAccessibleInterface(&link)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        QCOMPARE(f.shell.opened, QStringList(u"mailto:support@corvane.example"_s));
    }

    TABLE_TEST(statusTextsAreRead, (const QString &window, const QString &bar, const QString &text),
               {"compose", u"Compose"_s, u"StatusBar"_s, u"2 characters in 1 text message"_s},
               {"refusal", u"Compose"_s, u"StatusBar"_s,
                u"Character €ÀÁÂÃÊËÌÍÎÏÐÒÓÔÕ×ÙÚÛÝÞáâãêëíîïðóôõ÷úûýþ not allowed in text messages!"_s},
               {"phone book", u"PhoneBook"_s, u"sbStatusBar"_s, u"1 contacts found"_s},
               {"sent", u"SentMessages"_s, u"lblStatus"_s, u"0 messages"_s},
               {"progress", u"CGIPost"_s, u"lblStatus"_s, u"Canceled"_s})
    {
        Fixture f;
        QWidget &shown = f.Shown(window);
        if (window == u"Compose")
            Control<QPlainTextEdit>(shown, "txtTextMessage")
                .setPlainText(text.contains(u'€') ? text.section(u' ', 1, 1) : u"Hi"_s);
        else if (window == u"PhoneBook")
            f.Find().setText(u"Zo"_s);
        else if (window == u"CGIPost")
            f.post.Cancel();
        QAccessibleInterface &status = *QAccessible::queryAccessibleInterface(&Control<QWidget>(shown, bar.toLatin1()));
        QCOMPARE(status.text(QAccessible::Name), text);
        QCOMPARE(status.role(), QAccessible::Notification);
    }

    void keysTurnPagesSortAndMoveTheDivider()
    {
        Fixture f;
        QWidget &dialog = f.Shown(u"ContactProperties"_s);
        const auto &pages = Control<QTabWidget>(dialog, "tabPropertyPages");
        const int before = pages.currentIndex();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(&Control<QLineEdit>(dialog, "txtName"), Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(pages.currentIndex(), 1 - before);
        dialog.hide();
        f.Open();
        QHeaderView &header = *f.Contacts().header();
        QTest::keyClick(&header, Qt::Key_Right);
        QTest::keyClick(&header, Qt::Key_Space);
        QCOMPARE(f.Rows(f.Contacts()), u"Zoe Bob Ann Élan"_s);
        QCOMPARE(header.accessibleName(), u"Mobile, ascending"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(&header)->role(), QAccessible::ColumnHeader);
        auto &splitter = Control<QSplitter>(f.phoneBook, "Splitter1");
        QCOMPARE(QAccessible::queryAccessibleInterface(splitter.handle(1))->role(), QAccessible::Separator);
        const int width = splitter.sizes().first();
        QTest::keyClick(splitter.handle(1), Qt::Key_Right);
        QVERIFY(splitter.sizes().first() > width);
        QTest::keyClick(&f.phoneBook, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!f.phoneBook.isVisible());
    }
};

QTEST_MAIN(TestAccessibility)
#include "test_accessibility.moc"
