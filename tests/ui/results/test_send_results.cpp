#include "Dialogs.h"
#include "Error.h"
#include "Files.h"
#include "Icons.h"
#include "Profile.h"
#include "SendResults.h"
#include "Settings.h"

#include <QAbstractItemModelTester>
#include <QPushButton>
#include <QTextDocumentFragment>
#include <QTreeView>

using namespace Qt::StringLiterals;

class TestSendResults final : public QObject
{
    Q_OBJECT

    struct Fixture : Profile
    {
        Settings settings{Settings::DefaultFileName(), prompts};
        SendResults window{settings, prompts, nullptr};
        QTreeView &list = Control<QTreeView>(window, "lvwSendResults");

        void ClickSave() { QTest::mouseClick(&Control<QPushButton>(window, "cmdSave"), Qt::LeftButton); }
    };

    static LxMessageRequests SomeRequests()
    {
        return {{u"+447700900123"_s, u"Ann \"A\" Lee"_s, u"first\r\nsecond"_s, LxMessageResponse{7, true, {}}},
                {u"+33612345678"_s, u"Zoë, <b>"_s, QString(), LxMessageResponse{0, false, u"A & <b>"_s}},
                {u"+1555"_s, u"Bob"_s, u"says \"hi\""_s, std::nullopt}};
    }

    static inline const QByteArray kHeader = "\"Status\",\"Name\",\"Mobile\",\"Message\"\r\n";

private slots:
    void listsEachMessage()
    {
        Fixture f;
        QAbstractItemModelTester tester(f.list.model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        f.window.Results(SomeRequests());
        const QAbstractItemModel &model = *f.list.model();
        QCOMPARE(model.rowCount(), 3);
        const auto icon = [&model](int row) {
            return qvariant_cast<QIcon>(model.index(row, 0).data(Qt::DecorationRole)).pixmap(16).toImage();
        };
        const QImage tick = Icons::Get("tick"_L1).pixmap(16).toImage();
        const QImage cross = Icons::Get("cross"_L1).pixmap(16).toImage();
        QVERIFY(!tick.isNull() && !cross.isNull() && tick != cross);
        QCOMPARE(icon(0), tick);
        QCOMPARE(icon(1), cross);
        QCOMPARE(icon(2), cross);
        const QString reason = model.index(1, 0).data(Qt::ToolTipRole).toString();
        QVERIFY(Qt::mightBeRichText(reason));
        QCOMPARE(QTextDocumentFragment::fromHtml(reason).toPlainText(), u"A & <b>"_s);
        QCOMPARE(f.list.selectionModel()->selectedRows(), QModelIndexList{model.index(0, 0)});
        f.window.Results({});
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(!f.list.selectionModel()->hasSelection());
    }

    void savesTheListAsCsv()
    {
        Fixture f;
        f.window.show();
        const QString path = f.home.filePath(u"results.csv"_s);
        QVERIFY(WriteBytes(path, "old"));
        f.prompts.ExpectFileDialog(u"Save Results As"_s, {});
        f.ClickSave();
        QVERIFY(f.prompts.LastFileDialog().initialPath.endsWith("/Send Results"_L1));
        QCOMPARE(f.prompts.LastFileDialog().filter, u"CSV (Comma delimited) (*.csv)|*.csv"_s);
        QVERIFY(!f.prompts.LastFileDialog().confirmOverwrite);
        QCOMPARE(ReadBytes(path), "old");
        QVERIFY(f.settings.IsSectionEmpty(u"Send Results"_s));

        f.prompts.ExpectFileDialog(u"Save Results As"_s, path);
        f.ClickSave();
        QCOMPARE(ReadBytes(path), kHeader);

        f.window.Results(SomeRequests());
        f.prompts.ExpectFileDialog(u"Save Results As"_s, path);
        f.ClickSave();
        QCOMPARE(f.prompts.LastFileDialog().initialPath, path);
        QCOMPARE(ReadBytes(path), kHeader + "\"Sent\",\"Ann \"\"A\"\" Lee\",\"+447700900123\",\"first\r\nsecond\"\r\n"
                                            "\"Not sent\",\"Zo\xEB, <b>\",\"+33612345678\",\"\"\r\n"
                                            "\"Not sent\",\"Bob\",\"+1555\",\"says \"\"hi\"\"\"\r\n");
        QVERIFY(f.window.isVisible());
    }

    void failureIsToldAndThePathKept()
    {
        Fixture f;
        f.window.show();
        QString reason;
        try {
            f.window.SaveResultsToFile(f.home.path());
        } catch (const Error &error) {
            reason = error.Description();
        }
        f.prompts.ExpectFileDialog(u"Save Results As"_s, f.home.path());
        f.prompts.ExpectBox(u"The results could not be saved to a file: "_s + reason, PromptIcon::Information,
                            PromptAnswer::Ok, u"Save Results Failed"_s);
        f.ClickSave();
        QVERIFY(f.window.isVisible());
        QCOMPARE(f.settings.Get(u"Send Results"_s, u"File"_s), f.home.path());
    }

    void layoutIsKept()
    {
        Fixture f;
        f.window.show();
        f.window.resize(500, 400);
        f.list.setColumnWidth(1, 123);
        QTest::keyClick(&f.window, Qt::Key_Escape);
        SendResults again(f.settings, f.prompts, nullptr);
        QCOMPARE(again.size(), QSize(500, 400));
        QCOMPARE(Control<QTreeView>(again, "lvwSendResults").columnWidth(1), 123);
    }
};

QTEST_MAIN(TestSendResults)
#include "test_send_results.moc"
