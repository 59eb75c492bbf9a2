#include "FilledStore.h"
#include "HandOver.h"
#include "KannelEngine.h"
#include "PlayOperator.h"
#include "ReportListener.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestKannelChain final : public QObject
{
    Q_OBJECT

private slots:
    void messagesAreDelivered()
    {
        QStringList numbers;
        QStringList expected;
        for (int i = 0; i < 60; ++i) {
            numbers += QString::number(447700900000 + i % 20);
            expected += u"%1 Text %2"_s.arg(numbers.last()).arg(i);
        }
        FilledStore store(numbers);
        const PlayOperator kannel(QStringLiteral(TOOLS), QStringLiteral(KANNEL_FOLDER), store.folder.path());
        QVERIFY(kannel.Port() > 0);
        const ReportTag tag(store.database.Secret());
        const LogLine log = [](const QString &) {};
        ReportListener listener(store.queue, tag, log);
        listener.Start(0);
        KannelEngine engine({.port = kannel.Port(),
                             .user = u"brevio"_s,
                             .password = u"play-the-operator"_s,
                             .reportBase = u"http://127.0.0.1:%1"_s.arg(listener.Port())},
                            tag);
        HandOver handOver(store.queue, engine, log);
        handOver.Start();
        QTRY_COMPARE_WITH_TIMEOUT(store.States().count(u"delivered"_s), 60, 20'000);
        QStringList arrived = kannel.Arrived();
        arrived.sort();
        expected.sort();
        QCOMPARE(arrived, expected);
    }
};

int main(int argc, char *argv[])
{
    if (!PlayOperator::IsToBeHad(QStringLiteral(TOOLS), QStringLiteral(KANNEL_FOLDER)))
        return 77;
    const QCoreApplication application(argc, argv);
    TestKannelChain test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_kannel_chain.moc"
