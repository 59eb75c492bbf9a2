#include "Gateway.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

/// Bytes in the code page, as clients send them.
QByteArray Message(const QByteArray &number, const QByteArray &name = "Jo", const QByteArray &text = "Hi")
{
    return "       <MSG> \r\n           <OP>1</OP>\r\n           <TEXT>" + text + "</TEXT>\r\n           <RCV>" +
           number + "</RCV>\r\n           <NAME>" + name + "</NAME>\r\n       </MSG>\r\n";
}

QByteArray LogOn(const QByteArray &user = "ann", const QByteArray &password = "secret")
{
    return "<?xml version=\"1.0\"?>\r\n<SESSION>\r\n   <CLIENT>" + user + "</CLIENT> \r\n   <PW>" + password +
           "</PW>\r\n";
}

QByteArray Send(const QByteArray &messages, const QByteArray &logOn = LogOn())
{
    return logOn + "   <VERSION>23000138</VERSION>\r\n   <MSGLST>\r\n" + messages + "   </MSGLST>\r\n</SESSION>\r\n";
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

const QByteArray kWrongPassword = "<LOGON>FAIL</LOGON><ERR>3</ERR><REASON>Wrong user name or password</REASON>\r\n";

/// A gateway whose outbox is full from the fourth message on.
struct Fixture
{
    QStringList outbox;
    Gateway gateway{{{u"ann"_s, u"secret"_s, 2}, {u"Zoë </CLIENT>&"_s, u"<PW>:€"_s, 9}},
                    {u"447700900999"_s},
                    [this](const QJsonObject &message) {
                        if (outbox.size() == 3)
                            return false;
                        outbox += QStringList{message[u"user"].toString(), message[u"reply"].toString(),
                                              message[u"number"].toString(), message[u"name"].toString(),
                                              message[u"text"].toString()}
                                      .join(u'|');
                        return true;
                    }};
};

} // namespace

class TestGateway : public QObject
{
    Q_OBJECT

private slots:
    void AnswersDocuments_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("outbox");

