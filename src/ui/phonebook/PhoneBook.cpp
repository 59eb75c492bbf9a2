#include "PhoneBook.h"

#include "Accessibility.h"
#include "Controls.h"
#include "Error.h"
#include "Icons.h"
#include "PhoneBookLists.h"
#include "PhoneBookMenus.h"
#include "RowKeys.h"
#include "UndoActions.h"
#include "ui_PhoneBook.h"

#include <QCloseEvent>
#include <QLayout>
#include <QScopedValueRollback>
#include <QShortcut>

#include <utility>

using namespace Qt::StringLiterals;

PhoneBook::PhoneBook(const Services &services, std::unique_ptr<LxPhoneBook> phoneBook)
    : m_services(services)
    , m_phoneBook(std::move(phoneBook))
    , m_commands(*m_phoneBook, services.countries, services.window, this)
    , m_maintenance(*m_phoneBook, services.countries, services.clock, services.window, this)
    , m_notices(services.window.settings)
{
    setObjectName(u"PhoneBook"_s);
}

PhoneBook::~PhoneBook()
{
    // An editor that is still open commits when it is hidden, which must not come after the phone book is gone.
    hide();
}

void PhoneBook::BuildControls()
{
    m_ui = std::make_unique<Ui::PhoneBook>();
    m_ui->setupUi(this);
    m_ui->actNewContact->setIcon(Icons::Get("new-contact"_L1));
    m_ui->actProperties->setIcon(Icons::Get("properties"_L1));
    m_ui->actNewGroup->setIcon(Icons::Get("new-group"_L1));
    m_ui->actImport->setIcon(Icons::Get("import"_L1));
    // It has no tip of its own, and would show its caption as one.
    m_ui->tbToolBar->widgetForAction(m_ui->actProperties)->setToolTip({});
    // The pop-ups come by the mouse or the menu key, not in the bar.
    m_ui->menuBar->removeAction(m_ui->mnuPopupGroups->menuAction());
    m_ui->menuBar->removeAction(m_ui->mnuPopupContacts->menuAction());
    m_ui->Splitter1->setStretchFactor(0, 0);
    m_ui->Splitter1->setStretchFactor(1, 1);
    Controls::SetFirstSize(*this, 120, 33);
    FitBar();
    // What is typed there is taken, and all is saved.
    new QShortcut(QKeySequence(u"Ctrl+W"_s), this, this, &PhoneBook::close);
    ConnectLists();
    ConnectCommands();
    Accessibility::AnnounceStatus(*m_ui->sbStatusBar);
    Status(tr("Ready"));
}

/// Makes what stands above the lists as large as the font asks for.
void PhoneBook::FitBar()
{
    constexpr int kFewestFindCharacters = 14;
    m_ui->txtFind->setMinimumWidth(kFewestFindCharacters * fontMetrics().averageCharWidth());
    const int icon = Controls::IconSide(*m_ui->tbToolBar);
    m_ui->tbToolBar->setIconSize(QSize(icon, icon));
}

void PhoneBook::ConnectLists()
{
    GroupListView &groups = *m_ui->lvwGroups;
    ContactListView &contacts = *m_ui->lvwContacts;
    m_lists = new PhoneBookLists(*m_phoneBook, groups, contacts, *m_ui->txtFind, this);
    connect(m_lists, &PhoneBookLists::SituationChanged, this, &PhoneBook::EnableCommands);
    connect(m_lists, &PhoneBookLists::Refilled, this, [this] {
        Status(m_lists->CountText());
        EnableCommands();
    });
    connect(&groups, &NameListView::NameTyped, this, [this](const QString &key, const QString &name) {
        Run([&] { return m_commands.RenameGroup(GetGroup(RowKeys::IdentityOf(key)), name); });
    });
    connect(&contacts, &NameListView::NameTyped, this, [this](const QString &key, const QString &name) {
        Run([&] { return m_commands.RenameContact(GetContact(RowKeys::IdentityOf(key)), name); });
    });
    connect(&contacts, &ContactListView::OpenAsked, m_ui->mnuEditContact, &QAction::trigger);
    connect(&contacts, &QTreeView::customContextMenuRequested, this,
            [this](const QPoint &position) { PopUp(*m_ui->mnuPopupContacts, *m_ui->lvwContacts, position); });
    connect(&groups, &QTreeView::customContextMenuRequested, this,
            [this](const QPoint &position) { PopUp(*m_ui->mnuPopupGroups, *m_ui->lvwGroups, position); });
}

