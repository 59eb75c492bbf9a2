#include "Clock.h"
#include "Error.h"
#include "ExportFile.h"
#include "InputBytes.h"
#include "LxPhoneBook.h"
#include "PhoneBookFile.h"
#include "PhoneNumbers.h"
#include "Require.h"
#include "SampleCountries.h"
#include "TextFile.h"
#include "Utf8.h"

#include <QDate>

#include <algorithm>
#include <optional>

namespace {

LxContactPtr ContactOf(const PhoneBookFile::Record &record, const LxPhoneBook &phoneBook)
{
    const LxContactPtr contact = phoneBook.CreateContact();
    try {
        contact->SetName(record.name);
        if (record.countryCode != 0)
            contact->SetCountryCode(record.countryCode);
        contact->SetMobile(Utf8::Decoded(record.mobile));
    } catch (const Error &) {
        return nullptr;
    }
    return contact;
}

void Fill(LxPhoneBook &phoneBook, const QByteArray &file)
{
    TextFile::ForEachUtf8Line(file, [&phoneBook](QUtf8StringView line) {
        const std::optional<PhoneBookFile::Record> record = PhoneBookFile::ParseLine(line);
        if (const LxContactPtr contact = record ? ContactOf(*record, phoneBook) : nullptr)
            phoneBook.AllContacts().Add(contact);
    });
}

QString NameInFile(const LxContact &contact)
{
    return TextFile::AsOneLine(contact.Name()).trimmed();
}

/// Whether an import takes the name for a name, and the whole of it.
bool KeepsName(const LxContact &contact)
{
    const QString name = NameInFile(contact);
    const auto isSpecial = [](QChar c) { return c == u'#' || c == u'"' || c == u',' || c == u'\t'; };
    return !name.isEmpty() && std::none_of(name.begin(), name.end(), isSpecial) &&
           !PhoneNumbers::IsDiallingCode(name) &&
           !PhoneNumbers::IsValidPhoneNumber(PhoneNumbers::CleanPhoneNumber(name));
}

/// Whether an import takes the number for a number, and the same one. Split at another code than its own, it may lose
/// what is then a trunk zero.
bool KeepsNumber(const LxContact &contact, const LxCountryList &countries)
{
    const QString number = contact.InternationalMobile();
    const auto split = PhoneNumbers::SplitInternational(countries, number);
    return PhoneNumbers::IsValidPhoneNumber(number) && split && PhoneNumbers::IsLocalNumber(split->local);
}

} // namespace

/// Of contacts that were exported, an import gives at most each, among them in order all those with a name and a
/// number that the file can hold.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const LxCountryList countries = SampleCountries();
    const SystemClock clock;
    LxPhoneBook phoneBook(countries, clock);
    Fill(phoneBook, InputBytes(data, size));
    const QByteArray file = ExportFile::Content(phoneBook.AllContacts(), QDate(2001, 2, 3));

    LxPhoneBook read(countries, clock);
    read.ParseContacts(TextFile::DecodeForeign(file));
    const LxGroup &again = read.AllContacts();
    Require(again.Count() <= phoneBook.AllContacts().Count());
    auto next = again.begin();
    for (const LxContactPtr &contact : phoneBook.AllContacts()) {
        if (!KeepsName(*contact) || !KeepsNumber(*contact, countries))
            continue;
        const auto isSame = [&contact](const LxContact &other) {
            return other.Name() == NameInFile(*contact) &&
                   other.InternationalMobile() == contact->InternationalMobile();
        };
        while (next != again.end() && !isSame(**next))
            ++next;
        Require(next != again.end());
        ++next;
    }
    return 0;
}
