#include "CountryFile.h"
#include "InputBytes.h"
#include "Require.h"
#include "TextFile.h"
#include "Utils.h"

#include <QList>

using namespace Qt::StringLiterals;

/// Reading ends, gives only codes in range, and the records that were read are read again from a file of them.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes = InputBytes(data, size);
    const QString text = TextFile::Decode(bytes);
    if (!bytes.startsWith("\xEF\xBB\xBF"))
        Require(TextFile::Encode(text) == bytes);
    CountryFile file(text);
    QList<LxCountry> countries;
    for (qsizetype records = 0; !file.AtEnd(); ++records) {
        Require(records < text.size());
        std::optional<LxCountry> country = file.ReadRecord();
        if (!country)
            continue;
        Require(country->CountryCode >= 0);
        // A field cannot hold a quote within quotes.
        country->CountryName.replace(u'"', u'\'');
        countries += *country;
    }
    QString written = u"Code,Country,Guaranteed\r\n"_s;
    for (const LxCountry &country : countries) {
        written += QString::number(country.CountryCode) + u',' + Utils::QuoteCsvField(country.CountryName) +
                   (country.Guaranteed ? u",1\r\n"_s : u",0\r\n"_s);
    }
    CountryFile again(written);
    Require(again.HasThreeColumns());
    for (const LxCountry &country : countries) {
        const std::optional<LxCountry> read = again.ReadRecord();
        Require(read && read->CountryCode == country.CountryCode && read->CountryName == country.CountryName &&
                read->Guaranteed == country.Guaranteed);
    }
    Require(again.AtEnd());
    return 0;
}
