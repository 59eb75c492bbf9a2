#include "Clock.h"
#include "Error.h"
#include "InputBytes.h"
#include "LxContactList.h"
#include "LxPhoneBook.h"
#include "Require.h"
#include "SampleCountries.h"
#include "TextFile.h"

namespace {

int CountLinesOfFields(const QString &text)
{
    int count = 0;
    TextFile::ForEachForeignLine(
        text, [&count](QStringView line) { count += line.contains(u',') || line.contains(u'\t') ? 1 : 0; });
    return count;
}

/// False when it raised.
bool Import(const LxContactList &contacts, LxPhoneBook &phoneBook, LxGroup &group)
{
    try {
        phoneBook.Import(contacts, &group);
        return true;
    } catch (const Error &) {
        return false;
    }
}

} // namespace

/// Reading ends and gives at most one contact a line, with a name that fits. All of them are imported, or those before
/// the first without a country.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const LxCountryList countries = SampleCountries();
    const SystemClock clock;
    const QString text = TextFile::DecodeForeign(InputBytes(data, size));
    LxPhoneBook parsed(countries, clock);
    parsed.ParseContacts(text);
    const LxContactList contacts = parsed.AllContacts().ContactList();
    Require(contacts.Count() <= CountLinesOfFields(text));
    for (const LxContactPtr &contact : contacts)
        Require(!contact->Name().isEmpty() && contact->Name().size() <= LxContact::NameMaxLength);

    LxPhoneBook phoneBook(countries, clock);
    LxGroup &group = phoneBook.Groups().CreateGroup(QStringLiteral("Imported"));
    const bool isWhole = Import(contacts, phoneBook, group);
    const LxContactList imported = phoneBook.AllContacts().ContactList();
    Require(isWhole ? imported.Count() == contacts.Count() : imported.Count() < contacts.Count());
    Require(group.Count() == imported.Count() && phoneBook.Groups().Count() == 2);
    auto source = contacts.begin();
    for (const LxContactPtr &contact : imported) {
        Require(contact != *source && contact->Name() == (*source)->Name());
        Require(contact->InternationalMobile() == (*source)->InternationalMobile());
        Require(group.IsMember(*contact) && contact->Groups().Count() == 2);
        ++source;
    }
    Require(isWhole || (*source)->CountryCode() == 0);
    return 0;
}
