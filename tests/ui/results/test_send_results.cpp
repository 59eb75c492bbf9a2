#include "Dialogs.h"
#include "Files.h"
#include "Icons.h"
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

    struct Fixture : Profile
    {
        Settings settings{Settings::DefaultFileName(), prompts};
        const WindowServices services{settings, prompts, shell, std::chrono::milliseconds(0)};
        LxMessageRequests requests{{u"+447700900123"_s,
                                    u"Ann \"A\" Lee"_s,
                                    u"one\r\ntwo"_s,
                                    LxMessageResponse{7, true, {}},
                                    {SentOutcome::Sent, {}}},
                                   {u"+33612345678"_s,
                                    u"Zoë"_s,
                                    {},
                                    LxMessageResponse{0, false, u"A & <b>"_s},
                                    {SentOutcome::Refused, u"A & <b>"_s}},
                                   {u"+1555"_s, u"Bob"_s, u"Hi"_s, std::nullopt, {SentOutcome::NotKnown, {}}}};
        QList<LxMessageRequests> sentAgain;
        /// The gateway refuses what it is sent again first, and then takes it.
        SendResults::SendAgain sendAgain = [this](LxMessageRequests failed, QWidget *) {
            sentAgain.append(failed);
            const bool isTaken = sentAgain.size() > 1;
            for (LxMessageRequest &request : failed) {
                request.Response = LxMessageResponse{9, isTaken, {}};
                request.Outcome = {isTaken ? SentOutcome::Sent : SentOutcome::NotSent, {}};
            }
            return failed;
        };
    };

private slots:
    void theListIsSavedAsCsv()
    {
        Fixture f;
        SendResults window(f.services, f.sendAgain, nullptr);
        const QAbstractItemModelTester tester(Control<QTreeView>(window, "lvwSendResults").model());
        window.Results(f.requests);
        const QString path = f.home.filePath(u"results.csv"_s);
        const QString gone = f.home.filePath(u"gone/results.csv"_s);
        for (const QString &answer : {path, gone, QString()}) {
            f.prompts.ExpectAnyFileDialog(answer);
            if (answer == gone)
                f.prompts.ExpectBox(u"The results could not be saved to a file: No such file or directory"_s,
                                    PromptIcon::Information, PromptAnswer::Ok, u"Save Results Failed"_s);
            Control<QPushButton>(window, "cmdSave").click();
        }
        QCOMPARE(f.settings.Get(u"Send Results"_s, u"File"_s), gone);
        QCOMPARE(ReadBytes(path), "\"Status\",\"Name\",\"Mobile\",\"Message\"\r\n"
                                  "\"Sent\",\"Ann \"\"A\"\" Lee\",\"+447700900123\",\"one\r\ntwo\"\r\n"
                                  "\"Not sent\",\"Zo\xEB\",\"+33612345678\",\"\"\r\n"
                                  "\"Not sent\",\"Bob\",\"+1555\",\"Hi\"\r\n");
    }

    void showsWholeNumbersAndReasons()
    {
        Fixture f;
        std::swap(f.requests[0], f.requests[1]);
        f.requests.resize(1500, f.requests[1]);
        f.requests[1400].InternationalMobile = u"+447700900123456"_s;
        SendResults window(f.services, f.sendAgain, nullptr);
        window.Results(f.requests);
        window.show();
        auto &list = Control<QTreeView>(window, "lvwSendResults");
        QVERIFY(list.columnWidth(SendResultsModel::Mobile) >
                list.fontMetrics().horizontalAdvance(f.requests[1400].InternationalMobile));
        QStringList shown;
        for (const int row : {0, 1, 2}) {
            const QModelIndex index = list.model()->index(row, 0);
            shown += Control<QLabel>(window, "lblReason").text() + index.data(Qt::ToolTipRole).toString();
            list.setCurrentIndex(index.siblingAtRow(row + 1));
        }
        const QModelIndex refused = list.model()->index(0, 0);
        QCOMPARE(refused.data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage(),
                 Icons::Get("cross"_L1).pixmap(16).toImage());
        QCOMPARE(refused.data(Qt::AccessibleTextRole).toString(), u"Not sent: A & <b>"_s);
        QCOMPARE(shown, (QStringList{u"A & <b><span>A &amp; &lt;b&gt;</span>"_s, {}, {}}));
    }

    void onlyWhatSurelyFailedIsSentAgain()
    {
        Fixture f;
        SendResults window(f.services, f.sendAgain, nullptr);
        window.Results(f.requests);
        window.show();
        auto &again = Control<QPushButton>(window, "cmdSendAgain");
        QVERIFY(Control<QLabel>(window, "lblNotKnown").isVisible());
        const auto &reason = Control<QLabel>(window, "lblReason");
        auto &list = Control<QTreeView>(window, "lvwSendResults");
        list.setCurrentIndex(list.model()->index(1, 0));
        QCOMPARE(reason.accessibleDescription(), u"A & <b>"_s);
        for (int i = 0; i < 3; ++i) {
            QTest::qWait(1); // the quiet time
            again.click();
        }
        QCOMPARE(f.sentAgain.size(), 2);
        QCOMPARE(f.sentAgain[1].size(), size_t(1));
        QCOMPARE(f.sentAgain[1][0].Name, u"Zoë"_s);
        QVERIFY(!again.isEnabled() && reason.accessibleDescription().isEmpty());
        QCOMPARE(list.model()->index(1, 0).data().toString(), u"Sent"_s);
        QCOMPARE(list.model()->index(2, 0).data().toString(), u"Not sent"_s);
    }
};

QTEST_MAIN(TestSendResults)
#include "test_send_results.moc"
