#include "TextFile.h"
#include "TextTable.h"

using namespace Qt::StringLiterals;

class TestTextFile final : public QObject
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

    void TextSurvives_data()
    {
        const auto mark = "\xEF\xBB\xBF"_ba;
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << u""_s << ""_ba;
        QTest::newRow("in the code page") << u"Café €\r\n"_s << "Caf\xE9 \x80\r\n"_ba;
        QTest::newRow("a control that the code page lacks") << u"\u0080"_s << mark + "\xC2\x80";
        QTest::newRow("outside the code page") << u"Łé"_s << mark + "\xC5\x81\xC3\xA9";
        QTest::newRow("outside the basic plane") << u"😀"_s << mark + "\xF0\x9F\x98\x80";
        QTest::newRow("begins like the mark") << u"ï»¿"_s << mark + "\xC3\xAF\xC2\xBB\xC2\xBF";
        QTest::newRow("begins with the mark's character") << u"\uFEFF"_s << mark + mark;
    }
    void TextSurvives()
    {
        QFETCH(const QString, text);
        QFETCH(const QByteArray, bytes);
        QCOMPARE(TextFile::Encode(text), bytes);
        QCOMPARE(TextFile::Decode(bytes), text);
    }

    void SplitsLines_data()
    {
        AddTextTable({{u"", u""},
                      {u"a", u"[a]"},
                      {u"a\r\nb\nc\r\n", u"[a][b][c]"},
                      {u"\n\r\na", u"[][][a]"},
                      {u"a\rb\nc\r", u"[a\rb][c\r]"},
                      {u"a\r\r\n", u"[a\r]"}});
    }
    void SplitsLines()
    {
        QFETCH(const QString, in);
        QString lines;
        TextFile::ForEachLine(in, [&lines](QStringView line) { lines += u'[' + line.toString() + u']'; });
        QTEST(lines, "out");
    }

    void MakesOneLine_data()
    {
        AddTextTable({{u"a\r\nb", u"a b"}, {u"a\n\rb", u"a  b"}, {u"a\u0085b\u2028c\u2029d\re", u"a b c d e"}});
    }
    void MakesOneLine()
    {
        QFETCH(const QString, in);
        QTEST(TextFile::AsOneLine(in), "out");
    }
};

QTEST_GUILESS_MAIN(TestTextFile)
#include "test_text_file.moc"
