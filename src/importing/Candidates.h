#pragma once

#include "JudgedNumber.h"

#include <QStringList>

#include <atomic>
#include <span>
#include <vector>

class ContactTable;
class LxGroup;
class LxPhoneBook;

/// A number of a row, which may become a contact.
struct Candidate
{
    /// The row of the table, counted from 0.
    int row = 0;
    /// As the contact will be named. Before Settle all of a row have the same.
    QString name;
    /// Cleaned as names of groups are.
    QStringList groups;
    /// What the file holds.
    QString number;
    QString country;
    NumberLabel label = NumberLabel::None;

    JudgedNumber judged;
    /// Whether the phone book has the number, and the contact that has it.
    bool isKnown = false;
    QString knownAs;
    /// The row that has the number first, as a mobile if any has, where that is another; else -1.
    int sameAsRow = -1;
    bool isTicked = false;
};

/// What the user wants to come in.
struct ImportChoice
{
    /// Those that are ticked and those that are not.
    std::vector<Candidate> candidates;
    /// Whether into the groups that their rows name, too.
    bool withGroups = false;
};

/// The people of a table on their way into the phone book: Of, Judge, Settle, the user's own ticks, Take.
namespace Candidates {

/// The numbers of each row, not judged yet. A row without one gives one candidate of the kind NoNumber, a row without
/// a name and a number none. The name is the column Name, else first and last name, else the number.
[[nodiscard]] std::vector<Candidate> Of(const ContactTable &table, const std::vector<ImportColumn> &columns);

/// Judges some of the candidates, until `isCancelled`. Threads may judge stretches of one vector that do not overlap.
/// False when it was cancelled; then some are judged.
bool Judge(std::span<Candidate> candidates, const NumberRules &rules, const std::atomic<bool> &isCancelled);

/// Once all are judged: leaves out numbers that a row has twice, tells which are in the phone book or in another
/// row, ticks mobiles and those that may be, which are neither, and numbers the names of a person's several contacts
/// "Ann Lee", "Ann Lee (2)", the ticked ones first.
void Settle(std::vector<Candidate> &candidates, const LxPhoneBook &phoneBook);

struct Taken
{
    /// The new group of all that came in; null when nothing did.
    LxGroup *group = nullptr;
    int contacts = 0;
    /// Groups that the file names and the phone book did not have.
    int newGroups = 0;
};

/// Puts every ticked candidate that can be taken into the phone book, into a new group "Imported" (or "Imported (2)"
/// and so on) and, where wanted, into the groups that its row names. Saves nothing. Raises what LxContact's setters
/// raise, and then the phone book is as it was.
[[nodiscard]] Taken Take(std::span<const Candidate> candidates, bool withGroups, LxPhoneBook &phoneBook);

} // namespace Candidates
