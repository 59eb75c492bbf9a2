#pragma once

#include "Candidates.h"
#include "WindowServices.h"

#include <QString>

#include <optional>

class LxCountryList;
class QWidget;

/// Contacts in the files of other programs.
namespace ForeignContacts {

struct Services
{
    const LxCountryList &countries;
    /// As NumberJudge::Load takes it.
    const QString &programFolder;
    WindowServices window;
};

/// Asks for a file, then, by the ImportAssistant, who of it comes into the phone book, which stays as it is. Tells the
/// user when the file cannot be read. None when nothing is to come in.
[[nodiscard]] std::optional<ImportChoice> Ask(const Services &services, const LxPhoneBook &phoneBook, QWidget *owner);

} // namespace ForeignContacts
