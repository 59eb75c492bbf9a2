#include "ContactProperties.h"
#include "Dialogs.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeView>

using namespace Qt::StringLiterals;

class TestContactProperties final : public QObject
{
    Q_OBJECT

    struct Window
    {
        Window(WindowFixture &fixture, const LxContactPtr &contact, bool isNew, const QString &initialName = {},
               const QString &initialNumber = {})
            : f(fixture)
        {
            dialog.Setup(contact, f.Book(), isNew, initialName, initialNumber);
            dialog.show();
            dialog.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
        }

        [[nodiscard]] QString Country()
        {
            return country.currentIndex() < 0 ? u"none"_s : country.currentData().toString();
        }
        void Click(const char *button) { QTest::mouseClick(&Control<QPushButton>(dialog, button), Qt::LeftButton); }

        /// The group's names, those that are checked in brackets.
        [[nodiscard]] QString Groups()
        {
            QStringList names;
            for (int row = 0; row < groups.model()->rowCount(); ++row) {
                const QModelIndex index = groups.model()->index(row, 0);
                const bool isChecked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
                names += isChecked ? u'[' + index.data().toString() + u']' : index.data().toString();
            }
            return names.join(u' ');
        }

        void ExpectRefusal(const QString &text, QLineEdit &where)
        {
            tabs.setCurrentIndex(1);
            f.prompts.ExpectBox(text, PromptIcon::Exclamation);
            Click("cmdOK");
            f.prompts.VerifyAllCame();
            QVERIFY(dialog.isVisible() && !dialog.Canceled());
            QCOMPARE(tabs.currentIndex(), 0);
            QCOMPARE(dialog.focusWidget(), &where);
            QCOMPARE(where.selectedText(), where.text());
        }

        WindowFixture &f;
        ContactProperties dialog{{f.countries, f.prompts, f.shell, f.settings}, nullptr};
        QLineEdit &name = Control<QLineEdit>(dialog, "txtName");
        QLineEdit &mobile = Control<QLineEdit>(dialog, "txtMobile");
        QLineEdit &preview = Control<QLineEdit>(dialog, "txtInternationalMobile");
        QComboBox &country = Control<QComboBox>(dialog, "cboCountryCode");
        QTabWidget &tabs = Control<QTabWidget>(dialog, "tabPropertyPages");
        QTreeView &groups = Control<QTreeView>(dialog, "lvwGroups");
    };

