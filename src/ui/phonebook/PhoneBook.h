#pragma once

#include "LxContact.h"
#include "LxContactList.h"
#include "LxPhoneBook.h"
#include "MenuRules.h"
#include "PhoneBookCommands.h"
#include "Prompts.h"
#include "WindowServices.h"

#include <QMainWindow>

#include <memory>

class ContactModel;
class GroupModel;
class NameDelegate;
class QTreeView;
namespace Ui {
class PhoneBook;
}

/// The phone book window. Start-up makes it hidden; it owns the one LxPhoneBook, and every other window reaches the
/// phone book through it. It finds what a command is for, lets PhoneBookCommands do it, shows what came of it and saves
/// at once.
class PhoneBook final : public QMainWindow
{
    Q_OBJECT

public:
    /// What it needs of the machine; all of it must outlive the window.
    struct Services
    {
        const LxCountryList &countries;
        const Clock &clock;
        WindowServices window;
    };

    /// What a new contact starts with.
    struct NewContactOptions
    {
        QString name;
        QString number;
        /// Whether it becomes a member of the chosen group.
        bool joinsChosenGroup = false;
    };

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

    /// Opens the properties dialog over `parent`. On OK the phone book is saved. Returns whether the dialog was
    /// confirmed.
    bool EditContact(const LxContactPtr &contact, QWidget *parent);
    /// The same for a contact that is not in the phone book yet, and is added on OK.
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

    /// Puts a text into the status bar.
    void Status(const QString &text);

    /// Makes the contact's row the only selected one and scrolls to it; selects nothing when it has none.
    void SelectContact(const LxContact &contact);

    /// Chooses the group as if its row had been clicked.
    void SelectGroup(const LxGroup &group);

    /// The program's end: saves and stores the layout as closing does, and closes whatever came of it.
    void CloseForGood();

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void BuildControls();
    void ConnectLists();
    void ConnectMenus();
    void LoadLists();
    void Unload();
    bool Save();
    bool CommitAndSave();
    void AddNotice(const QString &notice);
    void NoteKeptFile(const QString &path);
    void ShowNotice();
    bool TellFailure(const QString &caption, const QString &text, const QString &failure,
                     PromptIcon icon = PromptIcon::Information);

    [[nodiscard]] LxGroup &ChosenGroup() const;
    [[nodiscard]] LxContactList SelectedContacts() const;
    [[nodiscard]] MenuRules::Situation CurrentSituation() const;
    void EnableCommands();
    void ShowEdited();

    void FillGroups(const LxGroup &toChoose);
    void ChooseRow(const LxGroup &group);
    void FillContacts();
    void RefillLists(const LxGroup &toChoose);
    void ShowNewGroup(const LxGroup &group);
    void FillContactsInPlace();
    void FindTyped();
    void GroupClicked();
    void KeepGroupSelected();
    void SortByColumn(int column);
    void ApplySort();
    void ShowCount();
    void RewriteSelected(const LxContactList &contacts);
    void CommitEditor();

    void NewContact();
    void Properties();
    void Delete();
    void DeleteContacts();
    void DeleteGroup();
    void RenameContact(const LxContactPtr &contact, const QString &name);
    void RenameGroup(int groupID, const QString &name);
    void EditGroupName();
    void AddToExistingGroup();
    void RemoveFromAllGroups();
    void RemoveFromThisGroup();
    void SelectAll();
    void MergeDuplicates();
    void DeleteByList();
    [[nodiscard]] QString AskBackupFile(bool isForRestore);
    void Backup();
    void Restore();
    void Export();
    void ImportContacts();
    void UnloadComposeWindows();
    void ShowContactsMenu(const QPoint &position);
    void ShowGroupsMenu(const QPoint &position);

    Services m_services;
    std::unique_ptr<LxPhoneBook> m_phoneBook;
    PhoneBookCommands m_commands;
    /// The controls and their models are made when the window is first shown; most runs never show it.
    std::unique_ptr<Ui::PhoneBook> m_ui;
    GroupModel *m_groups = nullptr;
    ContactModel *m_contacts = nullptr;
    NameDelegate *m_groupNames = nullptr;
    NameDelegate *m_contactNames = nullptr;
    /// The list that had the focus last; opening a menu by keyboard takes it away.
    QTreeView *m_lastList = nullptr;
    /// Counted from 1, as stored. 0 is left 0, so that the first click on Name then sorts ascending; that is meant.
    int m_sortBy = 0;
    bool m_reverseSort = false;
    /// Between the window's showing and its closing, when the lists show the phone book.
    bool m_isLoaded = false;
    /// While the window closes, which saves once itself.
    bool m_isClosing = false;
    /// What the status bar is to tell when the window is next seen.
    QString m_notice;
};
