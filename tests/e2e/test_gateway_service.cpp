#include "GatewayService.h"
#include "PostModule.h"
#include "Profile.h"
#include "Rows.h"
#include "ScriptedPeer.h"
#include "SendingSMS.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

/// The service as its administrator meets it, and the desktop program's posts to it over TLS.
class TestGatewayService final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    GatewayService m_service{m_folder.path()};

    /// One message from the program; how it ended. The host has the certificate of this name.
    QString Send(const QString &certificate)
    {
        GatewayService &service = m_service;
        const QString pem = ScriptedPeer::Certificate(certificate);
        if (service.Start(u"127.0.0.1:1"_s, {u"--tls-certificate"_s, pem, u"--tls-key"_s, pem}) < 0)
            return u"not started"_s;
        Profile profile;
        Settings settings(Settings::DefaultFileName(), profile.prompts);
        settings.Save(u"Gateway"_s, u"Host"_s, u"127.0.0.1:%1"_s.arg(service.port));
        settings.Save(u"Gateway"_s, u"Secure"_s, u"True"_s);
        settings.Save(u"Gateway"_s, u"CertificateAuthority"_s, ScriptedPeer::Certificate(u"authority"_s));
        PostModule posts{profile.internetSettings};
        DirectPostRunner runner;
        RecordingNotes notes;
        const auto outcome = SendingSMS::SendRequests({settings, posts, runner, notes}, {u"ann"_s, u"pass"_s, {}},
                                                      {{u"+447700900123"_s, u"Bob"_s, u"Hi"_s}}, {}, nullptr);
        return u"%1 %2 %3"_s.arg(int(outcome.status)).arg(outcome.balance).arg(outcome.reason);
    }

private slots:
    // In this order; what stands in brackets is the standard input, and % the folder.
    TABLE_TEST(
        commands, (const QString &line, const QString &told), u"status -> There is no such database: %. = 2",
        u"account add ann [] -> A password is wanted. = 2", u"account add ann [pass] ->  = 0",
        u"account add ann [pass] -> There is a user ann already. = 2",
        u"account add -> It is used as: brevio-gateway account add USER. Try --help. = 2",
        u"account drop -> There is no command \"account drop\". Try --help. = 2",
        u"status --all -> Unknown option 'all'. Try --help. = 2",
        u"account credit ann 5 --by x -> A credit wants --by and --reason, which are kept beside it. Try --help. = 2",
        u"account credit ann 5 --by x --reason y -> ann has 5 messages now. = 0",
        u"account credit ann -1 --by x --reason y -> ann has 4 messages now. = 0",
        u"account credit ann -9 --by x --reason y -> ann has 4 messages, no fewer than 0 can be left. = 2",
        u"messages --state sent -> There is no state \"sent\". Try --help. = 2", u"messages ->  = 0",
        u"messages retry 7 -> There is no message 7. = 2", u"purge -> A purge wants --older-than DAYS. Try --help. = 2",
        u"purge --older-than 3 -> 0 messages blanked = 0", u"restored -> 0 messages are unsure now = 0",
        u"serve -> The password of Kannel's sendsms-user is wanted: --kannel-password-file FILE. Try --help. = 2",
        u"serve --kannel-password-file /dev/null -> There is no password in \"/dev/null\". = 2",
        u"serve --tls-key x -> --tls-certificate and --tls-key go together. Try --help. = 2",
        u"serve --listen :80 -> --listen wants an address and a port, not \":80\". Try --help. = 2")
    {
        int code = -1;
        const QStringList words = line.section(u" ["_s, 0, 0).split(u' ');
        const QByteArray input = line.section(u'[', 1).chopped(line.contains(u'[') ? 1 : 0).toUtf8();
        QString heard = QString::fromUtf8(m_service.Tell(words, input, &code)).trimmed();
        heard.remove(u"brevio-gateway: "_s);
        QCOMPARE(u"%1 = %2"_s.arg(heard).arg(code), QString(told).replace(u"%"_s, m_service.database));
    }

    // After the commands, with their account.
    TABLE_TEST(theProgramOverTls, (const QString &certificate, const QString &ending), u"gateway -> 0 3 No error!",
               u"stranger -> 3 -1 The gateway's certificate is not valid: unable to get local issuer certificate",
               u"expired -> 3 -1 The gateway's certificate is not valid: certificate has expired",
               u"other -> 3 -1 The gateway's certificate is not valid: no alternative certificate subject name matches "
               "target host name '127.0.0.1'")
    {
        const auto kept = [this] { return m_service.Tell({u"messages"_s}).count('\n'); };
        const auto before = kept();
        QCOMPARE(Send(certificate), ending);
        QCOMPARE(kept() - before, certificate == u"gateway" ? 1 : 0);
    }

    void oneServesADatabase()
    {
        QVERIFY(m_service.Start(u"127.0.0.1:1"_s) >= 0);
        QCOMPARE(m_service.Tell({u"serve"_s, u"--kannel-password-file"_s, m_service.passwordFile}),
                 "brevio-gateway: " + m_service.database.toUtf8() + ": another service works with this database.\n");
        m_service.Stop();
        QVERIFY(m_service.process->exitStatus() == QProcess::NormalExit && m_service.process->exitCode() == 0);
    }

    /// In a network of its own, where there is nobody else.
    void withoutTlsBeyondThisMachineItWarns()
    {
        if (QProcess::execute(u"unshare"_s, {u"-rn"_s, u"true"_s}) != 0)
            QSKIP("No network of its own can be had here");
        const QStringList arguments =
            m_service.Arguments(u"127.0.0.1:1"_s) + QStringList{u"--listen"_s, u"0.0.0.0:0"_s};
        QProcess service;
        service.start(u"unshare"_s, QStringList{u"-rn"_s, m_service.program} + arguments);
        QVERIFY(service.waitForReadyRead(10'000));
        service.terminate();
        QVERIFY(service.waitForFinished());
        QVERIFY(service.readAllStandardError().startsWith("Warning: others on the network can read"));
    }
};

QTEST_GUILESS_MAIN(TestGatewayService)
#include "test_gateway_service.moc"
