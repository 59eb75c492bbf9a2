#include "EmailAddresses.h"

#include <QTest>

using namespace Qt::StringLiterals;
using EmailAddresses::IsValidEmailAddress;

class TestEmailAddresses final : public QObject
{
    Q_OBJECT

private slots:
    void Checks()
    {
        for (const auto &address : {u"ann@a.example"_s, u"ANN.O'Hara_x-1@A-1.EXAMPLE"_s, u"@a.b"_s, u"a@b..c"_s,
                                    u"..@b.c"_s, u"a@.b.c"_s, u"a@b'.c"_s})
            QVERIFY2(IsValidEmailAddress(address), qPrintable(address));
        for (const auto &address :
             {u""_s, u"@."_s, u"a@b"_s, u"a.b@c"_s, u"a@.b"_s, u"a@b."_s, u"a@b.c."_s, u"a.b.c"_s, u"a@@b.c"_s,
              u"a@b@c.d"_s, u"a b@c.d"_s, u"a+b@c.d"_s, u"a&b@c.d"_s, u"é@c.d"_s, u"\u212A@c.d"_s, u"a@b.c\n"_s})
            QVERIFY2(!IsValidEmailAddress(address), qPrintable(address));
    }
};

QTEST_GUILESS_MAIN(TestEmailAddresses)
#include "test_email_addresses.moc"
