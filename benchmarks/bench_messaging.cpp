#include "GatewayProtocol.h"
#include "LxMessage.h"
#include "Require.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPeople = 1000;

LxMessageRequests Requests()
{
    LxMessage message;
    message.SetText(QString(LxMessage::MaxLength, u'é'));
    LxMessageRequests requests;
    for (int person = 0; person < kPeople; ++person) {
        for (const QString &part : message.MessageParts())
            requests.push_back({u"+44%1"_s.arg(7700900000 + person), u"Ann & Bob %1"_s.arg(person), part});
    }
    return requests;
}

QString ReplyTo(const LxMessageRequests &requests)
{
    QString reply = u"<LOGON>OK</LOGON>\r\n"_s;
    for (size_t i = 0; i < requests.size(); ++i)
        reply += u"<MSG><ID>%1</ID><STATUS>OK</STATUS><INFO>Accepted</INFO></MSG>\r\n"_s.arg(i);
    return reply + u"<BAL>57</BAL>\r\n"_s;
}

/// A send to 1,000 people in three parts: document, form body, and reply.
void BuildEncodeAndParse(benchmark::State &state)
{
    const QString text = ReplyTo(Requests());
    for (auto _ : state) {
        LxMessageRequests requests = Requests();
        const QString document = SendingSMS::BuildMessageRequest(requests, u"ann@mail.example"_s, u"ann"_s, u"pw"_s);
        const QByteArray body = SendingSMS::FormBody(document);
        const SendingSMS::Reply reply = SendingSMS::CheckResponse(text, requests);
        Require(reply.count == static_cast<int>(requests.size()) && reply.code == 0);
        state.counters["body_bytes"] = static_cast<double>(body.size());
    }
}
BENCHMARK(BuildEncodeAndParse)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
