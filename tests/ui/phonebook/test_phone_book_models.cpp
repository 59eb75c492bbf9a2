#include "ContactModel.h"
#include "GroupModel.h"
#include "RecipientModel.h"
#include "RowKeys.h"
#include "SendResultsModel.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestPhoneBookModels final : public QObject
{
    Q_OBJECT

    static constexpr auto kFatal = QAbstractItemModelTester::FailureReportingMode::QtTest;

    /// Headers and rows as text, cells joined by "|".
    static QStringList Print(const QAbstractItemModel &model)
    {
        QStringList lines;
        for (int row = -1; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column) {
                cells += row < 0 ? model.headerData(column, Qt::Horizontal).toString()
                                 : model.index(row, column).data().toString();
            }
            lines += cells.join(u'|');
        }
        return lines;
    }

private slots:
    void contacts()
    {
        WindowFixture f;
        const LxContactPtr ann = f.Add(u"Ann"_s, u"07971 001234"_s, {u"Work"_s, u"Club"_s});
        const LxContactPtr bob = f.Add(u"Bob"_s, u"612345678"_s);
        bob->SetCountryCode(33);
        ContactModel model(f.Book(), nullptr);
        QAbstractItemModelTester tester(&model, kFatal);
        model.Fill(f.Book().AllContacts());
        QCOMPARE(Print(model), (QStringList{u"Name|Mobile|Group membership"_s, u"Ann|07971001234|Work, Club"_s,
                                            u"Bob|+33612345678|"_s}));
        QCOMPARE(model.index(1, 2).data(RowKeys::kKeyRole).toString(), u'c' + QString::number(bob->ContactID()));
        QVERIFY(model.index(0, 0).data(Qt::DecorationRole).isValid());

        const LxContactPtr zoe = f.Add(u"Zoë"_s, u"07700900123"_s);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        QCOMPARE(model.RowOf(*zoe), -1);
        model.Rewrite(*zoe);
        model.Append(zoe);
        QCOMPARE(model.RowOf(*zoe), 2);
        zoe->SetName(u"Zed"_s);
        model.Rewrite(*zoe);
        QCOMPARE(Print(model).last(), u"Zed|07700900123|"_s);
        QCOMPARE(resets.count(), 0);
        QCOMPARE(changes,
                 (QList<QVariantList>{{model.index(2, 0), model.index(2, 2), QVariant::fromValue(QList<int>())}}));
        model.Fill(*f.Book().Groups().Lookup(u"Work"_s));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.RowOf(*zoe), -1);
    }

    void groups()
    {
        WindowFixture f;
        f.Add(u"Ann"_s, u"07971001234"_s, {u"Work"_s, u"Club"_s});
        GroupModel model(f.Book(), nullptr);
        QAbstractItemModelTester tester(&model, kFatal);
        model.Fill();
        QCOMPARE(Print(model), (QStringList{u"Group"_s, u"Everyone"_s, u"Work"_s, u"Club"_s}));
        const LxGroup &club = *f.Book().Groups().Lookup(u"Club"_s);
        QCOMPARE(model.RowOf(club.GroupID()), 2);
        QCOMPARE(&model.GroupAt(2), &club);
        QCOMPARE(model.index(2, 0).data(RowKeys::kKeyRole).toString(), u'g' + QString::number(club.GroupID()));
        f.Book().ClearAll();
        model.Fill();
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.RowOf(-1), -1);
    }

    void recipients()
    {
        WindowFixture f;
        const LxContactPtr ann = f.Add(u"Ann"_s, u"07971001234"_s, {u"Work"_s});
        const int work = f.Book().Groups().Lookup(u"Work"_s)->GroupID();
        RecipientModel model(nullptr);
        QAbstractItemModelTester tester(&model, kFatal);
        model.SetItems(RecipientModel::ItemsOf(f.Book()));
        QStringList items;
        for (const RecipientModel::Item &item : model.CurrentItems())
            items += item.name + u' ' + QString::number(item.number);
        QCOMPARE(items, (QStringList{u"Ann %1"_s.arg(ann->ContactID()), u"Work -%1"_s.arg(work)}));
        QCOMPARE(model.FindByName(u"wORK"_s), 1);
        QCOMPARE(model.FindByName(u"wor"_s), -1);
        QCOMPARE(model.FindByPrefix(u"wor"_s), 1);
        QCOMPARE(model.FindByNumber(-work), 1);
        model.SetItems({});
        QCOMPARE(model.FindByPrefix(u"a"_s), -1);
    }

    void results()
    {
        SendResultsModel model(nullptr);
        QAbstractItemModelTester tester(&model, kFatal);
        model.SetRequests(
            {{u"+44"_s, u"Ann"_s, u"Hi"_s, LxMessageResponse{1, true, {}}}, {u"+1"_s, u"Bob"_s, u"Hi"_s}});
        QCOMPARE(Print(model),
                 (QStringList{u"Status|Name|Mobile|Message"_s, u"Sent|Ann|+44|Hi"_s, u"Not sent|Bob|+1|Hi"_s}));
        model.SetRequests({});
        QCOMPARE(model.rowCount(), 0);
    }
};

QTEST_MAIN(TestPhoneBookModels)
#include "test_phone_book_models.moc"
