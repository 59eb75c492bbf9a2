#include "Gateway.h"

#include <QTest>

#include <optional>

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

private:
    std::optional<Gateway> m_gateway;
    QStringList m_outbox;

private slots:
    /// A gateway whose outbox cannot be written from the fourth message on.
    void init()
    {
        m_outbox.clear();
        const auto keep = [this](const QJsonObject &message) {
            m_outbox += message[u"number"].toString() + message[u"name"].toString() + message[u"text"].toString();
            return m_outbox.size() < 4;
        };
        const std::vector<GatewayAccount> accounts = {{u"ann"_s, u"secret"_s, 2}, {u"Zoë </CLIENT>&"_s, u"<&€"_s, 9}};
        m_gateway.emplace(accounts, QSet{u"447700900999"_s}, keep);
    }

    void AnswersDocuments_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("outbox");
        const auto row = [](const char *name, const QByteArray &document, const QByteArray &reply,
                            const QStringList &outbox = {}) { QTest::newRow(name) << document << reply << outbox; };
        const QByteArray good = Message("447700900123");
        const QString kept = u"447700900123JoHi"_s;
        row("balance runs out", Send(good.repeated(3)),
            LoggedOn(Verdict(1) + Verdict(2) + Verdict(0, "No messages left"), 0), {kept, kept});
        row("outbox fails", Send(good.repeated(4), "Zo\xEB </CLIENT>&", "<&\x80"),
            LoggedOn(Verdict(1) + Verdict(2) + Verdict(3) + Verdict(0, "The outbox cannot be written"), 6),
            {kept, kept, kept, kept});
        row("escapes and the code page",
            Send(Message("447700900123", "M\xFCller &amp; \x80", "&lt;b&gt; &quot;&apos;&amp;amp; &#163;5\r\n\xE9")),
            LoggedOn(Verdict(1), 1), {u"447700900123Müller & €<b> \"'&amp; £5\r\né"_s});
        row("another's password", Send(good, "ann", "<&\x80"),
            "<LOGON>FAIL</LOGON><ERR>3</ERR><REASON>Wrong user name or password</REASON>\r\n");
        row("numbers that fail are not charged", Send(Message("07700900123") + Message("447700900999")),
            LoggedOn(Verdict(0, "Invalid number") + Verdict(0, "The number cannot be reached"), 2));
        row("text of 161", Send(Message("447700900123", "Jo", QByteArray(160, 'a') + "&amp;")),
            LoggedOn(Verdict(0, "Text longer than 160 characters"), 2));
    }
    void AnswersDocuments()
    {
        QFETCH(const QByteArray, document);
        QTEST(m_gateway->AnswerPost(Form(document)).body, "reply");
        QTEST(m_outbox, "outbox");
    }

    void RefusesWhatItCannotRead()
    {
        const QByteArray good = Send(Message("447700900123"));
        const auto changed = [good](auto from, auto to) { return Form(QByteArray(good).replace(from, to)); };
        const std::initializer_list<std::pair<QByteArray, QByteArray>> rows = {
            {"", "The request has no XML field"},
            {"XML=%3C%3", "Byte 8 of the request: incomplete percent escape"},
            {"XML=%3C&A=1", "Byte 8 of the request: character that must be escaped"},
            {changed("\r\n", "\n"), "Line 1 of the document: expected ?xml version=\"1.0\"?"},
            {changed("Hi", "A & B"), "Line 9 of the document: expected an entity after every ampersand"},
            {changed("Hi", "A <b> B"), "Line 9 of the document: expected /TEXT"},
            {Form(good.chopped(2)), "Line 14 of the document: expected /SESSION"},
            {Form(good + " "), "Line 15 of the document: expected its end"}};
        for (const auto &[body, reason] : rows) {
            const auto answer = m_gateway->AnswerPost(body);
            QCOMPARE(answer.body, "<LOGON>FAIL</LOGON><ERR>10</ERR><REASON>" + reason + "</REASON>\r\n");
            QCOMPARE(answer.httpStatus, 400);
        }
        QCOMPARE(m_outbox, QStringList());
    }

    void NumbersOfMessagesFitSixteenBits()
    {
        Gateway gateway({{u"ann"_s, u"secret"_s, 40000}}, {}, [](const QJsonObject &) { return true; });
        const QByteArray reply = gateway.AnswerPost(Form(Send(Message("447700900123").repeated(32768)))).body;
        QVERIFY(reply.endsWith(Verdict(32767) + Verdict(1) + "<BAL>7232</BAL>\r\n"));
    }
};

QTEST_GUILESS_MAIN(TestGateway)
#include "test_gateway.moc"