    static LxContactPtr NewContact(WindowFixture &f, int code = 44)
    {
        const LxContactPtr contact = f.Book().CreateContact();
        if (code)
            contact->SetCountryCode(code);
        return contact;
    }

private slots:
    void newContactStartsFromTheTypedText_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("country");
        QTest::addColumn<QString>("mobile");
        QTest::addColumn<QString>("preview");
        QTest::newRow("nothing") << QString() << u"44"_s << QString() << QString();
        QTest::newRow("international") << u"+44 7700 900123"_s << u"44"_s << u"7700900123"_s << u"+447700900123"_s;
        QTest::newRow("another country") << u"+33 6 12345678"_s << u"33"_s << u"612345678"_s << u"+33612345678"_s;
        QTest::newRow("unknown country") << u"+999 123456"_s << u"44"_s << u"+999 123456"_s << u"+999123456"_s;
        QTest::newRow("local") << u"07700 900123"_s << u"44"_s << u"07700 900123"_s << u"+447700900123"_s;
    }
    void newContactStartsFromTheTypedText()
    {
        QFETCH(QString, number);
        WindowFixture f;
        f.settings.Save(u"Contact Properties"_s, u"PropertyPage"_s, u"1"_s);
        Window w(f, NewContact(f), true, u"Ann \"A\""_s, number);
        QCOMPARE(w.dialog.windowTitle(), u"New Contact"_s);
        QVERIFY(!w.dialog.Canceled());
        QCOMPARE(w.tabs.currentIndex(), 0);
        QCOMPARE(w.name.text(), u"Ann 'A'"_s);
        QTEST(w.Country(), "country");
        QTEST(w.mobile.text(), "mobile");
        QTEST(w.preview.text(), "preview");
    }

    void existingContactShowsItsOwn()
    {
        WindowFixture f;
        f.settings.Save(u"Contact Properties"_s, u"PropertyPage"_s, u"1"_s);
        const LxContactPtr ann = f.Add(u"Ann"_s, u"07700 900123"_s, {u"Work"_s});
        f.Book().Groups().CreateGroup(u"Club"_s);
        Window w(f, ann, false, u"ignored"_s, u"ignored"_s);
        QCOMPARE(w.dialog.windowTitle(), u"Edit Contact"_s);
        QCOMPARE(w.tabs.currentIndex(), 1);
        QCOMPARE(w.name.text() + w.mobile.text() + w.Country(), u"Ann07700 90012344"_s);
        QCOMPARE(w.preview.text(), u"+447700900123"_s);
        QCOMPARE(w.Groups(), u"[Work] Club"_s);
        w.tabs.setCurrentIndex(0);
        w.Click("cmdOK");
        QCOMPARE(ann->UserMobile(), u"07700 900123"_s);
        QCOMPARE(f.settings.Get(u"Contact Properties"_s, u"PropertyPage"_s), u"0"_s);
    }

    void previewFollowsTheNumber_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("preview");
        QTest::newRow("local") << u"(0612) 34-56"_s << u"+336123456"_s;
        QTest::newRow("without the zero") << u"6123456"_s << u"+336123456"_s;
        QTest::newRow("international") << u"+44 7700 900123"_s << u"+447700900123"_s;
        QTest::newRow("letter") << u"0612x"_s << QString();
        QTest::newRow("nothing") << QString() << QString();
    }
    void previewFollowsTheNumber()
    {
        QFETCH(QString, typed);
        WindowFixture f;
        Window w(f, NewContact(f, 33), true);
        w.mobile.setFocus();
        QTest::keyClicks(&w.mobile, typed);
        QTEST(w.preview.text(), "preview");
        w.country.setCurrentIndex(w.country.findData(1)); // which alone does not refresh it
        QTEST(w.preview.text(), "preview");
    }

    void leavingTheNumberConvertsItWithinTheWindow()
    {
        WindowFixture f;
        Window w(f, NewContact(f), true);
        w.mobile.setFocus();
        QTest::keyClicks(&w.mobile, u"+33612345678"_s);
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QCOMPARE(w.mobile.text(), u"+33612345678"_s);
        w.dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w.dialog));
        QTest::keyClick(&w.mobile, Qt::Key_Tab);
        QCOMPARE(w.mobile.text() + u' ' + w.Country(), u"612345678 33"_s);
        QCOMPARE(w.preview.text(), u"+33612345678"_s);
    }

    void guaranteeFollowsTheCountry()
    {
        WindowFixture f;
        Window w(f, NewContact(f, 0), true);
        const auto shown = [&w] {
            QString panels;
            for (const char *name : {"lblGuaranteeTitle_0", "imgGuarantee_0", "lblGuaranteeDescription_0",
                                     "lblGuaranteeTitle_1", "imgGuarantee_1", "lblGuaranteeDescription_1"})
                panels += Control<QLabel>(w.dialog, name).isVisible() ? u'1' : u'0';
            return panels;
        };
        QCOMPARE(w.Country(), u"none"_s);
        QCOMPARE(shown(), u"111000"_s); // that of 44
        w.country.setFocus();
        QTest::keyClicks(&w.country, u"F"_s);
        QCOMPARE(w.Country(), u"33"_s);
        QCOMPARE(shown(), u"000111"_s);
        auto &link = Control<QLabel>(w.dialog, "lblGuaranteeHelp");
        link.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&link, Qt::Key_Tab); // to the link within
        QTest::keyClick(&link, Qt::Key_Return);
        QCOMPARE(f.shell.opened, QStringList{u"http://www.corvane.example/brevio/guarantee.html"_s});
    }

    void refusesWhatCannotBeStored_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("number");
        QTest::newRow("empty") << 44 << QString();
        QTest::newRow("unknown country") << 44 << u"+999 123456"_s;
        QTest::newRow("letter") << 44 << u"07700x"_s;
        QTest::newRow("two zeros") << 44 << u"0044"_s;
        QTest::newRow("no country chosen") << 0 << u"07700900123"_s;
    }
    void refusesWhatCannotBeStored()
    {
        QFETCH(int, code);
        QFETCH(QString, number);
        WindowFixture f;
        const LxContactPtr contact = NewContact(f, code);
        Window w(f, contact, true, u"Ann"_s);
        w.mobile.setText(number);
        w.ExpectRefusal(u"Please enter a valid phone number."_s, w.mobile);
        w.country.setCurrentIndex(0);
        w.mobile.setText(u"7700900123"_s);
        w.name.clear();
        w.ExpectRefusal(u"Please enter a the name for this contact."_s, w.name);
        QCOMPARE(contact->Name() + contact->UserMobile(), QString());
    }

    void okStoresEverything()
    {
        WindowFixture f;
        const LxContactPtr ann = f.Add(u"Ann"_s, u"07700 900123"_s, {u"Work"_s, u"Club"_s});
        f.Book().Groups().CreateGroup(u"Choir"_s);
        Window w(f, ann, false);
        w.name.setFocus();
        w.name.selectAll();
        QTest::keyClicks(&w.name, u"Zoe \"Z\""_s);
        w.mobile.setText(u"+33 612-345"_s);
        w.tabs.setCurrentIndex(1);
        w.groups.setFocus();
        QTest::keyClick(&w.groups, Qt::Key_Space); // Work off
        const auto rect = [&w](int row) { return w.groups.visualRect(w.groups.model()->index(row, 0)); };
        QWidget *viewport = w.groups.viewport();
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, rect(2).center()); // Choir on
        QCOMPARE(w.Groups(), u"Work [Club] [Choir]"_s);
        const QPoint box(rect(1).left() + 8, rect(1).center().y());
        QTest::mouseClick(viewport, Qt::LeftButton, {}, box);
        QCOMPARE(w.Groups(), u"Work Club [Choir]"_s);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, box); // each click toggles
        QCOMPARE(w.Groups(), u"Work Club [Choir]"_s);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, {rect(2).center().x(), rect(2).bottom() + 30});
        QCOMPARE(w.Groups(), u"Work Club [Choir]"_s);
        QTest::keyClick(&w.dialog, Qt::Key_Return);
        QVERIFY(!w.dialog.isVisible() && !w.dialog.Canceled());
        QCOMPARE(ann->Name(), u"Zoe 'Z'"_s);
        QCOMPARE(ann->InternationalMobile(), u"+33612345"_s);
        QCOMPARE(ann->Groups().AsString(u","_s), u"Everyone,Choir"_s);
        QCOMPARE(f.settings.Get(u"Contact Properties"_s, u"PropertyPage"_s), u"1"_s);
        QVERIFY(f.settings.IsSectionEmpty(u"ContactProperties"_s));
    }

    void cancelStoresNothing_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"button", "Escape", "frame"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void cancelStoresNothing()
    {
        QFETCH(QString, way);
        WindowFixture f;
        const LxContactPtr ann = f.Add(u"Ann"_s, u"07700 900123"_s, {u"Work"_s});
        Window w(f, ann, false);
        w.name.setText(u"Bob"_s);
        w.groups.model()->setData(w.groups.model()->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
        w.tabs.setCurrentIndex(1);
        if (way == "button"_L1)
            w.Click("cmdCancel");
        else if (way == "Escape"_L1)
            QTest::keyClick(&w.dialog, Qt::Key_Escape);
        else
            w.dialog.close();
        QVERIFY(!w.dialog.isVisible() && w.dialog.Canceled());
        QCOMPARE(ann->Name() + ann->Groups().AsString(u","_s), u"AnnEveryone,Work"_s);
        QCOMPARE(f.settings.Get(u"Contact Properties"_s, u"PropertyPage"_s), u"1"_s);
    }

    void withoutCountriesNothingCanBeAdded()
    {
        WindowFixture f;
        f.countries = {};
        const LxContactPtr contact = NewContact(f, 0);
        f.prompts.ExpectBox(u"No country information loaded, please reinstall Brevio."_s, PromptIcon::Critical);
        QVERIFY(!f.phoneBook.EditContact(contact, true, u"Ann"_s, {}, false, nullptr));
        QCOMPARE(f.Book().AllContacts().Count(), 0);
    }
};

QTEST_MAIN(TestContactProperties)
#include "test_contact_properties.moc"
