#include "GatewayProtocol.h"

#include "Encodings.h"
#include "PhoneNumbers.h"
#include "Version.h"

#include <QCoreApplication>

#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace SendingSMS {
namespace {

QString Logon(const QString &username, const QString &password)
{
    // The blank after the first element belongs to the format.
    return "<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>"_L1 + username + "</CLIENT> \r\n   <PW>"_L1 + password +
           "</PW>\r\n"_L1;
}

/// The text between the first "<tag>" and the first "</tag>", or none.
std::optional<QStringView> Element(QStringView text, QLatin1StringView tag)
{
    const QString opening = '<'_L1 + tag + '>'_L1;
    const QString closing = "</"_L1 + tag + '>'_L1;
    const qsizetype found = text.indexOf(opening);
    const qsizetype start = found + opening.size();
    const qsizetype end = text.indexOf(closing);
    if (found < 0 || end < start)
        return std::nullopt;
    return text.sliced(start, end - start);
}

/// An optional sign and digits, blanks around allowed, of at most 32 bits.
std::optional<int> Number(std::optional<QStringView> text)
{
    if (!text)
        return std::nullopt;
    bool ok = false;
    const int number = text->trimmed().toInt(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

LxMessageResponse MessageResponse(QStringView element)
{
    LxMessageResponse response;
    const int id = Number(Element(element, "ID"_L1)).value_or(0);
    if (id >= std::numeric_limits<qint16>::min() && id <= std::numeric_limits<qint16>::max())
        response.MessageID = static_cast<qint16>(id);
    response.IsOK = element.contains("<STATUS>OK</STATUS>"_L1);
    response.Info = Element(element, "INFO"_L1).value_or(QStringView()).toString();
    return response;
}

Reply LogonFailure(QStringView text)
{
    Reply reply;
    reply.code = Number(Element(text, "ERR"_L1)).value_or(ResultCode::kLogonFailed);
    // A refused log-on is never a success, nor the user's cancel.
    if (reply.code == ResultCode::kSuccess || reply.code == ResultCode::kCanceled)
        reply.code = ResultCode::kLogonFailed;
    const std::optional<QStringView> reason = Element(text, "REASON"_L1);
    reply.reason = reason && !reason->trimmed().isEmpty()
                       ? reason->toString()
                       : QCoreApplication::translate("SendingSMS", "Error %1").arg(reply.code);
    // Cut within an element, it may have been any answer.
    reply.isRefused = Element(text, "LOGON"_L1) || Element(text, "ERR"_L1);
    return reply;
}

/// Calls `visit` with the text of every complete message element.
template <typename Visitor>
void ForEachMessage(QStringView text, Visitor visit)
{
    constexpr auto kOpening = "<MSG>"_L1;
    constexpr auto kClosing = "</MSG>"_L1;
    // Closing tags that stand before an opening one are passed over.
    qsizetype start = text.indexOf(kOpening);
    while (start >= 0) {
        start += kOpening.size();
        const qsizetype end = text.indexOf(kClosing, start);
        if (end < 0)
            return;
        visit(text.sliced(start, end - start));
        start = text.indexOf(kOpening, end);
    }
}

} // namespace

QString BuildMessageRequest(const LxMessageRequests &requests, const QString &replyEmail, const QString &username,
                            const QString &password)
{
    QString document = Logon(username, password);
    if (!replyEmail.isEmpty())
        document += "   <REPLY>"_L1 + replyEmail + "</REPLY>\r\n"_L1;
    document += "   <VERSION>"_L1 + QString::number(VersionNumber(ProgramVersion())) + "</VERSION>\r\n"_L1;
    document += "   <MSGLST>\r\n"_L1;
    for (const LxMessageRequest &request : requests) {
        document += "       <MSG> \r\n           <OP>1</OP>\r\n           <TEXT>"_L1 +
                    Encodings::XMLEncode(request.Message) + "</TEXT>\r\n           <RCV>"_L1 +
                    PhoneNumbers::RemovePlus(request.InternationalMobile) + "</RCV>\r\n           <NAME>"_L1 +
                    Encodings::XMLEncode(PhoneNumbers::RemovePlus(request.Name)) + "</NAME>\r\n       </MSG>\r\n"_L1;
    }
    return document + "   </MSGLST>\r\n</SESSION>\r\n"_L1;
}

QString BuildBalanceRequest(const QString &username, const QString &password)
{
    return Logon(username, password) + "</SESSION>\r\n"_L1;
}

QByteArray FormBody(const QString &document)
{
    return "XML=" + Encodings::URLEncode(document, false);
}

bool HoldsLogon(const QByteArray &reply)
{
    return reply.contains("<LOGON>");
}

Reply ParseResponse(const QString &text, LxMessageRequests &requests)
{
    if (text.isEmpty())
        return {.code = ResultCode::kEmptyReply,
                .reason = QCoreApplication::translate("SendingSMS", "Response is empty")};
    if (!text.contains("<LOGON>OK</LOGON>"_L1))
        return LogonFailure(text);
    Reply reply{.reason = QCoreApplication::translate("SendingSMS", "No error!"), .loggedOn = true};
    ForEachMessage(text, [&reply, &requests](QStringView element) {
        LxMessageResponse response = MessageResponse(element);
        const auto index = static_cast<size_t>(reply.count++);
        if (!response.IsOK)
            ++reply.failed;
        if (index < requests.size())
            requests[index].Response = std::move(response);
    });
    reply.balance = Number(Element(text, "BAL"_L1)).value_or(-1);
    return reply;
}

Reply CheckResponse(const QString &text, LxMessageRequests &requests)
{
    Reply reply = ParseResponse(text, requests);
    if (reply.code != ResultCode::kSuccess || reply.failed == 0)
        return reply;
    reply.code = ResultCode::kMessagesFailed;
    if (reply.failed == 1)
        reply.reason = QCoreApplication::translate("SendingSMS", "1 message failed out of %1").arg(reply.count);
    else
        reply.reason = QCoreApplication::translate("SendingSMS", "%1 messages failed out of %2")
                           .arg(reply.failed)
                           .arg(reply.count);
    return reply;
}

} // namespace SendingSMS
