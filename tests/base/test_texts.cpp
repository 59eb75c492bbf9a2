#include "Rows.h"
#include "ShortText.h"
#include "TextFile.h"
#include "TextWriter.h"

using namespace Qt::StringLiterals;

using Text = ShortText<30>;

class TestTexts final : public QObject
{
    Q_OBJECT

private slots:
    void shortTextsAreKeptWhateverTheirLength()
    {
        for (const QString &letter : {u"x"_s, u"é"_s, u"\n"_s, u"\uFEFF"_s}) {
            for (const int length : {0, 1, 15, 16, 29, 30, 31, 50, 300}) {
                const QString text = letter.repeated(length);
                Text kept(text);
                QCOMPARE(kept.ToString(), text);
                QCOMPARE(kept.IsPlain(), length == 0 || letter == u"x");
                QVERIFY(kept == Text(QUtf8StringView(text.toUtf8())));
                QVERIFY((kept == Text(QString(text + u'y'))) == false);
                for (const QString &other : {u""_s, u"short"_s, QString(40, u'o')}) {
                    Text copy{other};
                    copy = kept;
                    Text moved{other};
                    moved = Text(copy);
                    copy = other;
                    QCOMPARE(moved.ToString() + copy.ToString(), text + other);
                }
                kept = kept.Utf8().sliced(length / 2 * letter.toUtf8().size());
                QCOMPARE(kept.ToString(), text.sliced(length / 2));
            }
        }
    }

    // What needs the longest way is written as by the shortest, in either encoding.
    TABLE_TEST(anyTextIsOneLineInTheFile, (const QString &before), {"Windows-1252", u"a"_s}, {"UTF-8", u"Я"_s})
    {
        for (char16_t unit = 1; unit < 0x2100; ++unit) {
            for (const QString &end : {u""_s, u"\n"_s + QChar(unit)}) {
                const QString text = QString(33, u'x') + QChar(unit) + end;
                TextWriter quick(1);
                quick.Append(before);
                quick.AppendAsOneLine(Text(text));
                QCOMPARE(quick.Take(), TextFile::Encode(before + TextFile::AsOneLine(text)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestTexts)
#include "test_texts.moc"
