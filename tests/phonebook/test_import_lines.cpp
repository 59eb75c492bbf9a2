#include "Fakes.h"
#include "LxPhoneBook.h"
#include "Raised.h"
#include "SampleCountries.h"
#include "TextFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The bytes behind the mark of UTF-8.
QByteArray Marked(const char *bytes)
{
    return TextFile::kUtf8Mark + QByteArray(bytes);
}

} // namespace

class TestImportLines final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;

private slots:
    /// The contacts of a file's bytes, each as "line name", and how many lines hold none.
    void countsTheLinesOfTheFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("read");
        QTest::newRow("every line end") << "A,4411\rB,4421\n\rC,4431\r\nD,4441\r\r\nE,4451\r"_ba
                                        << u"1 A 2 B 4 C 5 D 7 E | 0"_s;
        QTest::newRow("what is no contact counts as a line")
            << "Name,Mobile\r\n\r\n# B,4421\r\n\t\r\n\"#\"\r\nA,4411\r\nB\r\nB,4421"_ba << u"6 A 8 B | 2"_s;
        QTest::newRow("cut in a name") << "Zo\xC3\xAB,4411\nB,4421\nC,4431,353,Zo\xC3"_ba << u"1 Zoë 2 B | 1"_s;
        QTest::newRow("cut behind the mark") << Marked("A,4411\nB,4421,Zo\xF0\x9F\x98") << u"1 A | 1"_s;
        QTest::newRow("cut in UTF-16") << "\xFE\xFF\0A\0,\0004\0004\0001\0001\0\n\0B\0,\0004\0004\0002\0001\0"_ba
                                       << u"1 A | 1"_s;
        QTest::newRow("nothing but a cut character") << "Zo\xC3\xAB,4411\n\xE2\x82"_ba << u"1 Zoë | 1"_s;
        QTest::newRow("cut in a comment") << "Zo\xC3\xAB,4411\n# Zo\xC3"_ba << u"1 Zoë | 0"_s;
        QTest::newRow("cut but plain so far") << "A,4411\nZo\xEB"_ba << u"1 A | 1"_s;
        QTest::newRow("not UTF-8") << "Zo\xC3\xAB,4411\n\xEBZ,4421"_ba << u"1 ZoÃ« 2 ëZ | 0"_s;
        QTest::newRow("damaged elsewhere") << Marked("A\xC3,4411\nB,4421,Zo\xC3\n") << u"1 A\uFFFD 2 B | 0"_s;
    }
    void countsTheLinesOfTheFile()
    {
        QFETCH(const QByteArray, bytes);
        LxPhoneBook book(m_countries, m_clock);
        const LxPhoneBook::ParsedLines lines = book.ParseContacts(TextFile::DecodeForeign(bytes));
        QCOMPARE(lines.lineOf.size(), static_cast<size_t>(book.AllContacts().Count()));
        QStringList read;
        for (const LxContactPtr &contact : book.AllContacts())
            read += QString::number(lines.lineOf[static_cast<size_t>(read.size())]) + u' ' + contact->Name();
        QTEST(read.join(u' ') + u" | "_s + QString::number(lines.passedOver), "read");
    }

    void aStoppedImportLeavesTheLineThatStoppedIt()
    {
        LxPhoneBook scratch(m_countries, m_clock);
        const auto lines = scratch.ParseContacts(u"# Two\r\nA,+4412\r\n\r\nB,+4413\r\nC,07700900123\r\nD,+4414"_s);
        LxPhoneBook book(m_countries, m_clock);
        LxGroup &group = book.Groups().CreateGroup(u"Imported"_s);
        QCOMPARE(Raised([&] { book.Import(scratch.AllContacts().ContactList(), &group); }),
                 u"-2147221503 Corvane.Contact: Invalid country 0"_s);
        QCOMPARE(lines.lineOf[static_cast<size_t>(group.Count())], 5);
    }
};

QTEST_GUILESS_MAIN(TestImportLines)
#include "test_import_lines.moc"
