#include "Error.h"
#include "InputBytes.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "PhoneBookFile.h"
#include "Require.h"
#include "SampleCountries.h"
#include "TextFile.h"
#include "Utf8.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Names as their editors leave them.
QString WithoutQuotes(QString name)
{
    return name.replace(u'"', u'\'');
}

/// A record that outlives its line.
struct Kept
{
    QString name;
    qint16 countryCode;
    QString mobile;
    QString groups;
};

LxContactPtr ContactOf(const Kept &record, const LxCountryList &countries)
{
    const LxContactPtr contact = LxContact::Create(countries);
    try {
        contact->SetName(QUtf8StringView(WithoutQuotes(record.name).toUtf8()));
        contact->SetCountryCode(record.countryCode);
        contact->SetUserMobile(QUtf8StringView(record.mobile.toUtf8()));
    } catch (const Error &) {
        return nullptr;
    }
    return contact;
}

std::vector<Kept> Records(const QByteArray &file)
{
    std::vector<Kept> records;
    TextFile::ForEachUtf8Line(file, [&records](QUtf8StringView line) {
        if (const auto record = PhoneBookFile::ParseLine(line)) {
            records.push_back({Utf8::Decoded(record->name), record->countryCode, Utf8::Decoded(record->mobile),
                               Utf8::Decoded(record->groups)});
        }
    });
    return records;
}

} // namespace

/// Reading ends, and the contacts that were accepted are read again, whole and with their groups, from a file of them.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const LxCountryList countries = SampleCountries();
    const QByteArray file = InputBytes(data, size);
    LxGroupList groups;
    LxGroup &everyone = groups.CreateGroup(u"Everyone"_s);
    for (const Kept &record : Records(file)) {
        const LxContactPtr contact = ContactOf(record, countries);
        if (!contact)
            continue;
        everyone.Add(contact);
        if (record.groups.isEmpty())
            continue;
        for (const QString &name : record.groups.split(u';'))
            groups.CreateGroup(WithoutQuotes(name)).Add(contact);
    }
    Require(everyone.Count() <= file.count('\n') + 1);

    const std::vector<Kept> again = Records(PhoneBookFile::Content(everyone));
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
