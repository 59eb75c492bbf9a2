#include "Dialogs.h"
#include "Files.h"
#include "Profile.h"
#include "SendResults.h"
#include "Settings.h"

#include <QAbstractItemModelTester>
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
};

QTEST_MAIN(TestSendResults)
#include "test_send_results.moc"
