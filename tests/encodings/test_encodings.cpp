#include "Encodings.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;

class TestEncodings final : public QObject
{
    Q_OBJECT

private slots:
    void SplitsLines_data()
    {
        // Apostrophes stand for double quotes.
        AddTextTable({{u"", u"[]"},
                      {u"x,,z", u"[x][][z]"},
                      {u"x,", u"[x][]"},
                      {u",x", u"[][x]"},
                      {u"'Smith, Jo','44','0123'", u"[Smith, Jo][44][0123]"},
                      {u"'Smith, Jo',44,'0123", u"[Smith, Jo][44][0123]"},
                      {u"'x''", u"[x']"},
                      {u"'Smith'Jo,44,'0123'", u"[Smith][44][0123]"},
                      {u"'Smith' 'Jo, x',44", u"[Smith][ x][44]"},
                      {u"'Jo ''Ace'' Smith',44", u"[Jo 'Ace' Smith][44]"},
                      {u"Jo 'Ace',44", u"[Jo ][44]"},
                      {u"Jo 'Ace,Smith',44", u"[Jo ][Smith][44]"},
                      {u"Jo''Ace,44", u"[Jo][44]"},
                      {u"'',x", u"[][x]"},
                      {u"''''", u"[']"},
                      {u" a ,b ", u"[ a ][b ]"},
                      {u" 'a',b", u"[ ][b]"},
                      {u"a\tb;c:d", u"[a\tb;c:d]"}});
    }
    void SplitsLines()
    {
        QFETCH(QString, in);
        QString fields;
        for (const QString &field : Encodings::ParseCSVLine(in.replace(u'\'', u'"')))
            fields += u'[' + field + u']';
        QTEST(fields.replace(u'"', u'\''), "out");
    }

    void EscapesForXml_data()
    {
        AddTextTable({{u"5 > 3 & \"x\" 'y' <£2", u"5 &gt; 3 &amp; &quot;x&quot; &apos;y&apos; &lt;&#163;2"},
                      {u"&lt;&#163;", u"&amp;lt;&amp;#163;"},
                      {u"é€😀\r\n\t;#", u"é€😀\r\n\t;#"}});
    }
    void EscapesForXml()
    {
        QFETCH(const QString, in);
        QTEST(Encodings::XMLEncode(in), "out");
    }

    void EscapesForForms_data()
    {
        AddTextTable({{u"", u""},
                      {u"a b", u"a%20b"},
                      {u"/09:@AZ[`az{", u"%2F09%3A%40AZ%5B%60az%7B"},
                      {u"A-z._~<?", u"A%2Dz%2E%5F%7E%3C%3F"},
                      {u"\r\n\x01", u"%0D%0A%01"},
                      {u"£€é\u0081ÿ", u"%A3%80%E9%81%FF"},
                      {u"Ł\u0080", u"%3F%3F"},
                      {u"a😀b😀", u"a%3Fb%3F"}});
    }
    void EscapesForForms()
    {
        QFETCH(const QString, in);
        QTEST(QString::fromLatin1(Encodings::URLEncode(in, false)), "out");
    }

    void EscapesSpacesAndHalfPairs()
    {
        QCOMPARE(Encodings::URLEncode(u"a b+", true), "a+b%2B");
        constexpr char16_t kHalves[] = {0xD83D, u'a', 0xDE00, 0xD83D};
        QCOMPARE(Encodings::URLEncode(QStringView(kHalves, 4), false), "%3Fa%3F%3F");
    }
};

QTEST_GUILESS_MAIN(TestEncodings)
#include "test_encodings.moc"