void PhoneBook::ConnectCommands()
{
    m_menus = new PhoneBookMenus({*m_ui, m_services, *m_phoneBook, *m_lists, m_commands, m_maintenance}, this);
    connect(m_menus, &PhoneBookMenus::CommandGiven, this, [this](const PhoneBookMenus::Work &work) {
        m_lists->CommitEditors();
        Run(work);
    });
    m_undo = new UndoActions(*m_ui->mnuUndo, *m_ui->mnuRedo, m_phoneBook->History(), m_services.window.quietTime, this);
    connect(m_undo, &UndoActions::UndoAsked, this, [this] {
        m_lists->CommitEditors();
        Show(m_commands.Undo(ChosenGroup()));
    });
    connect(m_undo, &UndoActions::RedoAsked, this, [this] {
        m_lists->CommitEditors();
        Show(m_commands.Redo(ChosenGroup()));
    });
    for (const QMenu *menu : {m_ui->mnuEdit, m_ui->mnuContacts, m_ui->mnuPopupContacts, m_ui->mnuPopupGroups})
        connect(menu, &QMenu::aboutToShow, this, &PhoneBook::EnableCommands);
}

void PhoneBook::EnableCommands()
{
    m_menus->Enable();
    m_undo->Refresh();
}

PhoneBookChange PhoneBook::Run(const std::function<PhoneBookChange()> &command)
{
    PhoneBookChange change;
    {
        PhoneBookHistory::Recording recording(m_phoneBook->History());
        change = command();
        recording.SetName(change.command);
    }
    if (m_undo)
        m_undo->Refresh();
    Show(change);
    return change;
}

void PhoneBook::PopUp(QMenu &menu, const QTreeView &list, const QPoint &position)
{
    EnableCommands();
    menu.popup(list.viewport()->mapToGlobal(position));
}

void PhoneBook::LoadData()
{
    m_phoneBook->OpenPhoneBook(LxPhoneBook::DefaultFileName());
}

LxContactPtr PhoneBook::GetContact(int contactID) const
{
    return m_phoneBook->AllContacts().GetContact(contactID);
}

LxGroup &PhoneBook::GetGroup(int groupID)
{
    return m_phoneBook->Groups().GetGroup(groupID);
}

void PhoneBook::AddContact(const LxContactPtr &contact)
{
    {
        const PhoneBookHistory::Recording recording(m_phoneBook->History(), tr("New Contact"));
        m_phoneBook->AllContacts().Add(contact);
    }
    if (!m_isLoaded)
        return;
    PhoneBookChange change{.shown = PhoneBookChange::Shown::NewContact};
    change.contacts.Add(contact);
    m_lists->Show(change);
}

bool PhoneBook::EditContact(const LxContactPtr &contact, QWidget *parent)
{
    return Run([&] { return m_commands.Edit(contact, parent); }).IsAny();
}

bool PhoneBook::EditNewContact(const LxContactPtr &contact, const NewContactOptions &options, QWidget *parent)
{
    LxGroup *group = options.joinsChosenGroup ? &ChosenGroup() : nullptr;
    return Run([&] { return m_commands.EditNew(contact, options.name, options.number, group, parent); }).IsAny();
}

LxGroup &PhoneBook::CreateNewGroup(bool addSelectedContacts)
{
    const LxContactList members = addSelectedContacts ? Selected() : LxContactList();
    const PhoneBookChange change = Run([&] { return m_commands.CreateGroup(members); });
    return GetGroup(change.group->GroupID());
}

QString PhoneBook::AskImportContactsFilename(const QString &proposal, QWidget *owner)
{
    return m_maintenance.AskImportFile(proposal, owner);
}

LxContactList PhoneBook::ParseContacts(const QString &text)
{
    const MaintenanceCommands::ParsedContacts parsed = m_maintenance.Parse(text);
    m_notices.Add(parsed.notice);
    return parsed.contacts;
}

void PhoneBook::ImportContactsData(const LxContactList &contacts)
{
    Run([&] { return m_maintenance.ImportContacts(contacts); });
}

