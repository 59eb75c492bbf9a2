#include "CsvLine.h"
#include "Encodings.h"
#include "Rows.h"
#include "TextFile.h"

using namespace Qt::StringLiterals;

class TestEncodings final : public QObject
{
    Q_OBJECT

private slots:
    void everyByteSurvives()
    {
        QByteArray bytes;
        for (int byte = 0; byte < 256; ++byte)
            bytes += static_cast<char>(byte);
        const QString text = TextFile::Decode(bytes);
        QCOMPARE(text.first(128), QString::fromLatin1(bytes.first(128)));
        QCOMPARE(text.sliced(128, 32), u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ"_s);
        QCOMPARE(text.sliced(160), QString::fromLatin1(bytes.sliced(160)));
        QCOMPARE(TextFile::Encode(text), bytes);
        QCOMPARE(TextFile::Decode("\x80"), u"€"_s);
    }

    TABLE_TEST(otherTextSurvivesAsUtf8, (const QString &text), {"outside the code page, behind a mark", u"\uFEFFŁé😀"_s},
               {"a control that the code page lacks", u"\u0080"_s}, {"what looks like the mark", u"ï»¿"_s})
    {
        const QByteArray bytes = TextFile::Encode(text);
        QCOMPARE(bytes, "\xEF\xBB\xBF" + text.toUtf8());
        QCOMPARE(TextFile::Decode(bytes), text);
    }

    void linesAreTheSameHoweverLongTheFile()
    {
        QByteArray bytes;
        for (int length = 0; length < 4100; length += 41)
            bytes += QByteArray(length, 'x') + (length % 2 == 0 ? "\x80\r\n" : "\n") + "\r\n";
        QString lines;
        TextFile::ForEachUtf8Line(bytes, [&](QUtf8StringView line) { lines += line.toString() + u'\n'; });
        QCOMPARE(lines, TextFile::Decode(bytes).remove(u'\r'));
    }

    // Apostrophes stand for double quotes.
    TABLE_TEST(linesAreSplitAtCommasOutsideQuotes, (const QString &line, const QString &fields), u" -> []",
               u"x,,z, -> [x][][z][]", u"'Smith, Jo',44,'0123 -> [Smith, Jo][44][0123]", u"'x'' -> [x']",
               u"'Smith' 'Jo, x',44 -> [Smith][ x][44]", u"Jo 'Ace,Smith',44 -> [Jo ][Smith][44]", u"'''' -> [']",
               u"'a''b','''c','d -> [a'b]['c][d]", u" 'a',b  -> [ ][b ]")
    {
        QString got;
        for (const QString &field : Encodings::ParseCSVLine(QString(line).replace(u'\'', u'"')))
            got += u'[' + field + u']';
        QCOMPARE(got.replace(u'"', u'\''), fields);
    }

    TABLE_TEST(formsEscapeAllButLettersAndDigits, (const QString &text, const QString &escaped),
               u"/09:@AZ[`az{ -> %2F09%3A%40AZ%5B%60az%7B", u"A-z._~ <? -> A%2Dz%2E%5F%7E%20%3C%3F",
               u"\r\n\x01 -> %0D%0A%01", u"£€é\u0081ÿŁ\u0080 -> %A3%80%E9%81%FF%3F%3F", u"a😀b😀 -> a%3Fb%3F")
    {
        QCOMPARE(Encodings::URLEncode(text, false), escaped.toLatin1());
        QCOMPARE(Encodings::URLEncode(text, true), escaped.toLatin1().replace("%20", "+"));
    }
};

QTEST_GUILESS_MAIN(TestEncodings)
#include "test_encodings.moc"
