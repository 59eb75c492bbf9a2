#include "ContactModel.h"
#include "GroupModel.h"
#include "RowKeys.h"
#include "WindowFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestPhoneBookModels final : public QObject
{
    Q_OBJECT

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
        f.Add(u"Ann"_s, u"07971 001234"_s, {u"Work"_s, u"Club"_s});
        const LxContactPtr bob = f.Add(u"Bob"_s, u"612345678"_s);
        bob->SetCountryCode(33);
        ContactModel model(f.Book(), nullptr);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.Fill(f.Book().AllContacts());
        QCOMPARE(Print(model), (QStringList{u"Name|Mobile|Group membership"_s, u"Ann|07971001234|Work, Club"_s,
                                            u"Bob|+33612345678|"_s}));
        QCOMPARE(model.index(1, 2).data(RowKeys::kKeyRole).toString(), u'c' + QString::number(bob->ContactID()));

        const LxContactPtr zoe = f.Add(u"Zoë"_s, u"07700900123"_s);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        model.Rewrite(*zoe); // which has no row yet
        model.Append(zoe);
        zoe->SetName(u"Zed"_s);
        model.Rewrite(*zoe);
        QCOMPARE(Print(model).last(), u"Zed|07700900123|"_s);
        QCOMPARE(resets.count(), 0);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), model.index(2, 0));
        QCOMPARE(changes[0][1].toModelIndex(), model.index(2, 2));
        model.Fill(*f.Book().Groups().Lookup(u"Work"_s));
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.RowOf(*zoe), -1);
    }

    void groups()
    {
        WindowFixture f;
        f.Add(u"Ann"_s, u"07971001234"_s, {u"Work"_s, u"Club"_s});
        GroupModel model(f.Book(), nullptr);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.Fill();
        QCOMPARE(Print(model), (QStringList{u"Group"_s, u"Everyone"_s, u"Work"_s, u"Club"_s}));
        const int club = f.Book().Groups().Lookup(u"Club"_s)->GroupID();
        QCOMPARE(model.RowOf(club), 2);
        QCOMPARE(model.index(2, 0).data(RowKeys::kKeyRole).toString(), u'g' + QString::number(club));
        f.Book().ClearAll();
        model.Fill();
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.RowOf(club), -1);
    }
};

QTEST_MAIN(TestPhoneBookModels)
#include "test_phone_book_models.moc"
