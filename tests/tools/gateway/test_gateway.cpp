#include "Gateway.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Bytes in the code page, as clients send them.
QByteArray Message(const QByteArray &number, const QByteArray &name = "Jo", const QByteArray &text = "Hi")
{
    return "       <MSG> \r\n           <OP>1</OP>\r\n           <TEXT>" + text + "</TEXT>\r\n           <RCV>" +
           number + "</RCV>\r\n           <NAME>" + name + "</NAME>\r\n       </MSG>\r\n";
}

QByteArray Send(const QByteArray &messages, const QByteArray &user = "ann", const QByteArray &password = "secret")
{
    return "<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>" + user + "</CLIENT> \r\n   <PW>" + password +
           "</PW>\r\n   <VERSION>23000138</VERSION>\r\n   <MSGLST>\r\n" + messages + "   </MSGLST>\r\n</SESSION>\r\n";
}

QByteArray Form(const QByteArray &document)
{
    return "XML=" + document.toPercentEncoding({}, "-._~");
}

QByteArray Verdict(int id, const QByteArray &info = "Accepted")
{
    return "<MSG><ID>" + QByteArray::number(id) + "</ID><STATUS>" + (id ? "OK" : "FAIL") + "</STATUS><INFO>" + info +
           "</INFO></MSG>\r\n";
}

QByteArray LoggedOn(const QByteArray &verdicts, int balance)
{
    return "<LOGON>OK</LOGON>\r\n" + verdicts + "<BAL>" + QByteArray::number(balance) + "</BAL>\r\n";
}

} // namespace

class TestGateway : public QObject
{
    Q_OBJECT

    QStringList m_outbox;

    /// What a fresh gateway answers whose outbox cannot be written from the fourth message on.
    Gateway::Answer Answer(const QByteArray &body)
    {
        m_outbox.clear();
        Gateway gateway({{u"ann"_s, u"secret"_s, 2}, {u"Zoë </CLIENT>&"_s, u"<&€"_s, 9}}, {u"447700900999"_s},
                        [this](const QJsonObject &message) {
                            m_outbox += message[u"number"].toString() + message[u"name"].toString() +
                                        message[u"text"].toString();
                            return m_outbox.size() < 4;
                        });
        return gateway.AnswerPost(body);
    }

private slots:
    void AnswersDocuments()
    {
        const QByteArray good = Message("447700900123");
        const QString kept = u"447700900123JoHi"_s;
        const std::tuple<QByteArray, QByteArray, QStringList> rows[] = {
            {Send(good.repeated(3)),
             LoggedOn(Verdict(1) + Verdict(2) + Verdict(0, "No messages left"), 0),
             {kept, kept}},
            {Send(good.repeated(4), "Zo\xEB </CLIENT>&", "<&\x80"),
             LoggedOn(Verdict(1) + Verdict(2) + Verdict(3) + Verdict(0, "The outbox cannot be written"), 6),
             {kept, kept, kept, kept}},
            {Send(Message("447700900123", "M\xFCller &amp; \x80", "&lt;b&gt; &quot;&apos;&amp;amp; &#163;5\r\n\xE9")),
             LoggedOn(Verdict(1), 1),
             {u"447700900123Müller & €<b> \"'&amp; £5\r\né"_s}},
            {Send(good, "ann", "<&\x80"),
             "<LOGON>FAIL</LOGON><ERR>3</ERR><REASON>Wrong user name or password</REASON>\r\n",
             {}},
            {Send(Message("07700900123") + Message("447700900999")),
             LoggedOn(Verdict(0, "Invalid number") + Verdict(0, "The number cannot be reached"), 2),
             {}},
            {Send(Message("447700900123", "Jo", QByteArray(160, 'a') + "&amp;")),
             LoggedOn(Verdict(0, "Text longer than 160 characters"), 2),
             {}}};
        for (const auto &[document, reply, outbox] : rows) {
            QCOMPARE(Answer(Form(document)).body, reply);
            QCOMPARE(m_outbox, outbox);
        }
    }

    void RefusesWhatItCannotRead()
    {
        const QByteArray good = Send(Message("447700900123"));
        const auto changed = [good](auto from, auto to) { return Form(QByteArray(good).replace(from, to)); };
        const std::initializer_list<std::pair<QByteArray, QByteArray>> rows = {
            {"", "The request has no XML field"},
            {"XML=%3C%3", "Byte 8 of the request: incomplete percent escape"},
            {changed("\r\n", "\n"), "Line 1 of the document: expected ?xml version=\"1.0\"?"},
            {changed("Hi", "A & B"), "Line 9 of the document: expected an entity after every ampersand"},
            {Form(good.chopped(2)), "Line 14 of the document: expected /SESSION"},
            {Form(good + " "), "Line 15 of the document: expected its end"}};
        for (const auto &[body, reason] : rows) {
            const auto answer = Answer(body);
            QCOMPARE(answer.body, "<LOGON>FAIL</LOGON><ERR>10</ERR><REASON>" + reason + "</REASON>\r\n");
            QCOMPARE(answer.httpStatus, 400);
            QCOMPARE(m_outbox, QStringList());
        }
    }
};

QTEST_GUILESS_MAIN(TestGateway)
#include "test_gateway.moc"
