#include "MaintenanceCommands.h"

#include "Attempt.h"
#include "Candidates.h"
#include "DeleteMany.h"
#include "Import.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "Maintenance.h"
#include "RememberedFile.h"
#include "Utils.h"

#include <QFileInfo>
#include <QLocale>

using namespace Qt::StringLiterals;

using Shown = PhoneBookChange::Shown;

namespace {

std::optional<MessageBoxRequest> Failure(const QString &caption, const QString &text,
                                         PromptIcon icon = PromptIcon::Information)
{
    return MessageBoxRequest{.text = text, .icon = icon, .caption = caption};
}

std::optional<MessageBoxRequest> NotImported(const QString &why)
{
    return Failure(MaintenanceCommands::tr("Import Failed"),
                   MaintenanceCommands::tr("The contacts could not be imported: %1").arg(why));
}

/// Where to go with a file that the import of text files cannot read.
QString OtherWay()
{
    return MaintenanceCommands::tr("Files of other programs, such as vCards and spreadsheets with headings or numbers "
                                   "of several kinds, come in by Contacts, Import from Other Programs...");
}

} // namespace

QString KeptFileNotice(const QString &path)
{
    return path.isEmpty() ? QString()
                          : QCoreApplication::translate("MaintenanceCommands", "The old phone book file was kept as %1")
                                .arg(Utils::FileNameOfPath(path));
}

MaintenanceCommands::MaintenanceCommands(LxPhoneBook &phoneBook, const LxCountryList &countries, const Clock &clock,
                                         const WindowServices &services, QWidget *window)
    : m_phoneBook(phoneBook)
    , m_countries(countries)
    , m_clock(clock)
    , m_services(services)
    , m_window(window)
{
}

PhoneBookChange MaintenanceCommands::MergeDuplicates() const
{
    const QString question = tr("This will merge contacts with the same mobile phone number across the entire phone "
                                "book.\r\n\r\nAre you sure you want to merge duplicate contacts?");
    const PromptAnswer answer = m_services.prompts.ShowMessageBox({.text = question,
                                                                   .icon = PromptIcon::None,
                                                                   .buttons = PromptButtons::YesNo,
                                                                   .caption = tr("Merge Duplicates"),
                                                                   .defaultAnswer = PromptAnswer::No},
                                                                  m_window);
    if (answer != PromptAnswer::Yes)
        return {};
    const WaitCursor hourglass;
    const int before = m_phoneBook.AllContacts().Count();
    Maintenance::MergeDuplicates(m_phoneBook);
    const int gone = before - m_phoneBook.AllContacts().Count();
    return {.shown = Shown::Everything,
            .status = gone == 1 ? tr("1 contact merged") : tr("%1 contacts merged").arg(gone),
            .command = tr("Merge Duplicates")};
}

PhoneBookChange MaintenanceCommands::DeleteByList() const
{
    DeleteMany dialog(m_services, m_window);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const WaitCursor hourglass;
    const int count = Maintenance::DeleteByList(m_phoneBook, dialog.ExclusionList());
    return {
        .shown = Shown::Everything, .status = tr("%1 contacts deleted").arg(count), .command = tr("Delete Multiple")};
}

QString MaintenanceCommands::AskBackupFile(bool isForRestore) const
{
    FileDialogRequest request{.title =
                                  isForRestore ? tr("Select Backup File to Restore") : tr("Select File to Backup to"),
                              .filters = {{tr("Brevio Phonebook"), {u"*.kpb"_s}}},
                              .initialPath = Utils::MyDocumentsFolder() + u"/Backup of Brevio phonebook"_s,
                              .confirmOverwrite = !isForRestore};
    if (isForRestore) {
        // The copies that saves have kept lie beside the phone book.
        request.filters.first().patterns += u"*.kpb.*.bak"_s;
        request.offeredFolder = QFileInfo(m_phoneBook.FileName()).path();
    }
    const RememberedFile file(m_services, u"Backup Phonebook"_s);
    return isForRestore ? file.AskToOpen(request, m_window) : file.AskToSave(request, m_window);
}

