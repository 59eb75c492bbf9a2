#include "PhoneBookMenus.h"

#include "MaintenanceCommands.h"
#include "PhoneBookCommands.h"
#include "PhoneBookLists.h"
#include "VendorPages.h"
#include "VendorSite.h"
#include "ui_PhoneBook.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace {

void UnloadComposeWindows()
{
    // From the last to the first, as closing one may close others.
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        if ((*window)->objectName() == "Compose"_L1)
            (*window)->close();
    }
}

} // namespace

PhoneBookMenus::PhoneBookMenus(const Parts &parts, PhoneBook *window)
    : QObject(window)
    , m_parts(parts)
    , m_window(window)
    , m_help(parts.services.window.quietTime)
    , m_table(Table())
{
    for (const Command &command : m_table) {
        for (const QAction *starter : command.starters) {
            if (command.run)
                connect(starter, &QAction::triggered, this, [this, &command] { emit CommandGiven(command.run); });
        }
    }
}

void PhoneBookMenus::Enable()
{
    const MenuRules::Situation now = m_parts.lists.CurrentSituation();
    for (const Command &command : m_table) {
        for (QAction *starter : command.starters)
            starter->setEnabled(command.mayRun(now));
    }
}

/// A new command is one row here and one function of the command classes.
std::vector<PhoneBookMenus::Command> PhoneBookMenus::Table()
{
    using namespace MenuRules;
    const Ui::PhoneBook &ui = m_parts.ui;
    const PhoneBookLists &lists = m_parts.lists;
    const PhoneBookCommands &commands = m_parts.commands;
    const MaintenanceCommands &maintenance = m_parts.maintenance;
    const auto newGroup = [&commands] { return commands.CreateGroup({}); };
    const auto newGroupOfSelected = [&commands, &lists] { return commands.CreateGroup(lists.Selected()); };
    const auto addToGroup = [&commands, &lists] {
        return commands.AddToExistingGroup(lists.Selected(), lists.ChosenGroup());
    };
    const auto leaveAllGroups = [&commands, &lists] { return commands.RemoveFromAllGroups(lists.Selected()); };
    const auto leaveThisGroup = [&commands, &lists] {
        return commands.RemoveFromGroup(lists.Selected(), lists.ChosenGroup());
    };
    const auto show = [](auto work) {
        return [work] {
            work();
            return PhoneBookChange();
        };
    };
    const auto selectAll = show([list = ui.lvwContacts] { list->selectAll(); });
    const auto editName = show([list = ui.lvwGroups] { list->EditCurrentName(); });
    const auto help = show([this] {
        m_help.Start([this] { VendorPages::Open(VendorSite::kHelpPath, m_parts.services.window, m_window); });
    });
    return {
        {{ui.mnuAddContact, ui.mnuPopupNewContact, ui.actNewContact}, [this] { return NewContact(); }},
        {{ui.mnuEditContact, ui.mnuPopupEditContact}, [this] { return Properties(); }, CanActOnContacts},
        {{ui.actProperties}, [this] { return Properties(); }},
        {{ui.mnuDelete}, [this] { return Delete(); }, CanDelete},
        {{ui.mnuPopupDeleteContacts},
         [&commands, &lists] { return commands.Delete(lists.Selected()); },
         CanActOnContacts},
        {{ui.mnuPopupDeleteGroup},
         [&commands, &lists] { return commands.DeleteGroup(lists.ChosenGroup()); },
         CanChangeGroup},
        {{ui.mnuNewGroup, ui.mnuPopupNewGroup, ui.actNewGroup}, newGroup},
        {{ui.mnuEditGroupName, ui.mnuPopupRenameGroup}, editName, CanChangeGroup},
        {{ui.mnuAddContactsTo->menuAction(), ui.mnuPopupAddContactsTo->menuAction()}, nullptr, CanActOnContacts},
        {{ui.mnuAddContactsToNewGroup, ui.mnuPopupAddContactsToNewGroup}, newGroupOfSelected, CanActOnContacts},
        {{ui.mnuAddContactsToExistingGroup, ui.mnuPopupAddContactsToExistingGroup}, addToGroup, CanAddToExistingGroup},
        {{ui.mnuRemoveContactsFrom->menuAction(), ui.mnuPopupRemoveContactsFrom->menuAction()},
         nullptr,
         CanRemoveFromGroups},
        {{ui.mnuRemoveContactsFromAllGroups, ui.mnuPopupRemoveContactsFromAllGroups},
         leaveAllGroups,
         CanRemoveFromGroups},
        {{ui.mnuRemoveContactsFromThisGroup, ui.mnuPopupRemoveContactsFromThisGroup},
         leaveThisGroup,
         CanRemoveFromThisGroup},
        {{ui.mnuSelectAllContacts}, selectAll, CanSelectAll},
        {{ui.mnuPopupSelectAllContacts}, selectAll, HasRows},
        {{ui.mnuMergeDuplicates}, [&maintenance] { return maintenance.MergeDuplicates(); }},
        {{ui.mnuExclude}, [&maintenance] { return maintenance.DeleteByList(); }},
        {{ui.mnuBackup}, [&maintenance] { return maintenance.Backup(); }},
        {{ui.mnuRestore}, [&maintenance, &lists] { return maintenance.Restore(lists.ChosenGroup()); }},
        {{ui.mnuContactsImport, ui.actImport}, [&maintenance] { return maintenance.ImportFile(); }},
        {{ui.mnuContactsImportOther}, [this] { return ImportOther(); }},
        {{ui.mnuContactsExport}, [&maintenance, &lists] { return maintenance.Export(lists.ChosenGroup()); }},
        {{ui.mnuOnlineHelp}, help},
        {{ui.mnuExit}, show(&UnloadComposeWindows)},
    };
}

PhoneBookChange PhoneBookMenus::NewContact()
{
    return m_parts.commands.EditNew(m_parts.phoneBook.CreateHomeContact(), {}, {}, &m_parts.lists.ChosenGroup(),
                                    m_window);
}

PhoneBookChange PhoneBookMenus::Properties()
{
    const LxContactList selected = m_parts.lists.Selected();
    return selected.Count() == 0 ? NewContact() : m_parts.commands.Edit(*selected.begin(), m_window);
}

PhoneBookChange PhoneBookMenus::Delete()
{
    return m_parts.lists.IsInGroups() ? m_parts.commands.DeleteGroup(m_parts.lists.ChosenGroup())
                                      : m_parts.commands.Delete(m_parts.lists.Selected());
}

PhoneBookChange PhoneBookMenus::ImportOther()
{
    const std::optional<ImportChoice> choice = m_parts.services.askForeignContacts(m_parts.phoneBook, m_window);
    return choice ? m_parts.maintenance.ImportForeign(*choice) : PhoneBookChange();
}
