#include "Error.h"
#include "InputBytes.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "PhoneBookFile.h"
#include "Require.h"
#include "SampleCountries.h"
#include "TextFile.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Names as their editors leave them.
QString WithoutQuotes(QString name)
{
    return name.replace(u'"', u'\'');
}

LxContactPtr ContactOf(const PhoneBookFile::Record &record, const LxCountryList &countries)
{
    const LxContactPtr contact = LxContact::Create(countries);
    try {
        contact->SetName(WithoutQuotes(record.name.toString()));
        contact->SetCountryCode(record.countryCode);
        contact->SetUserMobile(record.mobile);
    } catch (const Error &) {
        return nullptr;
    }
    return contact;
}

std::vector<PhoneBookFile::Record> Records(const QString &text)
{
    std::vector<PhoneBookFile::Record> records;
    TextFile::ForEachLine(text, [&records](QStringView line) {
        if (std::optional<PhoneBookFile::Record> record = PhoneBookFile::ParseLine(line))
            records.push_back(std::move(*record));
    });
    return records;
}

} // namespace

/// Reading ends, and the contacts that were accepted are read again, whole and with their groups, from a file of them.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const LxCountryList countries = SampleCountries();
    const QString text = TextFile::Decode(InputBytes(data, size));
    LxGroupList groups;
    LxGroup &everyone = groups.CreateGroup(u"Everyone"_s);
    for (const PhoneBookFile::Record &record : Records(text)) {
        const LxContactPtr contact = ContactOf(record, countries);
        if (!contact)
            continue;
        everyone.Add(contact);
        if (record.groups.isEmpty())
            continue;
        for (const QString &name : record.groups.toString().split(u';'))
            groups.CreateGroup(WithoutQuotes(name)).Add(contact);
    }
    Require(everyone.Count() <= text.count(u'\n') + 1);

    const QString written = TextFile::Decode(PhoneBookFile::Content(everyone));
    const std::vector<PhoneBookFile::Record> again = Records(written);
    Require(again.size() == static_cast<size_t>(everyone.Count()));
    auto record = again.begin();
    for (const LxContactPtr &contact : everyone) {
        const QString groupNames = contact->Groups().AsString(u";"_s, &everyone);
        Require(record->name == TextFile::AsOneLine(contact->Name()) && record->countryCode == contact->CountryCode());
        Require(record->mobile == contact->UserMobile() && record->groups == TextFile::AsOneLine(groupNames));
        Require(ContactOf(*record, countries) != nullptr);
        ++record;
    }
    return 0;
}
