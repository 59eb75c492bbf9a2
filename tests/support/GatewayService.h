#pragma once

#include "Files.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTcpServer>

/// The service on a scratch database, as a program of its own.
struct GatewayService
{
    explicit GatewayService(const QString &folder)
        : database(folder + QLatin1String("/gateway.db"))
        , passwordFile(folder + QLatin1String("/password"))
    {
        WriteBytes(passwordFile, "play-the-operator\n");
    }
    ~GatewayService() { Stop(); }
    Q_DISABLE_COPY_MOVE(GatewayService)

    /// What starts the service, beside its name.
    [[nodiscard]] QStringList Arguments(const QString &kannel) const
    {
        return QStringLiteral("serve --database %1 --kannel-password-file %2 --listen 127.0.0.1:%3 --report-port %4"
                              " --kannel %5")
            .arg(database, passwordFile)
            .arg(port)
            .arg(reportPort)
            .arg(kannel)
            .split(u' ');
    }
    /// How long it took to listen, in ms; -1 when it did not.
    qint64 Start(const QString &kannel, const QStringList &more = {})
    {
        Stop();
        QElapsedTimer clock;
        clock.start();
        process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(program, Arguments(kannel) + more);
        return process->waitForReadyRead(10'000) ? clock.elapsed() : -1;
    }
    void Stop() const
    {
        process->terminate();
        process->waitForFinished();
    }
    /// What a command of the service prints. `exitCode` becomes its code.
    QByteArray Tell(const QStringList &command, const QByteArray &input = {}, int *exitCode = nullptr) const
    {
        QProcess teller;
        teller.start(program, command + QStringList{QStringLiteral("--database"), database});
        teller.write(input);
        teller.closeWriteChannel();
        teller.waitForFinished();
        if (exitCode)
            *exitCode = teller.exitCode();
        return teller.readAllStandardOutput() + teller.readAllStandardError();
    }
    [[nodiscard]] static quint16 FreePort()
    {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        return server.serverPort();
    }

    const QString database;
    const QString passwordFile;
    const QString program = QStringLiteral(GATEWAY_PROGRAM);
    const quint16 port = FreePort();
    const quint16 reportPort = FreePort();
    std::unique_ptr<QProcess> process = std::make_unique<QProcess>();
};
