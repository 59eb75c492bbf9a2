#include "ContactProperties.h"
#include "Dialogs.h"
#include "TextTable.h"
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
        explicit Window(WindowFixture &fixture, int code = 44, const QString &typed = {})
            : f(fixture)
            , contact(f.Book().CreateContact())
        {
            if (code)
                contact->SetCountryCode(code);
            Show(true, typed);
        }
        Window(WindowFixture &fixture, const LxContactPtr &existing)
            : f(fixture)
            , contact(existing)
        {
            Show(false, u"ignored"_s);
        }

        void Show(bool isNew, const QString &typed)
        {
            dialog.Setup(contact, f.Book(), isNew, u"Ann \"A\""_s, typed);
            dialog.show();
            dialog.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
        }

        void Click(const char *button) { QTest::mouseClick(&Control<QPushButton>(dialog, button), Qt::LeftButton); }

        [[nodiscard]] QString Shown() const
        {
            return QStringList{country.currentData().toString(), mobile.text(), preview.text()}.join(u',');
        }

        /// A digit a group, 1 where it is checked.
        [[nodiscard]] QString Groups() const
        {
            QString checks;
            for (int row = 0; row < groups.model()->rowCount(); ++row)
                checks += groups.model()->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked ? u'1' : u'0';
            return checks;
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
        LxContactPtr contact;
        ContactProperties dialog{{f.countries, f.prompts, f.shell, f.settings}, nullptr};
        QLineEdit &name = Control<QLineEdit>(dialog, "txtName");
        QLineEdit &mobile = Control<QLineEdit>(dialog, "txtMobile");
        QLineEdit &preview = Control<QLineEdit>(dialog, "txtInternationalMobile");
        QComboBox &country = Control<QComboBox>(dialog, "cboCountryCode");
        QTabWidget &tabs = Control<QTabWidget>(dialog, "tabPropertyPages");
        QTreeView &groups = Control<QTreeView>(dialog, "lvwGroups");
    };

