#include "LxMessage.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestMessage final : public QObject
{
    Q_OBJECT

private slots:
    void KeepsItsCharactersAlone()
    {
        QString all;
        for (char16_t c = 0; c < 0xD800; ++c)
            all += QChar(c);
        // In the order of their numbers.
        const auto allowed = u"\n\r !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                             u"abcdefghijklmnopqrstuvwxyz£¤¥§¿ÄÅÆÉÑÖØÜßàäåæçèéìñòöøùü"_s;
        LxMessage message;
        message.SetText(all);
        QCOMPARE(message.Text(), allowed);
        QCOMPARE(LxMessage::RemoveInvalidChars(all).invalidChars.size(), all.size() - allowed.size());
        // The two smileys share a half; a half alone is reported too.
        const LxMessage::CleanedText cleaned = LxMessage::RemoveInvalidChars(QChar(0xDE01) + u"€a😀€b😀c😁_"_s);
        QCOMPARE(cleaned.text, u"abc"_s);
        QCOMPARE(cleaned.invalidChars, QChar(0xDE01) + u"€😀😁_"_s);
    }

    void CutsParts()
    {
        const QString text = u"0123456789"_s.repeated(50);
        for (const auto &[length, lengths] : {std::pair(0, "0"),
                                              {160, "160"},
                                              {161, "160 5"},
                                              {316, "160 160"},
                                              {317, "160 160 5"},
                                              {472, "160 160 160"},
                                              {473, "160 160 160 5"}}) {
            LxMessage message;
            message.SetText(text.first(length));
            QStringList got;
            for (const QString &part : message.MessageParts())
                got += QString::number(part.size());
            QCOMPARE(got.join(u' '), QLatin1StringView(lengths));
            QCOMPARE(message.MessageParts().join(u'|').remove(u"..|.."_s), text.first(length));
        }
    }
};

QTEST_GUILESS_MAIN(TestMessage)
#include "test_message.moc"
