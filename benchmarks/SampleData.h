#pragma once

#include "LxCountryList.h"

#include <QByteArray>

/// Made-up data of a fixed size, the same in each run.
namespace SampleData {

/// A phone-book file: `contacts` lines, each in one or two of `groups` groups, two countries, numbers typed in the
/// ways in which users type them.
[[nodiscard]] QByteArray PhoneBookFile(int contacts, int groups);

/// The countries of PhoneBookFile among as many as the program ships.
[[nodiscard]] LxCountryList Countries();

} // namespace SampleData