private slots:
    // The typed number: country, number and preview.
    void newContactStartsFromTheTypedText_data()
    {
        AddTextTable({{u"", u"44,,"},
                      {u"+44 7700 900123", u"44,7700900123,+447700900123"},
                      {u"+33 6 12345678", u"33,612345678,+33612345678"},
                      {u"+999 123456", u"44,+999 123456,+999123456"},
                      {u"(07700) 900-123", u"44,(07700) 900-123,+447700900123"}});
    }
    void newContactStartsFromTheTypedText()
    {
        QFETCH(QString, in);
        WindowFixture f;
        f.settings.Save(u"Contact Properties"_s, u"PropertyPage"_s, u"1"_s);
        Window w(f, 44, in);
        QCOMPARE(w.dialog.windowTitle(), u"New Contact"_s);
        QVERIFY(!w.dialog.Canceled());
        QCOMPARE(w.tabs.currentIndex(), 0);
        QCOMPARE(w.name.text(), u"Ann 'A'"_s);
        QTEST(w.Shown(), "out");
    }

    void numberIsConvertedWhenTheUserLeavesIt()
    {
        WindowFixture f;
        Window w(f, 0);
        const auto shown = [&w](const char *name) { return Control<QLabel>(w.dialog, name).isVisible(); };
        QVERIFY(shown("lblGuaranteeTitle_0") && !shown("imgGuarantee_1")); // no country is as 44
        QTest::keyClicks(&w.mobile, u"0612"_s);
        QCOMPARE(w.Shown(), u",0612,+44612"_s);
        QTest::keyClicks(&w.country, u"C"_s); // which alone does not refresh the preview
        QCOMPARE(w.Shown(), u"1,0612,+44612"_s);
        w.mobile.setFocus();
        w.mobile.setText(u"+33 6123"_s);
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QCOMPARE(w.Shown(), u"1,+33 6123,+336123"_s);
        w.dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w.dialog));
        QTest::keyClick(&w.mobile, Qt::Key_Tab);
        QCOMPARE(w.Shown(), u"33,6123,+336123"_s);
        QVERIFY(shown("lblGuaranteeTitle_1") && !shown("imgGuarantee_0"));
    }

    void refusesWhatCannotBeStored()
    {
        WindowFixture f;
        Window w(f);
        for (const char16_t *number : {u"", u"+999 123456", u"07700x", u"0044"}) {
            w.mobile.setText(QString::fromUtf16(number));
            w.ExpectRefusal(u"Please enter a valid phone number."_s, w.mobile);
        }
        w.mobile.setText(u"7700900123"_s);
        w.country.setCurrentIndex(-1);
        w.ExpectRefusal(u"Please enter a valid phone number."_s, w.mobile);
        w.country.setCurrentIndex(0);
        w.name.clear();
        w.ExpectRefusal(u"Please enter a the name for this contact."_s, w.name);
        QCOMPARE(w.contact->Name() + w.contact->UserMobile(), QString());
    }

    void okStoresEverything()
    {
        WindowFixture f;
        const LxContactPtr ann = f.Add(u"Ann"_s, u"07700 900123"_s, {u"Work"_s, u"Club"_s});
        f.Book().Groups().CreateGroup(u"Choir"_s);
        Window w(f, ann);
        QCOMPARE(w.dialog.windowTitle() + w.name.text(), u"Edit ContactAnn"_s);
        QCOMPARE(w.Shown(), u"44,07700 900123,+447700900123"_s);
        QCOMPARE(w.Groups(), u"110"_s);
        QTest::keyClicks(&w.name, u"Zoe \"Z\""_s);
        w.mobile.setText(u"+33 612-345"_s);

        w.tabs.setCurrentIndex(1);
        QTest::keyClick(&w.groups, Qt::Key_Space);
        QCOMPARE(w.Groups(), u"010"_s);
        const auto rect = [&w](int row) { return w.groups.visualRect(w.groups.model()->index(row, 0)); };
        QWidget *viewport = w.groups.viewport();
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, rect(2).center());
        QCOMPARE(w.Groups(), u"011"_s);
        const QPoint box(rect(1).left() + 8, rect(1).center().y());
        QTest::mouseClick(viewport, Qt::LeftButton, {}, box);
        QCOMPARE(w.Groups(), u"001"_s);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, box); // each click on a box toggles
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, rect(2).bottomLeft() + QPoint(50, 30));
        QCOMPARE(w.Groups(), u"001"_s);

        QTest::keyClick(&w.dialog, Qt::Key_Return);
        QVERIFY(!w.dialog.isVisible() && !w.dialog.Canceled());
        QCOMPARE(ann->Name() + ann->InternationalMobile(), u"Zoe 'Z'+33612345"_s);
        QCOMPARE(ann->Groups().AsString(u","_s), u"Everyone,Choir"_s);
        QCOMPARE(f.settings.Get(u"Contact Properties"_s, u"PropertyPage"_s), u"1"_s);
    }

    void cancelStoresNothing()
    {
        WindowFixture f;
        const LxContactPtr ann = f.Add(u"Ann"_s, u"07700 900123"_s, {u"Work"_s});
        const auto verifyUnchanged = [&](void (*cancel)(Window &)) {
            Window w(f, ann);
            w.name.setText(u"Bob"_s);
            QTest::keyClick(&w.groups, Qt::Key_Space);
            cancel(w);
            QVERIFY(!w.dialog.isVisible() && w.dialog.Canceled());
            QCOMPARE(ann->Name() + ann->Groups().AsString(u","_s), u"AnnEveryone,Work"_s);
        };
        verifyUnchanged([](Window &w) { w.Click("cmdCancel"); });
        verifyUnchanged([](Window &w) { QTest::keyClick(&w.dialog, Qt::Key_Escape); });
        verifyUnchanged([](Window &w) { w.dialog.close(); });
    }

    void withoutCountriesNothingCanBeAdded()
    {
        WindowFixture f;
        f.countries = {};
        f.prompts.ExpectBox(u"No country information loaded, please reinstall Brevio."_s, PromptIcon::Critical);
        QVERIFY(!f.phoneBook.EditContact(f.Book().CreateContact(), true, u"Ann"_s, {}, false, nullptr));
        QCOMPARE(f.Book().AllContacts().Count(), 0);
    }
};

QTEST_MAIN(TestContactProperties)
#include "test_contact_properties.moc"
