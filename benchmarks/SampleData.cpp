#include "SampleData.h"

#include "SampleCountries.h"

#include <array>

using namespace Qt::StringLiterals;

namespace SampleData {

QByteArray PhoneBookFile(int contacts, int groups)
{
    constexpr std::array kFirstNames = {"Ann", "Bob", "Chlo\xE9", "Dai", "Eve", "Frank", "Grace", "Henry"};
    constexpr std::array kLastNames = {"Lee", "Byrne", "Martin", "Evans", "Moreau", "O'Hara", "Smith"};
    QByteArray text;
    for (int i = 0; i < contacts; ++i) {
        const auto n = static_cast<size_t>(i);
        const bool isHome = i % 5 != 0;
        const QByteArray number = QByteArray::number(7700000000 + i);
        text += '"' + QByteArray(kFirstNames[n % kFirstNames.size()]) + ' ' + kLastNames[n % kLastNames.size()] + ' ' +
                QByteArray::number(i) + "\"," + (isHome ? "44" : "353") + ",\"" +
                (i % 2 == 0 ? number : '0' + number.left(4) + ' ' + number.mid(4)) + "\",\"Group " +
                QByteArray::number(i % groups) + (i % 3 == 0 ? ";Group " + QByteArray::number((i + 7) % groups) : "") +
                "\"\r\n";
    }
    return text;
}

LxCountryList Countries()
{
    LxCountryList countries = SampleCountries();
    for (qint16 code = 200; code < 430; ++code)
        countries.Add({u"Country %1"_s.arg(code), code, false});
    return countries;
}

} // namespace SampleData