PhoneBookChange MaintenanceCommands::Backup() const
{
    const QString path = AskBackupFile(false);
    if (path.isEmpty())
        return {};
    QString kept;
    const QString failure = Attempt([&] { kept = m_phoneBook.Backup(path); });
    if (!failure.isEmpty())
        return {.failure = Failure(tr("Backup Failed"), tr("The phonebook could not be backed up: %1").arg(failure))};
    return {.status = tr("Backed up to %1").arg(Utils::FileNameOfPath(path)), .notices = {KeptFileNotice(kept)}};
}

PhoneBookChange MaintenanceCommands::Restore(const LxGroup &chosen) const
{
    const QString path = AskBackupFile(true);
    if (path.isEmpty())
        return {};
    const QString caption = tr("Restore Failed");
    QString kept;
    const QString notSaved = Attempt([&] { kept = m_phoneBook.SavePhoneBook(path); });
    // The icons of the two failures differ, and that is meant.
    if (!notSaved.isEmpty()) {
        return {.failure =
                    Failure(caption,
                            tr("The phonebook could not be restored, as the existing phonebook could not be saved: %1")
                                .arg(notSaved),
                            PromptIcon::Critical)};
    }
    // Restored groups are other ones than before, and the chosen one is gone. When it fails, the phone book is what it
    // was.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QString name = chosen.Name();
    PhoneBookChange change{
        .shown = Shown::Everything, .notices = {KeptFileNotice(kept)}, .isSaved = true, .command = tr("Restore")};
    const QString notRestored = Attempt([&] { kept = m_phoneBook.Restore(path); });
    change.group = m_phoneBook.Groups().Lookup(name);
    if (notRestored.isEmpty())
        change.notices += KeptFileNotice(kept);
    else
        change.failure = Failure(caption, tr("The phonebook could not be restored: %1").arg(notRestored));
    return change;
}

PhoneBookChange MaintenanceCommands::Export(const LxGroup &group) const
{
    const RememberedFile file(m_services, u"Export Contacts"_s);
    const QString path =
        file.AskToSave({.title = tr("Select File to Export to"),
                        .filters = {{tr("CSV (Comma delimited)"), {u"*.csv"_s}}, {tr("vCard"), {u"*.vcf"_s}}},
                        .initialPath = Utils::MyDocumentsFolder() + u"/Brevio Contacts"_s,
                        .confirmOverwrite = true},
                       m_window);
    if (path.isEmpty())
        return {};
    const bool isVCards = path.endsWith(u".vcf"_s, Qt::CaseInsensitive);
    const auto kind = isVCards ? LxPhoneBook::ExportKind::VCards : LxPhoneBook::ExportKind::Spreadsheet;
    const QString failure = Attempt([&] { m_phoneBook.Export(path, group, kind); });
    if (!failure.isEmpty())
        return {.failure = Failure(tr("Export Failed"), tr("The phonebook could not be exported: %1").arg(failure))};
    const QString count = QString::number(group.Count());
    return {.status = tr("%1 contacts exported to %2").arg(count, Utils::FileNameOfPath(path))};
}

QString MaintenanceCommands::AskImportFile(const QString &proposal, QWidget *owner) const
{
    return m_services.prompts.AskOpenFile({.title = tr("Select File to Import from"),
                                           .filters = {{tr("All contact files"), {u"*.csv"_s, u"*.txt"_s, u"*.kpb"_s}},
                                                       {tr("CSV (Comma delimited)"), {u"*.csv"_s}},
                                                       {tr("Text (Tab delimited)"), {u"*.txt"_s}},
                                                       {tr("Brevio phonebook"), {u"*.kpb"_s}},
                                                       {tr("All files"), {u"*.*"_s}}},
                                           .initialPath = Utils::IfEmpty(proposal, Utils::MyDocumentsFolder() + u'/')},
                                          owner);
}