        const QByteArray number = "447700900123";
        const QString kept = u"ann||447700900123|Jo|Hi"_s;
        const QByteArray oddLogOn = LogOn("Zo\xEB </CLIENT>&", "<PW>:\x80");
        QTest::newRow("one message") << Send(Message(number)) << LoggedOn(Verdict(1), 1) << QStringList{kept};
        QTest::newRow("balance") << LogOn() + "</SESSION>\r\n" << LoggedOn({}, 2) << QStringList();
        QTest::newRow("a number that fails is not charged")
            << Send(Message("447700900999") + Message(number))
            << LoggedOn(Verdict(0, "The number cannot be reached") + Verdict(1), 1) << QStringList{kept};
        QTest::newRow("balance runs out")
            << Send(Message(number) + Message(number) + Message(number))
            << LoggedOn(Verdict(1) + Verdict(2) + Verdict(0, "No messages left"), 0) << QStringList{kept, kept};
        QTest::newRow("outbox runs full")
            << Send(Message(number).repeated(4), oddLogOn + "   <REPLY>a&b@c.example</REPLY>\r\n")
            << LoggedOn(Verdict(1) + Verdict(2) + Verdict(3) + Verdict(0, "The outbox cannot be written"), 6)
            << QStringList(3, u"Zoë </CLIENT>&|a&b@c.example|447700900123|Jo|Hi"_s);
        QTest::newRow("escapes and the code page")
            << Send(Message(number, "M\xFCller &amp; Co \x80", "&lt;b&gt; &quot;&apos;&amp;amp; &#163;5\r\n\xE9"))
            << LoggedOn(Verdict(1), 1) << QStringList{u"ann||447700900123|Müller & Co €|<b> \"'&amp; £5\r\né"_s};
        QTest::newRow("wrong password") << Send(Message(number), LogOn("ann", "Secret")) << kWrongPassword
                                        << QStringList();
        QTest::newRow("another's password") << LogOn("ann", "<PW>:\x80") + "</SESSION>\r\n"
                                            << kWrongPassword << QStringList();
        for (const QByteArray bad : {"", "+447700900123", "07700900123", "447", "44770x", "4477009001234567"})
            QTest::addRow("number \"%s\"", bad.constData())
                << Send(Message(bad)) << LoggedOn(Verdict(0, "Invalid number"), 2) << QStringList();
        QTest::newRow("text of 161") << Send(Message(number, "Jo", QByteArray(160, 'a') + "&amp;"))
                                     << LoggedOn(Verdict(0, "Text longer than 160 characters"), 2) << QStringList();
    }
    void AnswersDocuments()
    {
        QFETCH(QByteArray, document);
        Fixture f;
        const auto answer = f.gateway.AnswerPost(Form(document));
        QTEST(answer.body, "reply");
        QCOMPARE(answer.httpStatus, 200);
        QTEST(f.outbox, "outbox");
    }

    void RefusesWhatItCannotRead_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("reason");

        const auto addRow = [](const char *name, const QByteArray &body, const QByteArray &reason) {
            QTest::newRow(name) << body << reason;
        };
        addRow("empty", "", "The request has no XML field");
        addRow("cut escape", "XML=%3C%3", "Byte 8 of the request: incomplete percent escape");
        addRow("no hexadecimal", "XML=%3G", "Byte 5 of the request: incomplete percent escape");
        addRow("second field", "XML=%3C&A=1", "Byte 8 of the request: character that must be escaped");

        const QByteArray good = Send(Message("447700900123"));
        const auto addDocument = [&addRow](const char *name, const QByteArray &document, const QByteArray &place) {
            addRow(name, Form(document), "Line " + place);
        };
        const auto addChange = [&](const char *name, const char *from, const char *to, const QByteArray &place) {
            addDocument(name, QByteArray(good).replace(from, to), place);
        };
        addDocument("empty document", "", "1 of the document: expected ?xml version=\"1.0\"?");
        addChange("line ends", "\r\n", "\n", "1 of the document: expected ?xml version=\"1.0\"?");
        addChange("no blank after CLIENT", "</CLIENT> ", "</CLIENT>", "3 of the document: expected CLIENT");
        addChange("tags that overlap", "<PW>secret</PW>", "<PW></P", "4 of the document: expected PW");
        addChange("version", "23000138", "2.3.138", "5 of the document: expected a number");
        addChange("operation", "<OP>1", "<OP>2", "8 of the document: expected OP");
        addChange("bare ampersand", "Hi", "A & B", "9 of the document: expected an entity after every ampersand");
        addChange("bare tag", "Hi", "A <b> B", "9 of the document: expected /TEXT");
        addDocument("cut after a good message", good.first(good.indexOf("   </MSGLST>")),
                    "13 of the document: expected /MSGLST");
        addDocument("cut before the last line end", good.chopped(2), "14 of the document: expected /SESSION");
        addDocument("something behind", good + " ", "15 of the document: expected its end");
    }
    void RefusesWhatItCannotRead()
    {
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, reason);
        Fixture f;
        const auto answer = f.gateway.AnswerPost(body);
        QCOMPARE(answer.body, "<LOGON>FAIL</LOGON><ERR>10</ERR><REASON>" + reason + "</REASON>\r\n");
        QCOMPARE(answer.httpStatus, 400);
        QCOMPARE(f.outbox, QStringList());
        QCOMPARE(f.gateway.AnswerPost(Form(LogOn() + "</SESSION>\r\n")).body, LoggedOn({}, 2));
    }

    void NumbersOfMessagesFitSixteenBits()
    {
        Gateway gateway({{u"ann"_s, u"secret"_s, 40000}}, {}, [](const QJsonObject &) { return true; });
        const QByteArray reply = gateway.AnswerPost(Form(Send(Message("447700900123").repeated(32768)))).body;
        QVERIFY(reply.endsWith(Verdict(32767) + Verdict(1) + "<BAL>7232</BAL>\r\n"));
    }

    void ProgramServesClients()
    {
        const QTemporaryDir folder;
        const QString outboxPath = folder.filePath(u"outbox"_s);
        QProcess program;
        program.start(QStringLiteral(GATEWAY_PROGRAM), {u"--port"_s, u"0"_s, u"--account"_s, u"ann:se:cret:60"_s,
                                                        u"--fail"_s, u"447700900999"_s, u"--outbox"_s, outboxPath});
        QTRY_VERIFY_WITH_TIMEOUT(program.canReadLine(), 10000);
        const QByteArray line = program.readLine();
        QVERIFY2(line.startsWith("Listening on http://127.0.0.1:"), line.constData());
        const quint16 port = line.trimmed().split(':').constLast().toUShort();

        const auto ask = [port](const QByteArray &request) {
            QTcpSocket socket;
            socket.connectToHost(u"127.0.0.1"_s, port);
            socket.write(request);
            QByteArray reply;
            while (socket.waitForReadyRead(10000))
                reply += socket.readAll();
            return reply;
        };
        // More than the HTTP library takes for a form by itself.
        const QByteArray form = Form(
            Send(Message("447700900123", "Zo\xEB").repeated(50) + Message("447700900999"), LogOn("ann", "se:cret")));
        QVERIFY(form.size() > 8192);
        const QByteArray reply = ask("POST /brevio/gateway/gateway.php HTTP/1.1\r\nHost: h\r\n"
                                     "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                                     QByteArray::number(form.size()) + "\r\n\r\n" + form);
        QVERIFY2(reply.startsWith("HTTP/1.1 200 OK\r\n"), reply.constData());
        QVERIFY(reply.endsWith(Verdict(50) + Verdict(0, "The number cannot be reached") + "<BAL>10</BAL>\r\n"));
        const QByteArray page =
            ask("GET /brevio/order.html?username=%3Cb%3E&email=%E9+%26 HTTP/1.1\r\nHost: h\r\n\r\n");
        QVERIFY2(page.contains("User name: &lt;b&gt;<") && page.contains("address: é &amp;<"), page.constData());
        QVERIFY(ask("GET /brevio/gateway HTTP/1.1\r\nHost: h\r\n\r\n").startsWith("HTTP/1.1 404 "));

        QFile outbox(outboxPath);
        QVERIFY(outbox.open(QIODevice::ReadOnly));
        const QJsonObject first = QJsonDocument::fromJson(outbox.readLine()).object();
        QCOMPARE(first, (QJsonObject{{u"user"_s, u"ann"_s},
                                     {u"reply"_s, QString()},
                                     {u"version"_s, 23000138},
                                     {u"id"_s, 1},
                                     {u"number"_s, u"447700900123"_s},
                                     {u"name"_s, u"Zoë"_s},
                                     {u"text"_s, u"Hi"_s}}));
        QCOMPARE(outbox.readAll().count('\n'), 49);

        QProcess second;
        second.start(QStringLiteral(GATEWAY_PROGRAM), {u"--port"_s, QString::number(port)});
        QVERIFY(second.waitForFinished(10000));
        QCOMPARE(second.exitCode(), 1);

        program.terminate();
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.readAll(), QByteArray());
    }

    void ProgramRefusesBadOptions_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("port") << QStringList{u"--port"_s, u"65536"_s};
        QTest::newRow("account without balance") << QStringList{u"--account"_s, u"ann:secret"_s};
        QTest::newRow("balance") << QStringList{u"--account"_s, u"ann:secret:99999999999"_s};
        QTest::newRow("user twice") << QStringList{u"--account"_s, u"ann:a:1"_s, u"--account"_s, u"ann:b:1"_s};
        QTest::newRow("plus sign") << QStringList{u"--fail"_s, u"+447700900999"_s};
        QTest::newRow("outbox in no folder") << QStringList{u"--outbox"_s, u"/no/such/folder/outbox"_s};
        QTest::newRow("unknown option") << QStringList{u"--accounts"_s};
        QTest::newRow("stray word") << QStringList{u"ann:secret:5"_s};
    }
    void ProgramRefusesBadOptions()
    {
        QFETCH(QStringList, options);
        QProcess program;
        program.start(QStringLiteral(GATEWAY_PROGRAM), options);
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitCode(), 2);
        QVERIFY(program.readAllStandardError().startsWith("brevio-gateway: "));
        QCOMPARE(program.readAllStandardOutput(), QByteArray());
    }
};

QTEST_GUILESS_MAIN(TestGateway)
#include "test_gateway.moc"
