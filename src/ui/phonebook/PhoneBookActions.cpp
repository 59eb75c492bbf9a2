#include "ChooseGroup.h"
#include "ContactModel.h"
#include "GroupModel.h"
#include "NameDelegate.h"
#include "PhoneBook.h"
#include "ui_PhoneBook.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

// What the window does for each command: find what it is for, have it done, show what came of it, save.

void PhoneBook::NewContact()
{
    EditNewContact(m_phoneBook->CreateHomeContact(), {.name = {}, .number = {}, .joinsChosenGroup = true}, this);
}

void PhoneBook::Properties()
{
    const LxContactList selected = SelectedContacts();
    if (selected.Count() == 0)
        NewContact();
    else
        EditContact(*selected.begin(), this);
}

void PhoneBook::Delete()
{
    if (m_lastList == m_ui->lvwGroups)
        DeleteGroup();
    else
        DeleteContacts();
}

void PhoneBook::DeleteContacts()
{
    const LxContactList selected = SelectedContacts();
    const int current = m_ui->lvwContacts->currentIndex().row();
    int above = 0;
    for (int row = 0; row < current; ++row)
        above += selected.Contains(*m_contacts->ContactAt(row)) ? 1 : 0;
    if (!m_commands.DeleteContacts(selected))
        return;
    // Many rows are gone sooner with all of them.
    constexpr int kManyRows = 20;
    if (selected.Count() >= kManyRows)
        m_contacts->Fill(ChosenGroup(), m_ui->txtFind->text());
    else
        m_contacts->Remove(selected);
    m_ui->lvwContacts->clearSelection();
    const int next = qMin(current - above, m_contacts->rowCount() - 1);
    m_ui->lvwContacts->selectionModel()->setCurrentIndex(m_contacts->index(next, 0), QItemSelectionModel::NoUpdate);
    ShowCount();
    EnableCommands();
    Autosave();
}

void PhoneBook::DeleteGroup()
{
    if (!m_commands.DeleteGroup(ChosenGroup()))
        return;
    RefillLists(m_phoneBook->AllContacts());
    Autosave();
}

LxGroup &PhoneBook::CreateNewGroup(bool addSelectedContacts)
{
    LxGroup &group =
        m_commands.CreateGroup(tr("New Group"), addSelectedContacts ? SelectedContacts() : LxContactList());
    ShowNewGroup(group);
    Autosave();
    EditGroupName();
    return group;
}

void PhoneBook::ShowNewGroup(const LxGroup &group)
{
    if (!m_isLoaded)
        return;
    FillGroups(group);
    GroupClicked();
}

void PhoneBook::EditGroupName()
{
    if (!m_isLoaded)
        return;
    const QModelIndex current = m_ui->lvwGroups->currentIndex();
    if (!m_groups->flags(current).testFlag(Qt::ItemIsEditable))
        return;
    m_ui->lvwGroups->setFocus();
    m_ui->lvwGroups->edit(current);
}

void PhoneBook::RenameContact(const LxContactPtr &contact, const QString &name)
{
    if (!m_commands.RenameContact(*contact, name))
        return;
    m_contacts->Rewrite(*contact);
    Autosave();
}

void PhoneBook::RenameGroup(int groupID, const QString &name)
{
    LxGroup &group = GetGroup(groupID);
    if (!m_commands.RenameGroup(group, name))
        return;
    m_groups->Rewrite(group);
    FillContactsInPlace();
    Autosave();
}

void PhoneBook::AddToExistingGroup()
{
    const LxGroupList others = m_phoneBook->GroupsExcludingAllContacts();
    if (others.Count() == 0)
        return;
    ChooseGroup dialog(m_services.window, this);
    dialog.SetActionTitle(tr("Select Group to Add Contacts to"));
    dialog.Populate(others);
    dialog.SetChosenGroupID(ChosenGroup().GroupID());
    dialog.exec();
    if (dialog.Canceled() || dialog.ChosenGroupID() == 0)
        return;
    const LxContactList selected = SelectedContacts();
    m_commands.AddToGroup(selected, GetGroup(dialog.ChosenGroupID()));
    RewriteSelected(selected);
}

void PhoneBook::RemoveFromAllGroups()
{
    const LxContactList selected = SelectedContacts();
    m_commands.RemoveFromAllGroups(selected);
    RewriteSelected(selected);
}

void PhoneBook::RemoveFromThisGroup()
{
    // The rows stay until the list is next filled.
    const LxContactList selected = SelectedContacts();
    if (m_commands.RemoveFromGroup(selected, ChosenGroup()))
        RewriteSelected(selected);
}

void PhoneBook::RewriteSelected(const LxContactList &contacts)
{
    m_contacts->Rewrite(contacts);
    ShowCount();
    Autosave();
}

void PhoneBook::SelectAll()
{
    m_ui->lvwContacts->selectAll();
}

void PhoneBook::UnloadComposeWindows()
{
    // From the last to the first, as closing one may close others.
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        if ((*window)->objectName() == "Compose"_L1)
            (*window)->close();
    }
}

void PhoneBook::ShowContactsMenu(const QPoint &position)
{
    EnableCommands();
    m_ui->mnuPopupContacts->popup(m_ui->lvwContacts->viewport()->mapToGlobal(position));
}

void PhoneBook::ShowGroupsMenu(const QPoint &position)
{
    // A right click on the chosen group chooses it as well.
    if (!m_ui->txtFind->text().isEmpty())
        GroupClicked();
    EnableCommands();
    m_ui->mnuPopupGroups->popup(m_ui->lvwGroups->viewport()->mapToGlobal(position));
}

void PhoneBook::CommitEditor()
{
    m_groupNames->Commit();
    m_contactNames->Commit();
    // What was typed is told once the editor is gone, which is now.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

bool PhoneBook::event(QEvent *event)
{
    // Menu entries have no tips of their own, and must not clear the count by an empty one.
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

bool PhoneBook::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && (watched == m_ui->lvwGroups || watched == m_ui->lvwContacts)) {
        m_lastList = watched == m_ui->lvwGroups ? m_ui->lvwGroups : m_ui->lvwContacts;
        EnableCommands();
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
        if (watched == m_ui->txtFind && isEnter) {
            m_ui->lvwContacts->setFocus();
            return true;
        }
        if (watched == m_ui->txtFind && key == Qt::Key_Escape) {
            m_ui->txtFind->clear();
            return true;
        }
        // Not the key that ended an editor in the list, which comes by here as well.
        if (watched == m_ui->lvwContacts && focusWidget() == watched) {
            if (isEnter) {
                m_ui->mnuEditContact->trigger();
                return true;
            }
            if (key == Qt::Key_F2) {
                // A click on another column made that one current, which cannot be edited.
                if (const QModelIndex current = m_ui->lvwContacts->currentIndex(); current.isValid())
                    m_ui->lvwContacts->edit(current.siblingAtColumn(ContactModel::Name));
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}
