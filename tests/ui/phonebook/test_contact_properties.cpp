#include "ContactProperties.h"
#include "Dialogs.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

class TestContactProperties final : public QObject
{
    Q_OBJECT

    struct Fixture : WindowFixture
    {
        void Setup(bool isNew, const QString &number = {})
        {
            dialog.Setup(contact, Book(), isNew, u"Ann \"A\""_s, number);
            dialog.show();
        }

        [[nodiscard]] QString Shown() const
        {
            return QStringList{country.currentData().toString(), mobile.text(), preview.text()}.join(u',');
        }

        LxContactPtr contact = Add(u"Bob"_s, u"07700900123"_s);
        ContactProperties dialog{{countries, prompts, shell, settings}, nullptr};
        QLineEdit &name = Control<QLineEdit>(dialog, "txtName");
        QLineEdit &mobile = Control<QLineEdit>(dialog, "txtMobile");
        QLineEdit &preview = Control<QLineEdit>(dialog, "txtInternationalMobile");
        QComboBox &country = Control<QComboBox>(dialog, "cboCountryCode");
    };

private slots:
    void newContactStartsFromTheTypedText()
    {
        const std::pair<QString, QString> rows[] = {
            {u"+44 7700 900123"_s, u"44,7700900123,+447700900123"_s},
            {u"+33 6 12345678"_s, u"33,612345678,+33612345678"_s},
            {u"+999 123456"_s, u"44,+999 123456,+999123456"_s},
            {u"(07700) 900-123"_s, u"44,(07700) 900-123,+447700900123"_s},
        };
        for (const auto &[typed, shown] : rows) {
            Fixture f;
            f.Setup(true, typed);
            QCOMPARE(f.Shown(), shown);
            QCOMPARE(f.name.text(), u"Ann 'A'"_s);
        }
    }

    void refusesWhatCannotBeStored()
    {
        Fixture f;
        f.Setup(true);
        const auto verifyRefused = [&f](const QString &number, int country, const QString &box) {
            f.mobile.setText(number);
            f.country.setCurrentIndex(country);
            f.prompts.ExpectBox(box, PromptIcon::Exclamation);
            f.dialog.accept();
            f.prompts.VerifyAllCame();
            QVERIFY(f.dialog.isVisible() && !f.dialog.Canceled());
            QCOMPARE(f.contact->Name() + f.contact->UserMobile(), u"Bob07700900123"_s);
        };
        for (const char *number : {"", "+999 123456", "07700x", "0044"})
            verifyRefused(QString::fromLatin1(number), 0, u"Please enter a valid phone number."_s);
        verifyRefused(u"7700900123"_s, -1, u"Please enter a valid phone number."_s);
        f.name.clear();
        verifyRefused(u"7700900123"_s, 0, u"Please enter a the name for this contact."_s);
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
            Control<QLineEdit>(dialog, "txtName").setText(u"Zoe"_s);
            auto &groups = Control<QTreeView>(dialog, "lvwGroups");
            QTest::keyClick(&groups, Qt::Key_Space);
            QTest::keyClick(&groups, Qt::Key_Down);
            QTest::keyClick(&groups, Qt::Key_Space);
            Control<QPushButton>(dialog, "cmdOK").click();
        });
        QVERIFY(f.phoneBook.EditContact(f.contact, false, {}, {}, false, nullptr));
        QCOMPARE(f.contact->Groups().AsString(u","_s), u"Everyone,Choir"_s);
        const QAbstractItemModel &list = *Control<QTreeView>(f.phoneBook, "lvwContacts").model();
        const QVariantList cells = {list.index(0, 0).data(), list.index(0, 1).data(), list.index(0, 2).data()};
        QCOMPARE(cells, (QVariantList{u"Zoe"_s, u"+33612345"_s, u"Choir"_s}));
    }

    void cancelStoresNothing()
    {
        for (const bool byKey : {false, true}) {
            Fixture f;
            f.Setup(false);
            f.name.setText(u"Zoe"_s);
            byKey ? QTest::keyClick(&f.dialog, Qt::Key_Escape) : void(f.dialog.close());
            QVERIFY(!f.dialog.isVisible() && f.dialog.Canceled());
            QCOMPARE(f.contact->Name(), u"Bob"_s);
        }
    }
};

QTEST_MAIN(TestContactProperties)
#include "test_contact_properties.moc"
