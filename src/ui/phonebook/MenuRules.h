#pragma once

/// Which commands of the phone book window can be given.
namespace MenuRules {

/// What had the focus last; opening a menu by keyboard takes it away.
enum class Place { Find, Groups, Contacts };

/// What the window shows and what is selected in it.
struct Situation
{
    Place place = Place::Contacts;
    bool isEveryoneChosen = true;
    bool hasSelectedContact = false;
    bool hasRows = false;
    /// Whether there is a group besides "Everyone".
    bool hasOtherGroups = false;
};

/// For commands that can always be given.
[[nodiscard]] constexpr bool Always(const Situation &)
{
    return true;
}

[[nodiscard]] constexpr bool CanDelete(const Situation &s)
{
    switch (s.place) {
    case Place::Find:
        // There the key deletes text.
        return false;
    case Place::Groups:
        return !s.isEveryoneChosen;
    case Place::Contacts:
        break;
    }
    return s.hasSelectedContact;
}

[[nodiscard]] constexpr bool CanActOnContacts(const Situation &s)
{
    return s.hasSelectedContact;
}

[[nodiscard]] constexpr bool CanChangeGroup(const Situation &s)
{
    return !s.isEveryoneChosen;
}

[[nodiscard]] constexpr bool CanSelectAll(const Situation &s)
{
    return s.place != Place::Groups && s.hasRows;
}

[[nodiscard]] constexpr bool HasRows(const Situation &s)
{
    return s.hasRows;
}

[[nodiscard]] constexpr bool CanAddToExistingGroup(const Situation &s)
{
    return s.hasSelectedContact && s.hasOtherGroups;
}

[[nodiscard]] constexpr bool CanRemoveFromGroups(const Situation &s)
{
    return s.hasSelectedContact && s.hasOtherGroups;
}

[[nodiscard]] constexpr bool CanRemoveFromThisGroup(const Situation &s)
{
    return CanRemoveFromGroups(s) && !s.isEveryoneChosen;
}

} // namespace MenuRules