void PhoneBook::Show(const PhoneBookChange &change)
{
    if (m_isLoaded)
        m_lists->Show(change);
    if (!change.status.isEmpty())
        Status(change.status);
    for (const QString &notice : change.notices)
        m_notices.Add(notice);
    if (change.MustBeSaved())
        Autosave();
    TellNotices();
    if (change.failure)
        m_services.window.prompts.ShowMessageBox(*change.failure, this);
    else if (m_isLoaded && change.shown == PhoneBookChange::Shown::NewGroup)
        m_lists->EditGroupName();
}

void PhoneBook::Status(const QString &text)
{
    if (m_ui)
        m_ui->sbStatusBar->showMessage(text);
}

void PhoneBook::TellNotices()
{
    // While nobody can see the window, the notices wait.
    if (!m_isLoaded)
        return;
    if (const QString notices = m_notices.Take(); !notices.isEmpty())
        Status(notices);
}

LxGroup &PhoneBook::ChosenGroup() const
{
    return m_isLoaded ? m_lists->ChosenGroup() : m_phoneBook->AllContacts();
}

LxContactList PhoneBook::Selected() const
{
    return m_isLoaded ? m_lists->Selected() : LxContactList();
}

void PhoneBook::SelectContact(const LxContact &contact)
{
    if (m_isLoaded)
        m_lists->SelectContact(contact);
}

void PhoneBook::SelectGroup(const LxGroup &group)
{
    if (m_isLoaded)
        m_lists->SelectGroup(group);
}

bool PhoneBook::Autosave()
{
    if (m_isClosing)
        return true;
    const bool isSaved = Save();
    TellNotices();
    return isSaved;
}

bool PhoneBook::Save()
{
    try {
        m_notices.Add(KeptFileNotice(m_phoneBook->SavePhoneBook()));
        return true;
    } catch (const Error &error) {
        m_services.window.prompts.ShowMessageBox(
            {tr("The phone book could not be saved: %1").arg(error.Description()), PromptIcon::Exclamation}, this);
        return false;
    }
}

void PhoneBook::Load()
{
    if (!m_ui)
        BuildControls();
    const Settings &settings = m_services.window.settings;
    Controls::RestoreWindowPosition(settings, *this);
    // A splitter shares out the width that it has, which before the layout is not that of the window.
    layout()->activate();
    centralWidget()->layout()->activate();
    const auto groups = Controls::StoredControlSize(settings, *m_ui->picGroupsContainer);
    const auto contacts = Controls::StoredControlSize(settings, *m_ui->picContactsContainer);
    constexpr int kFewestCharacters = 17;
    const int width = m_ui->Splitter1->width();
    const int first = qMax(width / 4, kFewestCharacters * fontMetrics().averageCharWidth());
    m_ui->Splitter1->setSizes(groups && contacts ? QList{groups->width(), contacts->width()}
                                                 : QList{first, width - first});
    m_lists->Load(settings);
    m_isLoaded = true;
    TellNotices();
}

void PhoneBook::StoreLayout()
{
    Settings &settings = m_services.window.settings;
    Controls::SaveWindowPosition(settings, *this);
    m_lists->SaveColumns(settings);
    Controls::SaveControlSize(settings, *m_ui->picContactsContainer);
    Controls::SaveControlSize(settings, *m_ui->picGroupsContainer);
}

bool PhoneBook::event(QEvent *event)
{
    // Menu entries have no tips of their own, and must not clear the count by an empty one.
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

void PhoneBook::setVisible(bool visible)
{
    // Before it is visible, as what is made in a visible window is laid out later.
    if (visible && !m_isLoaded)
        Load();
    QMainWindow::setVisible(visible);
}

void PhoneBook::closeEvent(QCloseEvent *event)
{
    event->accept();
    if (!m_isLoaded)
        return;
    // What cannot be saved would be lost with the window. A notice waits until the window is seen again.
    if (!CommitAndSave()) {
        event->ignore();
        return;
    }
    StoreLayout();
    m_isLoaded = false;
}

bool PhoneBook::CommitAndSave()
{
    const QScopedValueRollback closing(m_isClosing, true);
    m_lists->CommitEditors();
    return Save();
}

void PhoneBook::Store()
{
    if (!m_isLoaded)
        return;
    CommitAndSave();
    StoreLayout();
}

void PhoneBook::CloseForGood()
{
    if (!m_isLoaded)
        return;
    Store();
    m_isLoaded = false;
    close();
}
