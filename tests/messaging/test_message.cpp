#include "LxMessage.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestMessage final : public QObject
{
    Q_OBJECT

private slots:
    void AllowsItsCharactersAlone()
    {
        QString allowed;
        QString all;
        for (char16_t c = 0; c < 0xD800; ++c) {
            all += QChar(c);
            if (LxMessage::IsAllowed(QChar(c)))
                allowed += QChar(c);
        }
        // In the order of their numbers.
        QCOMPARE(allowed, u"\n\r !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                          u"abcdefghijklmnopqrstuvwxyz£¤¥§¿ÄÅÆÉÑÖØÜßàäåæçèéìñòöøùü"_s);
        QCOMPARE(allowed.size(), 115);
        const LxMessage::CleanedText cleaned = LxMessage::RemoveInvalidChars(all);
        QCOMPARE(cleaned.text, allowed);
        QCOMPARE(cleaned.invalidChars.size(), all.size() - allowed.size());
    }

    void ReportsWhatItRemoves_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("kept");
        QTest::addColumn<QString>("invalid");
        QTest::newRow("order of first use") << u"Hi€_the€_re~"_s << u"Hithere"_s << u"€_~"_s;
        QTest::newRow("line break") << u"a\r\n\tb"_s << u"a\r\nb"_s << u"\t"_s;
        QTest::newRow("no-break space") << u"a\u00A0b"_s << u"ab"_s << u"\u00A0"_s;
        // The two share a half.
        QTest::newRow("outside the basic plane") << u"a😀b😁c😀"_s << u"abc"_s << u"😀😁"_s;
        const QString halves = QString(QChar(0xDE00)) + QChar(0xD83D);
        QTest::newRow("halves") << halves + u'a' + halves << u"a"_s << halves;
        QTest::newRow("nothing") << u""_s << u""_s << u""_s;
    }
    void ReportsWhatItRemoves()
    {
        QFETCH(const QString, text);
        const LxMessage::CleanedText cleaned = LxMessage::RemoveInvalidChars(text);
        QTEST(cleaned.text, "kept");
        QTEST(cleaned.invalidChars, "invalid");
        LxMessage message;
        message.SetText(text);
        QTEST(message.Text(), "kept");
    }

    void CutsParts_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QList<int>>("lengths");
        QTest::addRow("0") << 0 << QList{0};
        QTest::addRow("160") << 160 << QList{160};
        QTest::addRow("161") << 161 << QList{160, 5};
        QTest::addRow("316") << 316 << QList{160, 160};
        QTest::addRow("317") << 317 << QList{160, 160, 5};
        QTest::addRow("longest") << LxMessage::MaxLength << QList{160, 160, 160};
        QTest::addRow("longer") << 473 << QList{160, 160, 160, 5};
    }
    void CutsParts()
    {
        QFETCH(const int, length);
        QString text;
        while (text.size() < length)
            text += QChar(u'a' + static_cast<int>(text.size()) % 26);
        LxMessage message;
        message.SetText(text);
        const QStringList parts = message.MessageParts();
        QList<int> lengths;
        QString joined;
        for (const QString &part : parts) {
            lengths += static_cast<int>(part.size());
            joined += part;
        }
        QTEST(lengths, "lengths");
        QCOMPARE(joined.count(u'.'), 4 * (parts.size() - 1));
        QCOMPARE(joined.remove(u"...."_s), text);
    }
};

QTEST_GUILESS_MAIN(TestMessage)
#include "test_message.moc"
