#pragma once

#include "LxContactList.h"
#include "PhoneBookChange.h"
#include "WindowServices.h"

#include <QCoreApplication>
#include <QString>

#include <vector>

struct ImportChoice;
class Clock;
class LxCountryList;
class LxPhoneBook;
class QWidget;

/// The commands for the whole phone book and those that read or write other files: each asks where it must, does its
/// work and returns what it changed.
class MaintenanceCommands final
{
    Q_DECLARE_TR_FUNCTIONS(MaintenanceCommands)

public:
    struct ParsedContacts
    {
        LxContactList contacts;
        /// The line of the file of each contact, counted from 1.
        std::vector<int> lineOf;
        /// What to tell about lines that were passed over.
        QString notice;
    };

    /// `window` asks the questions. All must outlive the commands.
    MaintenanceCommands(LxPhoneBook &phoneBook, const LxCountryList &countries, const Clock &clock,
                        const WindowServices &services, QWidget *window);

    PhoneBookChange MergeDuplicates() const;
    PhoneBookChange DeleteByList() const;

    PhoneBookChange Backup() const;
    /// Chooses the group that has the name of the chosen one then.
    PhoneBookChange Restore(const LxGroup &chosen) const;
    PhoneBookChange Export(const LxGroup &group) const;

    PhoneBookChange ImportFile() const;
    /// Asks for a file to import, proposing one; gives its path, or empty text when the user cancelled.
    [[nodiscard]] QString AskImportFile(const QString &proposal, QWidget *owner) const;
    /// The contacts in the text of another program's file, in no group; the phone book stays as it is.
    [[nodiscard]] ParsedContacts Parse(const QString &text) const;
    /// Adds clones of the contacts to a new group "Imported". Where one cannot be added, those before it stay.
    PhoneBookChange ImportContacts(const LxContactList &contacts) const;

    /// Takes in those of another program's file who are ticked: all, or where one cannot be added none.
    PhoneBookChange ImportForeign(const ImportChoice &choice) const;

private:
    [[nodiscard]] QString AskBackupFile(bool isForRestore) const;

    LxPhoneBook &m_phoneBook;
    const LxCountryList &m_countries;
    const Clock &m_clock;
    WindowServices m_services;
    QWidget *m_window;
};

/// What tells the user that the old phone book file was kept as this path; empty for an empty path.
[[nodiscard]] QString KeptFileNotice(const QString &path);
