#include "Error.h"
#include "LxContact.h"
#include "LxCountryList.h"
#include "LxGroup.h"
#include "PhoneBookFile.h"
#include "Require.h"
#include "TextFile.h"

using namespace Qt::StringLiterals;

namespace {

LxCountryList Countries()
{
    LxCountryList countries;
    countries.Add({u"A"_s, 1, false});
    countries.Add({u"B"_s, 44, false});
    countries.Add({u"C"_s, 353, false});
    return countries;
}

/// Names as their editors leave them.
QString WithoutQuotes(QString name)
{
    return name.replace(u'"', u'\'');
}

LxContactPtr ContactOf(const PhoneBookFile::Record &record, const LxCountryList &countries)
{
    const LxContactPtr contact = LxContact::Create(countries);
    try {
        contact->SetName(WithoutQuotes(record.name));
        contact->SetCountryCode(record.countryCode);
        contact->SetUserMobile(record.mobile);
    } catch (const Error &) {
        return nullptr;
    }
    return contact;
}

} // namespace

/// Reading ends, and the contacts that were accepted are read again, whole and with their groups, from a file of them.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const LxCountryList countries = Countries();
    const QString text = TextFile::Decode(InputBytes(data, size));
    LxGroupList groups;
    LxGroup &everyone = groups.CreateGroup(u"Everyone"_s);
    for (const PhoneBookFile::Record &record : PhoneBookFile::Parse(text).records) {
        const LxContactPtr contact = ContactOf(record, countries);
        if (!contact)
            continue;
        everyone.Add(contact);
        for (const QString &name : record.groups)
            groups.CreateGroup(WithoutQuotes(name)).Add(contact);
    }
    Require(everyone.Count() <= text.count(u'\n') + 1);

    QString written;
    for (const LxContactPtr &contact : everyone)
        written += PhoneBookFile::FormatLine(*contact, everyone);
    const QString readBack = TextFile::Decode(TextFile::Encode(written));
    Require(readBack == written);
    const PhoneBookFile::Content again = PhoneBookFile::Parse(readBack);
    Require(!again.skippedLines && again.records.size() == static_cast<size_t>(everyone.Count()));
    auto record = again.records.begin();
    for (const LxContactPtr &contact : everyone) {
        const QString groupNames = contact->Groups().AsString(u";"_s, &everyone);
        Require(record->name == TextFile::AsOneLine(contact->Name()) && record->countryCode == contact->CountryCode() &&
                record->mobile == contact->UserMobile() &&
                record->groups.join(u';') == TextFile::AsOneLine(groupNames) && ContactOf(*record, countries));
        ++record;
    }
    return 0;
}
