#include "DeleteMany.h"
#include "Error.h"
#include "Import.h"
#include "Maintenance.h"
#include "PhoneBook.h"
#include "Prompts.h"
#include "RememberedFile.h"
#include "Utils.h"
#include "WaitCursor.h"

using namespace Qt::StringLiterals;

// The commands that are for the whole phone book, and those that read or write other files.

namespace {

/// What `work` raises as its description, or empty text. The hourglass shows while it runs.
template <typename Work>
QString Failure(Work work)
{
    const WaitCursor hourglass;
    try {
        work();
    } catch (const Error &error) {
        return error.Description();
    }
    return {};
}

} // namespace

bool PhoneBook::TellFailure(const QString &caption, const QString &text, const QString &failure, PromptIcon icon)
{
    if (failure.isEmpty())
        return false;
    m_services.window.prompts.ShowMessageBox({.text = text + failure, .icon = icon, .caption = caption}, this);
    return true;
}

void PhoneBook::RefillLists(const LxGroup &toChoose)
{
    if (!m_isLoaded)
        return;
    FillGroups(toChoose);
    FillContacts();
}

void PhoneBook::MergeDuplicates()
{
    if (!m_commands.MergeDuplicates())
        return;
    {
        const WaitCursor hourglass;
        RefillLists(ChosenGroup());
    }
    Autosave();
}

void PhoneBook::DeleteByList()
{
    DeleteMany dialog(m_services.window, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    {
        const WaitCursor hourglass;
        const int count = Maintenance::DeleteByList(*m_phoneBook, dialog.ExclusionList());
        RefillLists(ChosenGroup());
        Status(QString::number(count) + tr(" contacts deleted"));
    }
    Autosave();
}

QString PhoneBook::AskBackupFile(bool isForRestore)
{
    const FileDialogRequest request{.title = isForRestore ? tr("Select Backup File to Restore")
                                                          : tr("Select File to Backup to"),
                                    .filters = {{tr("Brevio Phonebook"), {u"*.kpb"_s}}},
                                    .initialPath = Utils::MyDocumentsFolder() + u"/Backup of Brevio phonebook"_s,
                                    .confirmOverwrite = !isForRestore};
    const RememberedFile file(m_services.window, u"Backup Phonebook"_s);
    return isForRestore ? file.AskToOpen(request, this) : file.AskToSave(request, this);
}

void PhoneBook::Backup()
{
    const QString path = AskBackupFile(false);
    if (path.isEmpty())
        return;
    const QString failure = Failure([&] { NoteKeptFile(m_phoneBook->Backup(path)); });
    if (!TellFailure(tr("Backup Failed"), tr("The phonebook could not be backed up: "), failure))
        Status(tr("Backed up to ") + Utils::FileNameOfPath(path));
    ShowNotice();
}

void PhoneBook::Restore()
{
    const QString path = AskBackupFile(true);
    if (path.isEmpty())
        return;
    const QString notSaved = Failure([this] { NoteKeptFile(m_phoneBook->SavePhoneBook()); });
    // The icons of the two failures differ, and that is meant.
    if (TellFailure(tr("Restore Failed"),
                    tr("The phonebook could not be restored, as the existing phonebook could not be saved: "), notSaved,
                    PromptIcon::Critical))
        return;
    // Restored groups are other ones than before. When it fails, the phone book is what it was.
    const QString chosen = ChosenGroup().Name();
    const QString failure = Failure([&] { NoteKeptFile(m_phoneBook->Restore(path)); });
    {
        const WaitCursor hourglass;
        const LxGroup *same = m_phoneBook->Groups().Lookup(chosen);
        RefillLists(same ? *same : m_phoneBook->AllContacts());
    }
    ShowNotice();
    TellFailure(tr("Restore Failed"), tr("The phonebook could not be restored: "), failure);
}

void PhoneBook::Export()
{
    const RememberedFile file(m_services.window, u"Export Contacts"_s);
    const QString path = file.AskToSave({.title = tr("Select File to Export to"),
                                         .filters = {{tr("CSV (Comma delimited)"), {u"*.csv"_s}}},
                                         .initialPath = Utils::MyDocumentsFolder() + u"/Brevio Contacts"_s,
                                         .confirmOverwrite = true},
                                        this);
    if (path.isEmpty())
        return;
    const LxGroup &group = ChosenGroup();
    const QString failure = Failure([&] { m_phoneBook->Export(path, group); });
    if (!TellFailure(tr("Export Failed"), tr("The phonebook could not be exported: "), failure))
        Status(QString::number(group.Count()) + tr(" contacts exported to ") + Utils::FileNameOfPath(path));
}

QString PhoneBook::AskImportContactsFilename(const QString &proposal, QWidget *owner)
{
    return m_services.window.prompts.AskOpenFile(
        {.title = tr("Select File to Import from"),
         .filters = {{tr("All contact files"), {u"*.csv"_s, u"*.txt"_s, u"*.kpb"_s}},
                     {tr("CSV (Comma delimited)"), {u"*.csv"_s}},
                     {tr("Text (Tab delimited)"), {u"*.txt"_s}},
                     {tr("Brevio phonebook"), {u"*.kpb"_s}},
                     {tr("All files"), {u"*.*"_s}}},
         .initialPath = Utils::IfEmpty(proposal, Utils::MyDocumentsFolder() + u'/')},
        owner);
}

void PhoneBook::ImportContacts()
{
    const auto askFile = [this](const QString &proposal, QWidget *owner) {
        return AskImportContactsFilename(proposal, owner);
    };
    Import dialog(m_services.window, askFile, this);
    if (dialog.exec() == QDialog::Accepted)
        ImportContactsData(ParseContacts(dialog.ContactData()));
}

LxContactList PhoneBook::ParseContacts(const QString &text)
{
    const WaitCursor hourglass;
    // The user's phone book does not take over the groups that the lines name.
    LxPhoneBook scratch(m_services.countries, m_services.clock);
    const int passedOver = scratch.ParseContacts(text);
    if (passedOver > 0 && scratch.AllContacts().Count() > 0)
        AddNotice(tr("Lines of the file that hold no contact: ") + QString::number(passedOver));
    return scratch.AllContacts().ContactList();
}

void PhoneBook::ImportContactsData(const LxContactList &contacts)
{
    const QString caption = tr("Import Failed");
    const QString notImported = tr("The contacts could not be imported: ");
    if (contacts.Count() == 0) {
        TellFailure(caption, notImported,
                    tr("No line of the file holds a mobile number of a known country and another field, separated by a "
                       "comma or a tab."));
        return;
    }
    LxGroup &chosen = ChosenGroup();
    LxGroup &group = m_commands.CreateGroup(tr("Imported"), {});
    const QString failure = Failure([&] { m_phoneBook->Import(contacts, &group); });
    if (group.Count() == 0) {
        m_phoneBook->Groups().DestroyGroup(group);
        RefillLists(chosen);
    } else {
        const WaitCursor hourglass;
        ShowNewGroup(group);
    }
    Autosave();
    // The user names the batch at once, unless something is to be told.
    if (!TellFailure(caption, notImported, failure))
        EditGroupName();
}
