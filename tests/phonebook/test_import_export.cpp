#include "Fakes.h"
#include "Files.h"
#include "Printed.h"
#include "Raised.h"
#include "SampleCountries.h"
#include "TextFile.h"
#include "TextTable.h"
#include "Version.h"

#include <QLocale>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class TestImportExport final : public QObject
{
    Q_OBJECT

    const LxCountryList m_countries = SampleCountries();
    const FixedClock m_clock;
    const QTemporaryDir m_folder;
    const QString m_file = m_folder.filePath(u"out.csv"_s);

    [[nodiscard]] LxPhoneBook Book() const { return LxPhoneBook(m_countries, m_clock); }

    QString Parsed(const QString &text) const
    {
        LxPhoneBook book = Book();
        book.ParseContacts(text);
        return Printed(book).remove(u" | Everyone"_s);
    }

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

    void RecognisesFieldsByTheirContent()
    {
        const QString ann = u"Ann 0 07700900123 []"_s;
        CompareTable(
            {{u"Ann,07700900123", u"Ann 0 07700900123 []"},
             {u"07700900123\tAnn", u"Ann 0 07700900123 []"},
             {u" \"Ann\" , \"07700 900-123\" ,,\t", u"Ann 0 07700 900-123 []"},
             {u"Ann;x,44,07700 900123,Friends;Work;Friends,more", u"Ann;x 44 07700 900123 [Friends;Work];Friends;Work"},
             {u"+447700900123,Bob,353", u"Bob 44 7700900123 []"},
             {u"447700900123,Bob", u"Bob 44 7700900123 []"},
             {u"\t07700900123", u"07700900123 0 07700900123 []"},
             {u"07700900123\t", u"07700900123 0 07700900123 []"},
             {u"\"Lee, Ann\",07700900123", u"Lee 0 07700900123 [Ann];Ann"},
             {u"999,353,44,0851234567", u"44 353 0851234567 []"},
             {u"07700900123,07700900124", u"07700900124 0 07700900123 []"},
             {u"\"Bob\",353,\"0851234567\",\"Work\"", u"Bob 353 0851234567 [Work];Work"},
             {u"A,1234#x\nB,1234\r\n\r\n \t\nName,Mobile\nC,\r\nD #1,1234\n#E,1234\r\nF,1234",
              u"A 1 234 []\nB 1 234 []\nF 1 234 []"},
             {u"Ann", u""},
             {u"Ann,Smith", u""},
             {u"Ann;44;07700900123", u""},
             {u"Ann,+0123", u""},
             {u"Ann,+9991234567", u""},
             {u"Ann,0077", u""},
             {u"Ann,+44 00 123456", u""},
             {u"\"Jim\",1876,\"555 1234\"", u""},
             {u"", u""}},
            [this](const QString &text) { return Parsed(text); });
        QCOMPARE(Parsed(QString(60, u'x') + u",1234"_s), QString(50, u'x') + u" 1 234 []"_s);
    }

    void DecodesTheFilesOfOtherPrograms()
    {
        const auto zoe = u"Zoë€"_s;
        for (const QByteArray &bytes :
             {"Zo\xEB\x80"_ba, "Zo\xC3\xAB\xE2\x82\xAC"_ba, "\xEF\xBB\xBFZo\xC3\xAB\xE2\x82\xAC"_ba,
              "\xFF\xFEZ\0o\0\xEB\0\xAC\x20"_ba, "\xFE\xFF\0Z\0o\0\xEB\x20\xAC"_ba})
            QCOMPARE(TextFile::DecodeForeign(bytes), zoe);
        QCOMPARE(TextFile::DecodeForeign("\xEF\xBB\xBF"), QString());
        QCOMPARE(TextFile::DecodeForeign("\x89PNG\r\n\x1A"), u"‰PNG\r\n\u001A"_s);
    }

    void ExportWritesForSpreadsheets()
    {
        const QString version = u"%1.%2"_s.arg(ProgramVersion().major).arg(ProgramVersion().minor);
        const QByteArray heading = " contacts exported from Brevio v" + version.toLatin1() +
                                   " on 15/11/2004\"\r\n\"#\"\r\n"
                                   "\"# Hint: To format mobile numbers in Excel, use \"Format Cells\" with \"Number\" "
                                   "and zero decimal places\"\r\n\"#\"\r\n\"# Name\",\"Mobile\"\r\n";
        QCOMPARE(Exported(u"Zoë \"A\"\r\nB"_s, u"07700 900-123"_s),
                 "\"# 1" + heading + "\"Zo\xEB \"\"A\"\" B\",\"+447700900123\"\r\n");
        LxPhoneBook book = Book();
        book.OpenPhoneBook(m_folder.filePath(u"ann.kpb"_s));
        book.AllContacts().Add(book.CreateContact());
        book.Export(m_file, book.AllContacts());
        QCOMPARE(ReadBytes(m_file), "\"# 1" + heading + "\"\",\"\"\r\n");
        book.Export(m_file, book.Groups().CreateGroup(u"Empty"_s));
        QCOMPARE(ReadBytes(m_file), "\"# 0" + heading);
        QCOMPARE(Raised([&] { book.Export(book.FileName(), book.AllContacts()); }),
                 u"5 Corvane.PhoneBook: This file is the phone book itself"_s);
        QCOMPARE(ReadBytes(book.FileName()), "");
    }

    void AnExportReadsBack()
    {
        // Names come back as they are but for blanks around them and line breaks within. By design a "#" costs the
        // contact, quotes vanish, a comma or a tab ends the name, and a number in place of the name is taken for one.
        CompareTable({{u"Ann Lee", u"Ann Lee +447700900123"},
                      {u"O'Neil; (2)", u"O'Neil; (2) +447700900123"},
                      {u"Zoë", u"Zoë +447700900123"},
                      {u"Ã©", u"Ã© +447700900123"},
                      {u"Я 😀", u"Я 😀 +447700900123"},
                      {u"7 up", u"7 up +447700900123"},
                      {u" Ann\r\nLee ", u"Ann Lee +447700900123"},
                      {u"Ann \"A\" Lee", u"Ann A Lee +447700900123"},
                      {u"Lee, Ann", u"Lee +447700900123"},
                      {u"Lee\tAnn", u"Lee +447700900123"},
                      {u"", u"+447700900123 +447700900123"},
                      {u"353", u"+447700900123 +447700900123"},
                      {u"999", u"+447700900123 +447700900123"},
                      {u"1-2345", u"+447700900123 +12345"},
                      {u"07700 900124", u"+447700900123 "},
                      {u"Ann #1", u""}},
                     [this](const QString &name) {
                         LxPhoneBook book = Book();
                         book.ParseContacts(TextFile::DecodeForeign(Exported(name)));
                         QStringList read;
                         for (const LxContactPtr &contact : book.AllContacts())
                             read += contact->Name() + u' ' + contact->InternationalMobile();
                         return read.join(u'|');
                     });
    }
};

QTEST_GUILESS_MAIN(TestImportExport)
#include "test_import_export.moc"