PhoneBookChange MaintenanceCommands::ImportFile() const
{
    const auto askFile = [this](const QString &proposal, QWidget *owner) { return AskImportFile(proposal, owner); };
    Import dialog(m_services, askFile, m_window);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const ParsedContacts parsed = Parse(dialog.ContactData());
    PhoneBookChange change = ImportContacts(parsed.contacts);
    if (parsed.contacts.Count() == 0)
        return change;
    const int imported = change.group ? change.group->Count() : 0;
    const bool isStopped = imported < parsed.contacts.Count();
    if (!isStopped && parsed.notice.isEmpty())
        return change;
    change.notices = {tr("%1 contacts").arg(imported)};
    if (isStopped) {
        const QString line = QString::number(parsed.lineOf[static_cast<size_t>(imported)]);
        change.notices += tr("line %1 of the file stopped the import").arg(line);
        change.failure->details = tr("Line %1 of the file stopped the import. Before it, %2 contacts came in.")
                                      .arg(line, QString::number(imported)) +
                                  u"\r\n\r\n"_s + OtherWay();
    }
    change.notices += parsed.notice;
    return change;
}

MaintenanceCommands::ParsedContacts MaintenanceCommands::Parse(const QString &text) const
{
    const WaitCursor hourglass;
    // The user's phone book does not take over the groups that the lines name.
    LxPhoneBook scratch(m_countries, m_clock);
    LxPhoneBook::ParsedLines lines = scratch.ParseContacts(text);
    ParsedContacts parsed{scratch.AllContacts().ContactList(), std::move(lines.lineOf), {}};
    if (lines.passedOver > 0 && parsed.contacts.Count() > 0)
        parsed.notice = tr("lines of the file that hold no contact: %1").arg(lines.passedOver);
    return parsed;
}

PhoneBookChange MaintenanceCommands::ImportContacts(const LxContactList &contacts) const
{
    if (contacts.Count() == 0) {
        PhoneBookChange change{.failure = NotImported(tr("No line of the file holds a mobile number of a known country "
                                                         "and another field, separated by a comma or a tab."))};
        change.failure->details = OtherWay();
        return change;
    }
    LxGroupList &groups = m_phoneBook.Groups();
    LxGroup &group = groups.CreateGroup(groups.UniqueName(tr("Imported")));
    const QString failure = Attempt([&] { m_phoneBook.Import(contacts, &group); });
    PhoneBookChange change{.shown = Shown::NewGroup, .group = &group, .command = tr("Import")};
    if (group.Count() == 0) {
        groups.DestroyGroup(group);
        change = {.shown = Shown::Everything};
    }
    if (!failure.isEmpty())
        change.failure = NotImported(failure);
    return change;
}

PhoneBookChange MaintenanceCommands::ImportForeign(const ImportChoice &choice) const
{
    std::optional<Candidates::Taken> result;
    const QString failure =
        Attempt([&] { result = Candidates::Take(choice.candidates, choice.withGroups, m_phoneBook); });
    if (!failure.isEmpty())
        return {.failure = NotImported(failure)};
    if (!result || !result->group)
        return {};
    const Candidates::Taken &taken = *result;
    const QLocale locale;
    const QString count = locale.toString(taken.contacts);
    const auto leftOut = static_cast<qlonglong>(choice.candidates.size()) - taken.contacts;
    QString status = taken.contacts == 1 ? tr("Imported 1 contact to group %1").arg(taken.group->Name())
                                         : tr("Imported %1 contacts to group %2").arg(count, taken.group->Name());
    if (leftOut > 0)
        status += leftOut == 1 ? tr("; 1 was left out") : tr("; %1 were left out").arg(locale.toString(leftOut));
    return {.shown = Shown::NewGroup, .group = taken.group, .status = status, .command = tr("Import")};
}
