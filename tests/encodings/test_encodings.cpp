#include "Encodings.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;

class TestEncodings final : public QObject
{
    Q_OBJECT

private slots:
    void SplitsLines()
    {
        // Apostrophes stand for double quotes.
        const auto split = [](QString line) {
            QString fields;
            for (const QString &field : Encodings::ParseCSVLine(line.replace(u'\'', u'"')))
                fields += u'[' + field + u']';
            return fields.replace(u'"', u'\'');
        };
        CompareTable({{u"", u"[]"},
                      {u"x,,z,", u"[x][][z][]"},
                      {u"'Smith, Jo',44,'0123", u"[Smith, Jo][44][0123]"},
                      {u"'x''", u"[x']"},
                      {u"'Smith' 'Jo, x',44", u"[Smith][ x][44]"},
                      {u"'Jo ''Ace'' Smith',44", u"[Jo 'Ace' Smith][44]"},
                      {u"Jo 'Ace,Smith',44", u"[Jo ][Smith][44]"},
                      {u"'',x", u"[][x]"},
                      {u"''''", u"[']"},
                      {u" 'a',b ", u"[ ][b ]"}},
                     split);
    }

    void EscapesForXml()
    {
        CompareTable({{u"5 > 3 & \"x\" 'y' <£2", u"5 &gt; 3 &amp; &quot;x&quot; &apos;y&apos; &lt;&#163;2"},
                      {u"&lt;&#163;", u"&amp;lt;&amp;#163;"},
                      {u"é€😀\r\n\t;#", u"é€😀\r\n\t;#"}},
                     Encodings::XMLEncode);
    }

    void EscapesForForms()
    {
        CompareTable({{u"/09:@AZ[`az{", u"%2F09%3A%40AZ%5B%60az%7B"},
                      {u"A-z._~ <?", u"A%2Dz%2E%5F%7E%20%3C%3F"},
                      {u"\r\n\x01", u"%0D%0A%01"},
                      {u"£€é\u0081ÿŁ\u0080", u"%A3%80%E9%81%FF%3F%3F"},
                      {u"a😀b😀", u"a%3Fb%3F"}},
                     [](const QString &text) { return QString::fromLatin1(Encodings::URLEncode(text, false)); });
        QCOMPARE(Encodings::URLEncode(u"a b+", true), "a+b%2B");
    }
};

QTEST_GUILESS_MAIN(TestEncodings)
#include "test_encodings.moc"
