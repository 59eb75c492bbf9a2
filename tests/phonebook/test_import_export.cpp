#include "Fakes.h"
#include "Files.h"
#include "Printed.h"
#include "Raised.h"
#include "Rows.h"
#include "SampleCountries.h"
#include "TextFile.h"
#include "Version.h"

#include <QLocale>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

static const QByteArray kMark = TextFile::kUtf8Mark;

class TestImportExport final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;
    const QTemporaryDir m_folder;
    const QString m_file = m_folder.filePath(u"out.csv"_s);

    [[nodiscard]] LxPhoneBook Book() const { return LxPhoneBook(m_countries, m_clock); }

    /// The bytes of an export of one British contact.
    QByteArray Exported(const QString &name, const QString &mobile = u"7700900123"_s) const
    {
        LxPhoneBook book = Book();
        const LxContactPtr contact = book.CreateContact();
        contact->SetName(name);
        contact->SetCountryCode(44);
        contact->SetUserMobile(mobile);
        book.AllContacts().Add(contact);
        book.Export(m_file, book.AllContacts());
        return ReadBytes(m_file);
    }

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom)); }

    TABLE_TEST(fieldsAreRecognisedByTheirContent, (const QString &text, const QString &contacts),
               u"Ann,07700900123 -> Ann 0 07700900123 []", u"07700900123\tAnn -> Ann 0 07700900123 []",
               u" \"Ann\" , \"07700 900-123\" ,,\t -> Ann 0 07700 900-123 []",
               u"Ann;x,44,07700 900123,Friends;Work;Friends,more -> Ann;x 44 07700 900123 [Friends;Work];Friends;Work",
               u"+447700900123,Bob,353 -> Bob 44 7700900123 []", u"447700900123,Bob -> Bob 44 7700900123 []",
               u"\t07700900123 -> 07700900123 0 07700900123 []",
               u"\"Lee, Ann\",07700900123 -> Lee 0 07700900123 [Ann];Ann",
               u"999,353,44,0851234567 -> 44 353 0851234567 []",
               u"07700900123,07700900124 -> 07700900124 0 07700900123 []", u"Ann", u"Ann,Smith", u"Ann;44;07700900123",
               u"Ann,+0123", u"Ann,+9991234567", u"Ann,0077", u"Ann,+44 00 123456", u"\"Jim\",1876,\"555 1234\"",
               u"a123456789b123456789c123456789d123456789e123456789f,1234 -> "
               u"a123456789b123456789c123456789d123456789e123456789 1 234 []",
               u"")
    {
        LxPhoneBook book = Book();
        book.ParseContacts(text);
        QCOMPARE(Printed(book).remove(u" | Everyone"_s), contacts);
    }

    // The bytes of a file; its contacts, each as "line name", and how many lines hold none.
    TABLE_TEST(linesOfTheFileAreCounted, (const QByteArray &bytes, const QString &read),
               {"every line end", "A,4411\rB,4421\n\rC,4431\r\nD,4441\r\r\nE,4451\r", u"1 A 2 B 4 C 5 D 7 E | 0"_s},
               {"what is no contact counts as a line",
                "Name,Mobile\r\n\r\n# B,4421\r\n\t\r\n\"#\"\r\nA,4411\r\nB\r\nB,4421", u"6 A 8 B | 2"_s},
               {"UTF-8", "Zo\xC3\xAB\xE2\x82\xAC,4411", u"1 Zoë€ | 0"_s},
               {"UTF-16, low byte first", "\xFF\xFE\xEB\0\xAC\x20,\0001\0002\0003\0004\0"_ba, u"1 ë€ | 0"_s},
               {"the mark alone", kMark, u" | 0"_s},
               {"cut in a name", "Zo\xC3\xAB,4411\nB,4421\nC,4431,353,Zo\xC3", u"1 Zoë 2 B | 1"_s},
               {"cut in UTF-16", "\xFE\xFF\0A\0,\0004\0004\0001\0001\0\n\0B\0,\0004\0004\0002\0001\0"_ba, u"1 A | 1"_s},
               {"not UTF-8", "Zo\xC3\xAB,4411\n\xEBZ\x80,4421", u"1 ZoÃ« 2 ëZ€ | 0"_s},
               {"damaged elsewhere", kMark + "A\xC3,4411\nB,4421,Zo\xC3\n", u"1 A\uFFFD 2 B | 0"_s})
    {
        LxPhoneBook book = Book();
        const LxPhoneBook::ParsedLines lines = book.ParseContacts(TextFile::DecodeForeign(bytes));
        QCOMPARE(lines.lineOf.size(), static_cast<size_t>(book.AllContacts().Count()));
        QStringList got;
        for (const LxContactPtr &contact : book.AllContacts())
            got += QString::number(lines.lineOf[static_cast<size_t>(got.size())]) + u' ' + contact->Name();
        QCOMPARE(got.join(u' ') + u" | "_s + QString::number(lines.passedOver), read);
    }

    void exportsAreMadeForSpreadsheets()
    {
        const QString version = u"%1.%2"_s.arg(ProgramVersion().major).arg(ProgramVersion().minor);
        const QByteArray bytes = Exported(u"Zoë \"A\"\r\nB"_s, u"07700 900-123"_s);
        QVERIFY(
            bytes.startsWith("\"# 1 contacts exported from Brevio v" + version.toLatin1() + " on 15/11/2004\"\r\n"));
        QVERIFY(bytes.endsWith("\"# Name\",\"Mobile\"\r\n\"Zo\xEB \"\"A\"\" B\",\"+447700900123\"\r\n"));
        LxPhoneBook book = Book();
        book.OpenPhoneBook(m_folder.filePath(u"ann.kpb"_s));
        QCOMPARE(Raised([&] { book.Export(book.FileName(), book.AllContacts()); }),
                 u"5 Corvane.PhoneBook: This file is the phone book itself"_s);
        QCOMPARE(ReadBytes(book.FileName()), "");
    }

    // By design quotes vanish and a comma ends the name.
    TABLE_TEST(anExportReadsBack, (const QString &name, const QString &contacts), u"Zoë -> Zoë +447700900123",
               u"Ã© -> Ã© +447700900123", u"Я 😀 -> Я 😀 +447700900123", u" Ann\r\nLee  -> Ann Lee +447700900123",
               u"Ann \"A\", Lee -> Ann A +447700900123", u" -> +447700900123 +447700900123")
    {
        LxPhoneBook book = Book();
        book.ParseContacts(TextFile::DecodeForeign(Exported(name)));
        QStringList read;
        for (const LxContactPtr &contact : book.AllContacts())
            read += contact->Name() + u' ' + contact->InternationalMobile();
        QCOMPARE(read.join(u'|'), contacts);
    }
};

QTEST_GUILESS_MAIN(TestImportExport)
#include "test_import_export.moc"
