#pragma once

#include "FileLock.h"
#include "LxContact.h"
#include "LxContactList.h"
#include "LxGroup.h"
#include "LxGroupList.h"
#include "PhoneBookHistory.h"

#include <QString>

#include <vector>

class Clock;
class LxCountryList;

/// The user's contacts and groups, and the text file that holds them. The file is held with a lock from open to
/// close, across saves. Operations on files raise what the system reported; the caller words the message.
class LxPhoneBook final
{
public:
    /// An empty phone book without a file. The country list and the clock must outlive it.
    LxPhoneBook(const LxCountryList &countries, const Clock &clock);

    /// The full path of the file in use; empty when none is open.
    [[nodiscard]] const QString &FileName() const { return m_fileName; }

    /// The built-in group "Everyone": every contact, in the order of the file.
    [[nodiscard]] LxGroup &AllContacts() const { return *m_groups.GetFirstGroup(); }

    /// "Everyone" and then the user's groups in the order in which they were made.
    [[nodiscard]] LxGroupList &Groups() { return m_groups; }
    [[nodiscard]] LxGroupList GroupsExcludingAllContacts() const;

    /// What commands changed, and the way back. Loading a file and ClearAll begin it anew.
    [[nodiscard]] PhoneBookHistory &History() { return m_history; }
    [[nodiscard]] const PhoneBookHistory &History() const { return m_history; }

    /// A contact of this phone book's countries, in no group yet.
    [[nodiscard]] LxContactPtr CreateContact() const;

    /// The same, of the home country where the country table has it: what a user's new contact starts as.
    [[nodiscard]] LxContactPtr CreateHomeContact() const;

    /// Makes the named file the phone book's file and loads it. When there is none, the folders on its path and the
    /// file are made, and hold what is in memory now: opening a new name acts as a save-as.
    void OpenPhoneBook(QString name);

    /// Throws away what is not saved by loading the file again.
    void RevertToSaved();

    /// Writes the whole phone book to its file. An old file that is not empty is first kept beside it, byte for byte:
    /// as "<name>.<date>.bak" by the first save of a day, of which copies the newest seven stay (and `sparedCopy`,
    /// which is wanted still), and as "<name>.<date-time>.bak" when the last load skipped a line that was not blank or
    /// bytes that were no text, or the open failed. A save that fails, also where a copy cannot be made, leaves no new
    /// copy and removes none. Returns the path of the second kind of copy, which is to be told, or empty text.
    QString SavePhoneBook(const QString &sparedCopy = {});

    /// Releases the file. The contacts in memory stay.
    void ClosePhoneBook();

    /// Writes the whole phone book to another file. Onto its own it is a save, and returns what SavePhoneBook does.
    QString Backup(const QString &name);

    /// Replaces the contacts by those of the named file and saves the phone book. The old file, unless it is empty, is
    /// kept as "<name>.<date-time>.bak"; returns the path of that copy, which is to be told, or empty text. Raises
    /// "<file> is not a phone book" when the file is not empty and has no readable line. Whatever is raised, the phone
    /// book is as it was, groups without members included.
    QString Restore(const QString &name);

    struct ParsedLines
    {
        /// How many lines that are no comment hold no contact.
        int passedOver = 0;
        /// The line of every contact that was added, in their order, counted from 1 with all lines of the text.
        std::vector<int> lineOf;
    };
    /// Adds every contact that can be read in the text of a contact file of another program, in the order of its lines,
    /// and to the groups that its line names. CR, LF and CR LF each end a line; one that was cut within a character, as
    /// TextFile::DecodeForeign tells, holds no contact.
    ParsedLines ParseContacts(const QString &text);

    /// Adds a clone of every contact, in no other group than `group`, where one is given. Nothing is saved.
    /// Raises what LxContact::Clone raises for a contact without a country or a number; those before it stay added.
    void Import(const LxContactList &contacts, LxGroup *group);

    enum class ExportKind { Spreadsheet, VCards };
    /// Writes the members of the group to a file for other programs. Raises number 5, source "Corvane.PhoneBook", for
    /// the phone book's own file.
    void Export(const QString &name, const LxGroup &group, ExportKind kind = ExportKind::Spreadsheet) const;

    /// Empties the phone book. Files are not touched.
    void ClearAll();

    /// `<application data>/Corvane/Brevio/<user>.kpb`.
    [[nodiscard]] static QString DefaultFileName();

private:
    class NamedGroups;

    /// Groups that hold nobody yet, "Everyone" alone.
    [[nodiscard]] static LxGroupList NewGroups();

    /// Adds the line's contact to the groups that it names; false for a line that breaks the rules.
    bool AddContactOf(QUtf8StringView line, NamedGroups &groups) const;
    /// The contact of a line of another program's file; null where it holds none. `groups` becomes the names of its
    /// groups.
    [[nodiscard]] LxContactPtr ImportedContactOf(QStringView line, QString &groups) const;
    /// Adds the contacts of a phone-book file. False when a line that was not blank or bytes that were no text were
    /// skipped.
    bool AddContacts(const QByteArray &bytes);

    const LxCountryList &m_countries;
    const Clock &m_clock;
    QString m_fileName;
    FileLock m_lock;
    /// Whether the file holds, or may hold, what is not in memory.
    bool m_mustKeepOldFile = false;
    /// "Everyone" comes first, and never goes.
    LxGroupList m_groups;
    PhoneBookHistory m_history{m_groups};
};
