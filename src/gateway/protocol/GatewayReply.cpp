#include "GatewayReply.h"

namespace GatewayReply {
namespace {

QByteArray Element(const char *tag, const QByteArray &content)
{
    return QByteArray("<") + tag + '>' + content + "</" + tag + '>';
}

} // namespace

QByteArray LoggedOn(const QList<MessageVerdict> &verdicts, int balance)
{
    QByteArray reply = Element("LOGON", "OK") + "\r\n";
    for (const MessageVerdict &verdict : verdicts) {
        const bool isAccepted = verdict.refusal.isEmpty();
        reply += Element("MSG", Element("ID", QByteArray::number(verdict.id)) +
                                    Element("STATUS", isAccepted ? "OK" : "FAIL") +
                                    Element("INFO", isAccepted ? "Accepted" : verdict.refusal.toLatin1())) +
                 "\r\n";
    }
    return reply + Element("BAL", QByteArray::number(balance)) + "\r\n";
}

QByteArray Refused(int errorNumber, const QString &reason)
{
    return Element("LOGON", "FAIL") + Element("ERR", QByteArray::number(errorNumber)) +
           Element("REASON", reason.toLatin1()) + "\r\n";
}

} // namespace GatewayReply
