#include "PostModule.h"
#include "Profile.h"
#include "ScriptedPeer.h"
#include "SendingSMS.h"
#include "SentList.h"
#include "SentLog.h"
#include "Settings.h"

#include <QProcess>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

/// A program that sends and is killed at any moment, against a peer that counts. BREVIO_KILLS says how often.
class TestKilledSend final : public QObject
{
    Q_OBJECT

private slots:
    void everyMessageThatLeftIsInTheLog()
    {
        using Script = ScriptedPeer::Script;
        const QByteArray reply = ScriptedPeer::Ok("<LOGON>OK</LOGON><MSG><STATUS>OK</STATUS></MSG><MSG></MSG>");
        const QList scripts = {Script{.pieces = {reply.first(40), reply.sliced(40)}, .pauseMs = 2},
                               Script{.pieces = {reply}}, Script{.then = ScriptedPeer::Then::Reset, .after = 100},
                               Script{.pieces = {reply.chopped(9)}}};
        const Profile profile;
        qputenv("TMPDIR", profile.home.path().toUtf8()); // of what is killed, nothing is left behind
        QMap<SentOutcome, int> outcomes;
        int atPeer = 0;
        const int kills = qMax(10, qEnvironmentVariableIntValue("BREVIO_KILLS"));
        for (int kill = 0; kill < kills; ++kill) {
            ScriptedPeer peer(scripts[kill % scripts.size()]);
            const QString text = u"k%1n"_s.arg(kill);
            QProcess program;
            program.start(QCoreApplication::applicationFilePath(), {peer.Address(), text, SentLog::DefaultFileName()});
            if (kill % 5 == 4)
                peer.close(); // nothing can leave
            QTRY_VERIFY(program.canReadLine());
            QTest::qWait(QRandomGenerator::global()->bounded(50));
            program.kill();
            QTRY_COMPARE(program.state(), QProcess::NotRunning);

            SentLog log(SentLog::DefaultFileName(), profile.clock);
            SentList list(log);
            list.Find(text);
            list.Advance(std::chrono::minutes(1));
            QMap<QString, int> noted;
            for (int row = 0; row < list.Count(); ++row) {
                const SentMessage message = list.At(row);
                const bool isAtPeer = peer.Received().contains(message.text.toLatin1());
                ++outcomes[message.outcome];
                ++noted[message.text];
                atPeer += isAtPeer ? 1 : 0;
                QVERIFY(message.outcome != SentOutcome::OnItsWay);
                QVERIFY(isAtPeer ? message.outcome != SentOutcome::NotSent : message.outcome > SentOutcome::Refused);
            }
            static const QRegularExpression s_text(u"k\\d+n\\d+e"_s);
            for (auto it = s_text.globalMatch(QString::fromLatin1(peer.Received())); it.hasNext();)
                QCOMPARE(noted.value(it.next().captured()), 2);
        }
        qInfo("%d kills; %d messages at the peer; %d sent, %d refused, %d not sent, %d not known", kills, atPeer,
              outcomes[SentOutcome::Sent], outcomes[SentOutcome::Refused], outcomes[SentOutcome::NotSent],
              outcomes[SentOutcome::NotKnown]);
    }
};

/// By itself the test; with an address, the beginning of texts and a log the program, which sends two messages at once
/// until it is killed.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc < 4 || argv[1][0] == '-') {
        TestKilledSend test;
        return QTest::qExec(&test, argc, argv);
    }
    Profile profile;
    Settings settings(Settings::DefaultFileName(), profile.prompts);
    settings.Save(u"Gateway"_s, u"Host"_s, QString::fromUtf8(argv[1]));
    PostModule posts{profile.internetSettings};
    DirectPostRunner runner;
    SentLog log(QString::fromUtf8(argv[3]), profile.clock);
    for (int number = 0;; ++number) {
        const QString text = QString::fromUtf8(argv[2]) + QString::number(number) + u'e';
        (void)SendingSMS::SendRequests({settings, posts, runner, log}, {}, {{u"+1"_s, {}, text}, {u"+2"_s, {}, text}},
                                       {}, nullptr);
        std::puts("sent");
        std::fflush(stdout);
    }
}
#include "test_killed_send.moc"
