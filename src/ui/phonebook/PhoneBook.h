#pragma once

#include "Candidates.h"
#include "LxContact.h"
#include "LxContactList.h"
#include "LxPhoneBook.h"
#include "MaintenanceCommands.h"
#include "Notices.h"
#include "PhoneBookCommands.h"
#include "WindowServices.h"

#include <QMainWindow>

#include <functional>
#include <memory>
#include <optional>

class PhoneBookLists;
class PhoneBookMenus;
class QMenu;
class QTreeView;
class UndoActions;
namespace Ui {
class PhoneBook;
}

/// The phone book window. Start-up makes it hidden; it owns the one LxPhoneBook, and every other window reaches the
/// phone book through it. It finds what a command is for, lets PhoneBookCommands or MaintenanceCommands do it, shows
/// what came of it and saves at once.
class PhoneBook final : public QMainWindow
{
    Q_OBJECT

public:
    /// What it needs of the program; all of it must outlive the window.
    struct Services
    {
        const LxCountryList &countries;
        const Clock &clock;
        WindowServices window;
        /// Asks who of another program's file comes in, over the window; none when nobody does. The phone book stays
        /// as it is.
        std::function<std::optional<ImportChoice>(const LxPhoneBook &phoneBook, QWidget *owner)> askForeignContacts;
    };

    /// What the dialog of a new contact starts with.
    struct NewContactOptions
    {
        QString name;
        QString number;
        /// Whether the contact joins the chosen group.
        bool joinsChosenGroup = false;
    };

    /// Takes a phone book without a file.
    PhoneBook(const Services &services, std::unique_ptr<LxPhoneBook> phoneBook);
    ~PhoneBook() override;

    /// Opens the phone book from its default file. Raises what OpenPhoneBook raises.
    void LoadData();

    [[nodiscard]] const LxPhoneBook &ReadOnlyPhoneBook() const { return *m_phoneBook; }

    /// The contact of this identity in "Everyone". Raises number 5 when there is none.
    [[nodiscard]] LxContactPtr GetContact(int contactID) const;
    /// The group of this identity. Raises number 5 when there is none.
    [[nodiscard]] LxGroup &GetGroup(int groupID);

    /// Adds a new contact to "Everyone" and shows its row as the only selected one where the chosen group holds it.
    void AddContact(const LxContactPtr &contact);

    /// Opens the properties dialog over `parent` for a contact of the phone book, which is saved on OK. Returns whether
    /// the dialog was confirmed.
    bool EditContact(const LxContactPtr &contact, QWidget *parent);

    /// The same for a contact that is in no group yet. On OK it is added, else destroyed.
    bool EditNewContact(const LxContactPtr &contact, const NewContactOptions &options, QWidget *parent);

    /// Makes a group of a free name, with the selected contacts as its members when `addSelectedContacts` is set,
    /// chooses it and starts editing its name.
    LxGroup &CreateNewGroup(bool addSelectedContacts);

    /// Asks for a file of contacts to import, proposing one; gives its path, or empty text when the user cancelled.
    [[nodiscard]] QString AskImportContactsFilename(const QString &proposal, QWidget *owner);

    /// The contacts in the text of a file that another program wrote, in no group; the phone book stays as it is. The
    /// status bar is to tell how many lines were passed over.
    [[nodiscard]] LxContactList ParseContacts(const QString &text);

    /// Adds clones of the contacts to the phone book and to a new group "Imported", chooses that group and starts
    /// editing its name. Tells the user when there is none, and when one could not be added; those before it then stay.
    void ImportContactsData(const LxContactList &contacts);

    /// Saves the phone book, and tells the user when that failed or when the old file was kept beside it.
    bool Autosave();

    /// What is to be told of files that were kept, while this window is not there to tell it; empty for nothing. It is
    /// the caller's to tell then.
    [[nodiscard]] QString TakeNotices() { return m_notices.Take(); }

    /// Puts a text into the status bar.
    void Status(const QString &text);

    /// Makes the contact's row the only selected one and scrolls to it; selects nothing when it has none.
    void SelectContact(const LxContact &contact);

    /// Chooses the group as if its row had been clicked.
    void SelectGroup(const LxGroup &group);

    /// Saves and stores the layout as closing does, and stays open.
    void Store();

    /// The program's end: as Store, and closes whatever came of it.
    void CloseForGood();

    void setVisible(bool visible) override;

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void BuildControls();
    void FitBar();
    void ConnectLists();
    void ConnectCommands();
    void EnableCommands();
    void PopUp(QMenu &menu, const QTreeView &list, const QPoint &position);
    void Load();
    void StoreLayout();
    bool Save();
    bool CommitAndSave();

    /// Runs a command, records what it changes as one thing to undo, and shows it. Returns what the command did.
    PhoneBookChange Run(const std::function<PhoneBookChange()> &command);

    /// Shows what a command changed, saves it and tells what there is to tell.
    void Show(const PhoneBookChange &change);
    void TellNotices();

    [[nodiscard]] LxGroup &ChosenGroup() const;
    [[nodiscard]] LxContactList Selected() const;

    Services m_services;
    std::unique_ptr<LxPhoneBook> m_phoneBook;
    PhoneBookCommands m_commands;
    MaintenanceCommands m_maintenance;
    /// The controls and their models are made when the window is first shown; most runs never show it.
    std::unique_ptr<Ui::PhoneBook> m_ui;
    PhoneBookLists *m_lists = nullptr;
    PhoneBookMenus *m_menus = nullptr;
    UndoActions *m_undo = nullptr;
    /// Between the window's showing and its closing, when the lists show the phone book.
    bool m_isLoaded = false;
    /// While the window closes, which saves once itself.
    bool m_isClosing = false;
    Notices m_notices;
};
