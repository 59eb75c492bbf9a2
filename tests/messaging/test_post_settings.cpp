#include "PostUrl.h"
#include "ProxyServer.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;

class TestPostSettings final : public QObject
{
    Q_OBJECT

private slots:
    void urlIsSplit()
    {
        const auto split = [](const QString &text) {
            const auto url = ParsePostUrl(text, u"remembered"_s);
            return url ? u"%1 %2 %3 %4"_s.arg(url->host).arg(url->port).arg(url->path, url->document) : u""_s;
        };
        CompareTable({{u"http://example.test/a/b.php", u"example.test 80 /a/b.php b.php"},
                      {u"  HTTP://example.test  ", u"example.test 80 / /"},
                      {u"h:65535/a/?q=1", u"h 65535 /a/?q=1 /"},
                      {u"h/a?x=/c?d", u"h 80 /a?x=/c?d c"},
                      {u":81/p", u"remembered 81 /p p"}},
                     split);
        for (const auto *url : {"ftp://x/y", "https://x/", "h/a?back=http://x", "http://x:abc/", "x:0", "x:65536",
                                "x:-1", "x:80:80", "user:word@x/"})
            QCOMPARE(split(QString::fromLatin1(url)), u""_s);
    }

    void proxySettingIsRead()
    {
        const auto read = [](const QString &text) {
            const auto proxy = ParseProxyServer(text);
            const bool isUsable = proxy && proxy->IsUsable();
            return isUsable ? proxy->host + u' ' + QString::number(proxy->port) : proxy ? u"unusable"_s : u""_s;
        };
        CompareTable({{u"ftp=p1:21;http=p2:3128", u"p2 3128"},
                      {u"HTTP=p4:1:2", u"p4 80"},
                      {u";http=; Http=p5:8 ;p6", u"p5 8"},
                      {u"http=[::1]:3128", u"[::1] 3128"},
                      {u"ftp=p1:21;socks=p2", u""}},
                     read);
        for (const auto *proxy : {"p8:abc", "p8:", "p8:65536", ":3128"})
            QCOMPARE(read(QString::fromLatin1(proxy)), u"unusable"_s);
    }
};

QTEST_GUILESS_MAIN(TestPostSettings)
#include "test_post_settings.moc"
