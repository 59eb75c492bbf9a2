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

    void OtherTextSurvivesAsUtf8()
    {
        // Outside the code page or the basic plane, a control that the code page lacks, what looks like the mark.
        for (const auto &text : {u"Łé"_s, u"😀"_s, u"\u0080"_s, u"ï»¿"_s, u"\uFEFF"_s}) {
            const QByteArray bytes = TextFile::Encode(text);
            QCOMPARE(bytes, "\xEF\xBB\xBF" + text.toUtf8());
            QCOMPARE(TextFile::Decode(bytes), text);
        }
    }

    void MakesOneLine()
    {
        CompareTable({{u"a\r\nb", u"a b"}, {u"a\n\rb", u"a  b"}, {u"a\u0085b\u2028c\u2029d\re", u"a b c d e"}},
                     TextFile::AsOneLine);
    }
};

QTEST_GUILESS_MAIN(TestTextFile)
#include "test_text_file.moc"
