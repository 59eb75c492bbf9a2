#include "CsvLine.h"
#include "Encodings.h"
#include "TextFile.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;

class TestEncodings final : public QObject
{
    Q_OBJECT

private slots:
    void EveryByteSurvives()
    {
        QByteArray bytes;
        for (int byte = 0; byte < 256; ++byte)
            bytes += static_cast<char>(byte);
        const QString text = TextFile::Decode(bytes);
        QCOMPARE(text.first(128), QString::fromLatin1(bytes.first(128)));
        QCOMPARE(text.sliced(128, 32), u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ"_s);
        QCOMPARE(text.sliced(160), QString::fromLatin1(bytes.sliced(160)));
        QCOMPARE(TextFile::Encode(text), bytes);
    }

    void OtherTextSurvivesAsUtf8()
    {
        // Outside the code page or the basic plane, a control that the code page lacks, what looks like the mark.
        for (const auto &text : {u"Łé"_s, u"😀"_s, u"\u0080"_s, u"ï»¿"_s, u"\uFEFF"_s}) {
            const QByteArray bytes = TextFile::Encode(text);
            QCOMPARE(bytes, "\xEF\xBB\xBF" + text.toUtf8());
            QCOMPARE(TextFile::Decode(bytes), text);
        }
    }

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
                      {u"Jo 'Ace,Smith',44", u"[Jo ][Smith][44]"},
                      {u"''''", u"[']"},
                      {u" 'a',b ", u"[ ][b ]"}},
                     split);
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
