#include "ContactProperties.h"
#include "Dialogs.h"
#include "Rows.h"
#include "WindowFixture.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

static const auto kNumber = u"Please enter a valid phone number."_s;

class TestContactProperties final : public QObject
{
    Q_OBJECT

    struct Fixture : WindowFixture
    {
        LxContactPtr contact = Add(u"Bob"_s, u"07700900123"_s);
        ContactProperties dialog{countries, services, nullptr};
        QLineEdit &name = Control<QLineEdit>(dialog, "txtName");
        QLineEdit &mobile = Control<QLineEdit>(dialog, "txtMobile");
    };

private slots:
    TABLE_TEST(nothingIsStoredThatIsRefusedOrCanceled,
               (const QString &name, const QString &mobile, int country, const QString &box),
               {"no number", u"Ann"_s, u""_s, 44, kNumber}, {"letter", u"Ann"_s, u"07700x"_s, 44, kNumber},
               {"code alone", u"Ann"_s, u"0044"_s, 44, kNumber}, {"no country", u"Ann"_s, u"77009"_s, 0, kNumber},
               {"no name", u""_s, u"+33612345"_s, 44, u"Please enter a the name for this contact."_s})
    {
        Fixture f;
        const LxContactPtr contact = country == 0 ? f.Book().CreateContact() : f.contact;
        const QString before = contact->Name() + contact->UserMobile();
        f.dialog.Setup(contact, f.Book(), false, {}, {});
        f.dialog.show();
        f.name.setText(name);
        f.mobile.setText(mobile);
        f.prompts.ExpectBox(box, PromptIcon::Exclamation);
        f.dialog.accept();
        f.prompts.VerifyAllCame();
        QVERIFY(f.dialog.isVisible() && !f.dialog.Canceled());
        QTest::keyClick(&f.dialog, Qt::Key_Escape);
        QVERIFY(!f.dialog.isVisible() && f.dialog.Canceled());
        QCOMPARE(contact->Name() + contact->UserMobile(), before);
    }

    void okStoresEverythingAndTheListShowsIt()
    {
        Fixture f;
        f.contact->AddToGroup(f.Book().Groups().CreateGroup(u"Work"_s));
        f.Book().Groups().CreateGroup(u"Choir"_s);
        f.phoneBook.show();
        WhenDialogOpens(u"ContactProperties"_s, [](QDialog &dialog) {
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            auto &mobile = Control<QLineEdit>(dialog, "txtMobile");
            mobile.setFocus(Qt::TabFocusReason); // which selects all
            QTest::keyClicks(&mobile, u"+33 612-345\t"_s);
            QCOMPARE(mobile.text(), u"612345"_s); // as soon as the user leaves it
            QCOMPARE(Control<QLineEdit>(dialog, "txtInternationalMobile").text(), u"+33612345"_s);
            Control<QLineEdit>(dialog, "txtName").setText(u"Zoe"_s);
            auto &groups = Control<QTreeView>(dialog, "lvwGroups");
            QTest::keyClick(&groups, Qt::Key_Space);
            QTest::keyClick(&groups, Qt::Key_Down);
            QTest::keyClick(&groups, Qt::Key_Space);
            Control<QPushButton>(dialog, "cmdOK").click();
        });
        QVERIFY(f.phoneBook.EditContact(f.contact, nullptr));
        QCOMPARE(f.contact->Groups().AsString(u","_s), u"Everyone,Choir"_s);
        const QAbstractItemModel &list = *Control<QTreeView>(f.phoneBook, "lvwContacts").model();
        const QVariantList cells = {list.index(0, 0).data(), list.index(0, 1).data(), list.index(0, 2).data()};
        QCOMPARE(cells, (QVariantList{u"Zoe"_s, u"+33612345"_s, u"Choir"_s}));
    }
};

QTEST_MAIN(TestContactProperties)
#include "test_contact_properties.moc"
