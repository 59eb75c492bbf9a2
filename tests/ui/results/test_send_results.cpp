#include "Dialogs.h"
#include "Files.h"
#include "Profile.h"
#include "SendResults.h"
#include "SendResultsModel.h"
#include "Settings.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

class TestSendResults final : public QObject
{
    Q_OBJECT

private slots:
    void theListIsSavedAsCsv()
    {
        Profile f;
        Settings settings(Settings::DefaultFileName(), f.prompts);
        SendResults window({settings, f.prompts, f.shell}, nullptr);
        const QAbstractItemModelTester tester(Control<QTreeView>(window, "lvwSendResults").model());
        window.Results({{u"+447700900123"_s, u"Ann \"A\" Lee"_s, u"one\r\ntwo"_s, LxMessageResponse{7, true, {}}},
                        {u"+33612345678"_s, u"Zoë, <b>"_s, {}, LxMessageResponse{0, false, u"A & <b>"_s}},
                        {u"+1555"_s, u"Bob"_s, u"Hi"_s, std::nullopt}});
        const QString path = f.home.filePath(u"results.csv"_s);
        for (const QString &answer : {path, QString()}) {
            f.prompts.ExpectAnyFileDialog(answer);
            Control<QPushButton>(window, "cmdSave").click();
        }
        QCOMPARE(ReadBytes(path), "\"Status\",\"Name\",\"Mobile\",\"Message\"\r\n"
                                  "\"Sent\",\"Ann \"\"A\"\" Lee\",\"+447700900123\",\"one\r\ntwo\"\r\n"
                                  "\"Not sent\",\"Zo\xEB, <b>\",\"+33612345678\",\"\"\r\n"
                                  "\"Not sent\",\"Bob\",\"+1555\",\"Hi\"\r\n");
    }

    void showsWholeNumbersAndReasons()
    {
        Profile f;
        Settings settings(Settings::DefaultFileName(), f.prompts);
        LxMessageRequests requests(600, {u"+1"_s, u"Ann"_s, u"Hi"_s, LxMessageResponse{7, true, {}}});
        requests[1].Response = LxMessageResponse{0, false, u"<b>No credit</b>"_s};
        requests[2].Response.reset();
        requests[500].InternationalMobile = u"+447700900123456"_s;
        requests[501].Name = QString(400, u'x');
        QFont large = QApplication::font();
        large.setPointSizeF(1.5 * large.pointSizeF());
        for (const QFont &font : {QApplication::font(), large}) {
            SendResults window({settings, f.prompts, f.shell}, nullptr);
            window.setFont(font);
            window.Results(requests);
            window.show();
            auto &list = Control<QTreeView>(window, "lvwSendResults");
            QVERIFY(list.columnWidth(SendResultsModel::Mobile) >
                    list.fontMetrics().horizontalAdvance(requests[500].InternationalMobile));
            const int left = list.viewport()->width() - list.columnViewportPosition(SendResultsModel::Message);
            QVERIFY(left >= list.fontMetrics().horizontalAdvance(QString(10, u'x')));
            QStringList reasons;
            for (const int row : {0, 1, 2}) {
                list.setCurrentIndex(list.model()->index(row, 0));
                reasons += Control<QLabel>(window, "lblReason").text();
            }
            QCOMPARE(reasons, (QStringList{{}, u"<b>No credit</b>"_s, {}}));
        }
    }

    void comesBackAsItWasLeft()
    {
        Profile f;
        Settings settings(Settings::DefaultFileName(), f.prompts);
        for (const bool isFirst : {true, false}) {
            SendResults window({settings, f.prompts, f.shell}, nullptr);
            window.Results({{u"+447700900123"_s, u"Ann"_s, u"Hi"_s, std::nullopt}});
            window.show();
            auto &list = Control<QTreeView>(window, "lvwSendResults");
            if (isFirst) {
                window.resize(543, 321);
                list.setColumnWidth(SendResultsModel::Mobile, 77);
            }
            QCOMPARE(window.size(), QSize(543, 321));
            QCOMPARE(list.columnWidth(SendResultsModel::Mobile), 77);
            window.reject();
        }
    }
};

QTEST_MAIN(TestSendResults)
#include "test_send_results.moc"
