#pragma once

#include "Files.h"

#include <QProcess>
#include <QRegularExpression>

#include <csignal>

/// Kannel and the operator that it speaks to, run by tools/play-operator until this ends.
class PlayOperator final
{
public:
    /// Unpacks Kannel where that has not been done; false where it cannot be had, and the reason is printed.
    [[nodiscard]] static bool IsToBeHad(const QString &tools, const QString &kannelFolder)
    {
        return QProcess::execute(tools + QStringLiteral("/unpack-kannel"), {kannelFolder}) == 0;
    }

    /// Waits until it takes messages. `Port()` is 0 when it does not.
    PlayOperator(const QString &tools, const QString &kannelFolder, QString scratch)
        : m_scratch(std::move(scratch))
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(tools + QStringLiteral("/play-operator"), {kannelFolder, m_scratch});
        while (!m_process.canReadLine() && m_process.waitForReadyRead(20'000)) {
        }
        m_port = m_process.readLine().split(' ').last().trimmed().toInt();
    }
    ~PlayOperator()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(PlayOperator)

    /// Of smsbox, where messages are handed over.
    [[nodiscard]] int Port() const { return m_port; }

    /// Kills "bearerbox", "smsbox" or "operator"; it starts again.
    void Kill(const QString &name) const
    {
        ::kill(ReadBytes(m_scratch + u'/' + name + QLatin1String(".pid")).toInt(), SIGKILL);
    }

    /// "number text" of every message that came to the operator, in their order.
    [[nodiscard]] QStringList Arrived() const
    {
        static const QRegularExpression line(QStringLiteral(R"(Got message \d+: <\S+ \+(\d+) text (.*)>)"));
        QStringList arrived;
        const QString log = QString::fromUtf8(ReadBytes(m_scratch + QLatin1String("/operator.log")));
        for (const QRegularExpressionMatch &match : line.globalMatch(log))
            arrived += match.captured(1) + u' ' + match.captured(2);
        return arrived;
    }

private:
    const QString m_scratch;
    QProcess m_process;
    int m_port = 0;
};
