#pragma once

#include "LxContact.h"
#include "LxPhoneBook.h"

#include <QMainWindow>

#include <memory>

class ContactModel;
class GroupModel;
class Prompts;
class Settings;
class Shell;
namespace Ui {
class PhoneBook;
}

/// The phone book window. Start-up makes it hidden; it owns the one LxPhoneBook, and every other window reaches the
/// phone book through it. Each change is saved at once.
class PhoneBook final : public QMainWindow
{
    Q_OBJECT

public:
    /// What it needs of the machine; all of it must outlive the window.
    struct Services
    {
        const LxCountryList &countries;
        const Clock &clock;
        Prompts &prompts;
        Shell &shell;
        Settings &settings;
    };

    explicit PhoneBook(const Services &services);
    ~PhoneBook() override;

    /// Opens the phone book from its default file. Raises what OpenPhoneBook raises.
    void LoadData();

    [[nodiscard]] LxPhoneBook &ReadOnlyPhoneBook() { return m_phoneBook; }

    /// The contact of this identity in "Everyone". Raises number 5 when there is none.
    [[nodiscard]] LxContactPtr GetContact(int contactID) const;
    /// The group of this identity. Raises number 5 when there is none.
    [[nodiscard]] LxGroup &GetGroup(int groupID);

    /// Adds a new contact to "Everyone" and shows its row as the only selected one where the chosen group holds it.
    void AddContact(const LxContactPtr &contact);

    /// Opens the properties dialog over `parent` for a contact, new or existing, with two texts that a new one starts
    /// with. On OK a new contact is added, and joins the chosen group when `addToCurrentGroup` is set; the phone book
    /// is saved. Returns whether the dialog was confirmed.
    bool EditContact(const LxContactPtr &contact, bool isNew, const QString &initialName,
                     const QString &initialNumber, bool addToCurrentGroup, QWidget *parent);

    /// Saves the phone book, and tells the user when that failed or when the old file was kept beside it.
    bool Autosave();

    /// Puts a text into the status bar.
    void Status(const QString &text);

    /// Makes the contact's row the only selected one and scrolls to it; selects nothing when it has none.
    void SelectContact(const LxContact &contact);

    /// The program's end: saves and stores the layout as closing does, and closes whatever came of it.
    void CloseForGood();

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void BuildControls();
    bool Save();
    void LoadLists();
    void Unload();
    [[nodiscard]] LxGroup &ChosenGroup() const;
    void FillContacts();
    void ShowCount();
    void ShowNotice();

    Services m_services;
    LxPhoneBook m_phoneBook;
    /// The controls and their models are made when the window is first shown; most runs never show it.
    std::unique_ptr<Ui::PhoneBook> m_ui;
    GroupModel *m_groups = nullptr;
    ContactModel *m_contacts = nullptr;
    /// Between the window's showing and its closing, when the lists show the phone book.
    bool m_isLoaded = false;
    /// What the status bar is to tell when the window is next seen.
    QString m_notice;
};
