#pragma once

/// Which commands of the phone book window can be given.
namespace MenuRules {

/// What the window shows and what is selected in it.
struct Situation
{
    /// Whether the list of groups had the focus last.
    bool isInGroups = false;
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
    return s.isInGroups ? !s.isEveryoneChosen : s.hasSelectedContact;
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
    return !s.isInGroups && s.hasRows;
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
