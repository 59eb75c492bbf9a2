#include "ServeCommand.h"

#include "Accounts.h"
#include "CommandOptions.h"
#include "Database.h"
#include "DatabaseStore.h"
#include "EndSignal.h"
#include "Gateway.h"
#include "GatewayServer.h"
#include "HandOver.h"
#include "KannelEngine.h"
#include "LogOnGuard.h"
#include "MessageQueue.h"
#include "ReportListener.h"
#include "ServiceManager.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QString Tr(const char *text)
{
    return QCoreApplication::translate("ServeCommand", text);
}

void Log(const QString &line)
{
    // In one piece, as several threads write.
    std::fputs((line + u'\n').toUtf8().constData(), stderr);
}

struct Place
{
    QString host;
    quint16 port;
};

/// "host", "host:port" or "[IPv6]:port".
Place ReadPlace(const QCommandLineParser &options, const QString &name, quint16 usualPort)
{
    QString host = options.value(name);
    qint64 port = usualPort;
    const qsizetype colon = host.lastIndexOf(u':');
    if (colon >= 0 && !host.endsWith(u']')) {
        port = ServiceCommands::Number(host.sliced(colon + 1), Tr("The port in --%1").arg(name), 0, 65535);
        host.truncate(colon);
    }
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.sliced(1, host.size() - 2);
    if (host.isEmpty())
        ServiceCommands::Refuse(Tr("--%1 wants an address and a port, not \"%2\".").arg(name, options.value(name)));
    return {host, static_cast<quint16>(port)};
}

QString FirstLine(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        ServiceCommands::GiveUp(Tr("Cannot read \"%1\": %2.").arg(path, file.errorString()));
    QByteArray line = file.readLine();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}

ServerSettings ReadServerSettings(const QCommandLineParser &options)
{
    const Place place = ReadPlace(options, u"listen"_s, 8080);
    ServerSettings settings;
    settings.address = place.host;
    settings.port = place.port;
    settings.certificatePath = options.value(u"tls-certificate"_s);
    settings.keyPath = options.value(u"tls-key"_s);
    if (settings.certificatePath.isEmpty() != settings.keyPath.isEmpty())
        ServiceCommands::Refuse(Tr("--tls-certificate and --tls-key go together."));
    return settings;
}

/// Without where it is to report to.
KannelEngine::Settings ReadEngineSettings(const QCommandLineParser &options)
{
    const Place place = ReadPlace(options, u"kannel"_s, 13013);
    // Reports are only heard on loopback, and the password and the texts go to Kannel unencrypted.
    static const QRegularExpression loopback(u"\\A(localhost|127(\\.[0-9]{1,3}){3})\\z"_s);
    if (!loopback.match(place.host).hasMatch())
        ServiceCommands::Refuse(Tr("--kannel wants a Kannel on this machine, such as 127.0.0.1:13013, not \"%1\".")
                                    .arg(options.value(u"kannel"_s)));
    KannelEngine::Settings settings;
    settings.host = place.host;
    settings.port = place.port;
    settings.user = options.value(u"kannel-user"_s);
    if (!options.isSet(u"kannel-password-file"_s))
        ServiceCommands::Refuse(Tr("The password of Kannel's sendsms-user is wanted: --kannel-password-file FILE."));
    settings.password = FirstLine(options.value(u"kannel-password-file"_s));
    if (settings.password.isEmpty())
        ServiceCommands::GiveUp(Tr("There is no password in \"%1\".").arg(options.value(u"kannel-password-file"_s)));
    settings.sender = options.value(u"sender"_s);
    Accounts::CheckSender(settings.sender);
    return settings;
}

int Serve(const CommandInput &input)
{
    EndSignal::Block();
    const QCommandLineParser &options = input.options;
    const ServerSettings serverSettings = ReadServerSettings(options);
    const auto reportPort = static_cast<int>(ServiceCommands::Number(options, u"report-port"_s, 0, 65535));
    HandOver::Options handOverOptions;
    handOverOptions.senders = static_cast<int>(ServiceCommands::Number(options, u"senders"_s, 1, 64));
    const qint64 queueLimit = ServiceCommands::Number(options, u"queue-limit"_s, 1, 100'000'000);
    KannelEngine::Settings engineSettings = ReadEngineSettings(options);

    Database database = CommandOptions::OpenOrCreateDatabase(options);
    database.HoldForService();
    MessageQueue queue(database);
    const ReportTag tag(database.Secret());
    // From the first message on, reports find someone who hears them; to the last one, the senders theirs.
    ReportListener reports(queue, tag, Log);
    reports.Start(reportPort);
    engineSettings.reportBase = u"http://127.0.0.1:%1"_s.arg(reports.Port());
    KannelEngine engine(std::move(engineSettings), tag);
    HandOver handOver(queue, engine, Log, handOverOptions);
    DatabaseStore store(database, queueLimit, [&handOver] { handOver.Wake(); });
    LogOnGuard guard(store);
    Gateway gateway(store, &guard);
    GatewayServer server(serverSettings, gateway);
    const quint16 port = server.Bind();
    handOver.Start();
    const QString scheme = serverSettings.certificatePath.isEmpty() ? u"http"_s : u"https"_s;
    const QString host =
        serverSettings.address.contains(u':') ? u'[' + serverSettings.address + u']' : serverSettings.address;
    input.out << u"Listening on %1://%2:%3\n"_s.arg(scheme, host).arg(port) << Qt::flush;
    ServiceManager::TellReady();
    EndSignal::ServeUntilTold(server);
    handOver.Stop();
    reports.Stop();
    return 0;
}

} // namespace

ServiceCommand ServeCommand()
{
    return {{u"serve"_s},
            {},
            Tr("Take messages, keep them in the database, and hand them to Kannel."),
            {CommandOptions::Database(),
             {u"listen"_s, Tr("Where to listen."), u"ADDRESS:PORT"_s, u"127.0.0.1:8080"_s},
             {u"tls-certificate"_s, Tr("The certificate to speak TLS with (PEM, with its chain)."), u"FILE"_s},
             {u"tls-key"_s, Tr("Its key (PEM)."), u"FILE"_s},
             {u"kannel"_s, Tr("Where Kannel's smsbox takes messages, on this machine."), u"HOST:PORT"_s,
              u"127.0.0.1:13013"_s},
             {u"kannel-user"_s, Tr("The name of its sendsms-user."), u"USER"_s, u"brevio"_s},
             {u"kannel-password-file"_s, Tr("A file whose first line is that user's password."), u"FILE"_s},
             {u"sender"_s, Tr("What messages of accounts without a sender come from."), u"SENDER"_s, u"Brevio"_s},
             {u"report-port"_s, Tr("The port on loopback where reports are heard; 0 picks one."), u"N"_s, u"13113"_s},
             {u"senders"_s, Tr("How many messages are handed over at once."), u"N"_s, u"4"_s},
             {u"queue-limit"_s, Tr("Beyond so many that wait, posts are refused."), u"N"_s, u"100000"_s}},
            Serve};
}
