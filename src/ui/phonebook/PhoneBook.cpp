#include "PhoneBook.h"

#include "ContactModel.h"
#include "ContactProperties.h"
#include "Controls.h"
#include "Error.h"
#include "GroupModel.h"
#include "Icons.h"
#include "NameDelegate.h"
#include "Prompts.h"
#include "SelectAllOnFocus.h"
#include "Settings.h"
#include "Utils.h"
#include "VendorPages.h"
#include "VendorSite.h"
#include "WaitCursor.h"
#include "ui_PhoneBook.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QString kColumnsSection = u"Contact Columns"_s;
const QString kSortBy = u"SortBy"_s;
const QString kReverseSort = u"ReverseSort"_s;

} // namespace

PhoneBook::PhoneBook(const Services &services, std::unique_ptr<LxPhoneBook> phoneBook)
    : m_services(services)
    , m_phoneBook(std::move(phoneBook))
    , m_commands(*m_phoneBook, services.window.prompts, this)
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
    m_groups = new GroupModel(*m_phoneBook, this);
    m_contacts = new ContactModel(*m_phoneBook, this);
    m_groupNames = new NameDelegate(LxGroup::NameMaxLength, this);
    m_contactNames = new NameDelegate(LxContact::NameMaxLength, this);
    m_ui->actNewContact->setIcon(Icons::Get("new-contact"_L1));
    m_ui->actProperties->setIcon(Icons::Get("properties"_L1));
    m_ui->actNewGroup->setIcon(Icons::Get("new-group"_L1));
    m_ui->actImport->setIcon(Icons::Get("import"_L1));
    // The pop-ups come by the mouse or the menu key, not in the bar.
    m_ui->menuBar->removeAction(m_ui->mnuPopupGroups->menuAction());
    m_ui->menuBar->removeAction(m_ui->mnuPopupContacts->menuAction());
    m_ui->Splitter1->setStretchFactor(0, 0);
    m_ui->Splitter1->setStretchFactor(1, 1);
    m_ui->Splitter1->setSizes({180, 540});
    ConnectLists();
    ConnectMenus();
    Status(tr("Ready"));
}

void PhoneBook::ConnectLists()
{
    for (QTreeView *list : {m_ui->lvwGroups, m_ui->lvwContacts}) {
        Controls::SetUpReport(*list);
        list->installEventFilter(this);
    }
    m_ui->lvwGroups->setModel(m_groups);
    m_ui->lvwGroups->setItemDelegate(m_groupNames);
    m_ui->lvwContacts->setModel(m_contacts);
    m_ui->lvwContacts->setItemDelegate(m_contactNames);
    m_ui->lvwContacts->header()->setSectionsClickable(true);
    m_ui->lvwContacts->header()->setSortIndicatorShown(true);
    m_ui->txtFind->installEventFilter(this);
    new SelectAllOnFocus(m_ui->txtFind);

    connect(m_ui->txtFind, &QLineEdit::textChanged, this, &PhoneBook::FindTyped);
    connect(m_ui->lvwContacts->header(), &QHeaderView::sectionClicked, this, &PhoneBook::SortByColumn);
    connect(m_ui->lvwGroups->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &PhoneBook::GroupClicked);
    connect(m_ui->lvwGroups->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PhoneBook::KeepGroupSelected);
    // A click on the chosen group is no change, and yet clears the find text.
    connect(m_ui->lvwGroups, &QTreeView::clicked, this, [this] {
        if (!m_ui->txtFind->text().isEmpty())
            GroupClicked();
    });
    // Queued: the list stops waiting to open the editor for the first click only after it has told of the second.
    connect(m_ui->lvwContacts, &QTreeView::doubleClicked, m_ui->mnuEditContact, &QAction::trigger,
            Qt::QueuedConnection);
    connect(m_ui->lvwContacts->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PhoneBook::EnableCommands);
    connect(m_ui->lvwContacts, &QTreeView::customContextMenuRequested, this, &PhoneBook::ShowContactsMenu);
    connect(m_ui->lvwGroups, &QTreeView::customContextMenuRequested, this, &PhoneBook::ShowGroupsMenu);
    // The command runs once the editor is gone, as it may refill the list.
    connect(m_contacts, &ContactModel::NameTyped, this, &PhoneBook::RenameContact, Qt::QueuedConnection);
    connect(m_groups, &GroupModel::NameTyped, this, &PhoneBook::RenameGroup, Qt::QueuedConnection);
}

void PhoneBook::ConnectMenus()
{
    const auto runs = [this](std::initializer_list<QAction *> starters, auto command) {
        for (QAction *starter : starters)
            connect(starter, &QAction::triggered, this, [this, command] {
                CommitEditor();
                std::invoke(command, this);
            });
    };
    runs({m_ui->mnuAddContact, m_ui->mnuPopupNewContact, m_ui->actNewContact}, &PhoneBook::NewContact);
    runs({m_ui->mnuEditContact, m_ui->mnuPopupEditContact, m_ui->actProperties}, &PhoneBook::Properties);
    runs({m_ui->mnuDelete}, &PhoneBook::Delete);
    runs({m_ui->mnuPopupDeleteContacts}, &PhoneBook::DeleteContacts);
    runs({m_ui->mnuPopupDeleteGroup}, &PhoneBook::DeleteGroup);
    runs({m_ui->mnuNewGroup, m_ui->mnuPopupNewGroup, m_ui->actNewGroup},
         [](PhoneBook *window) { window->CreateNewGroup(false); });
    runs({m_ui->mnuEditGroupName, m_ui->mnuPopupRenameGroup}, &PhoneBook::EditGroupName);
    runs({m_ui->mnuAddContactsToNewGroup, m_ui->mnuPopupAddContactsToNewGroup},
         [](PhoneBook *window) { window->CreateNewGroup(true); });
    runs({m_ui->mnuAddContactsToExistingGroup, m_ui->mnuPopupAddContactsToExistingGroup},
         &PhoneBook::AddToExistingGroup);
    runs({m_ui->mnuRemoveContactsFromAllGroups, m_ui->mnuPopupRemoveContactsFromAllGroups},
         &PhoneBook::RemoveFromAllGroups);
    runs({m_ui->mnuRemoveContactsFromThisGroup, m_ui->mnuPopupRemoveContactsFromThisGroup},
         &PhoneBook::RemoveFromThisGroup);
    runs({m_ui->mnuSelectAllContacts, m_ui->mnuPopupSelectAllContacts}, &PhoneBook::SelectAll);
    runs({m_ui->mnuMergeDuplicates}, &PhoneBook::MergeDuplicates);
    runs({m_ui->mnuExclude}, &PhoneBook::DeleteByList);
    runs({m_ui->mnuBackup}, &PhoneBook::Backup);
    runs({m_ui->mnuRestore}, &PhoneBook::Restore);
    runs({m_ui->mnuContactsImport, m_ui->actImport}, &PhoneBook::ImportContacts);
    runs({m_ui->mnuContactsExport}, &PhoneBook::Export);
    runs({m_ui->mnuOnlineHelp},
         [](PhoneBook *window) { VendorPages::Open(VendorSite::kHelpPath, window->m_services.window, window); });
    runs({m_ui->mnuExit}, &PhoneBook::UnloadComposeWindows);
    for (QMenu *menu : {m_ui->mnuEdit, m_ui->mnuContacts, m_ui->mnuPopupContacts, m_ui->mnuPopupGroups})
        connect(menu, &QMenu::aboutToShow, this, &PhoneBook::EnableCommands);
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
    m_phoneBook->AllContacts().Add(contact);
    if (!m_isLoaded)
        return;
    if (ChosenGroup().IsMember(*contact))
        m_contacts->Insert(contact);
    SelectContact(*contact);
}

bool PhoneBook::EditContact(const LxContactPtr &contact, QWidget *parent)
{
    ContactProperties dialog(m_services.countries, m_services.window, parent);
    dialog.Setup(contact, *m_phoneBook, false, {}, {});
    if (!dialog.Canceled())
        dialog.exec();
    if (dialog.Canceled())
        return false;
    if (m_isLoaded)
        m_contacts->Rewrite(*contact);
    ShowEdited();
    return true;
}

bool PhoneBook::EditNewContact(const LxContactPtr &contact, const NewContactOptions &options, QWidget *parent)
{
    if (LxGroup &chosen = ChosenGroup(); options.joinsChosenGroup && &chosen != &m_phoneBook->AllContacts())
        chosen.Add(contact);
    ContactProperties dialog(m_services.countries, m_services.window, parent);
    dialog.Setup(contact, *m_phoneBook, true, options.name, options.number);
    if (!dialog.Canceled())
        dialog.exec();
    if (dialog.Canceled()) {
        contact->Destroy();
        return false;
    }
    AddContact(contact);
    ShowEdited();
    return true;
}

void PhoneBook::ShowEdited()
{
    if (m_isLoaded)
        ShowCount();
    Autosave();
}

bool PhoneBook::Autosave()
{
    if (m_isClosing)
        return true;
    const bool isSaved = Save();
    ShowNotice();
    return isSaved;
}

bool PhoneBook::Save()
{
    try {
        NoteKeptFile(m_phoneBook->SavePhoneBook());
        return true;
    } catch (const Error &error) {
        m_services.window.prompts.ShowMessageBox(
            {tr("The phone book could not be saved: ") + error.Description(), PromptIcon::Exclamation}, this);
        return false;
    }
}

void PhoneBook::AddNotice(const QString &notice)
{
    if (!m_notice.isEmpty())
        m_notice += "; "_L1;
    m_notice += notice;
}

void PhoneBook::NoteKeptFile(const QString &path)
{
    if (!path.isEmpty())
        AddNotice(tr("The old phone book file was kept as ") + Utils::FileNameOfPath(path));
}

void PhoneBook::ShowNotice()
{
    // While nobody can see the window, the notice waits.
    if (m_isLoaded && !m_notice.isEmpty())
        Status(std::exchange(m_notice, {}));
}

void PhoneBook::Status(const QString &text)
{
    if (m_ui)
        m_ui->sbStatusBar->showMessage(text);
}

void PhoneBook::SelectContact(const LxContact &contact)
{
    if (!m_isLoaded)
        return;
    QItemSelectionModel *selection = m_ui->lvwContacts->selectionModel();
    selection->clearSelection();
    const int row = m_contacts->RowOf(contact);
    if (row < 0)
        return;
    const QModelIndex index = m_contacts->index(row, 0);
    selection->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_ui->lvwContacts->scrollTo(index);
}

LxGroup &PhoneBook::ChosenGroup() const
{
    if (!m_isLoaded)
        return m_phoneBook->AllContacts();
    const QModelIndex current = m_ui->lvwGroups->currentIndex();
    return current.isValid() ? m_groups->GroupAt(current.row()) : m_phoneBook->AllContacts();
}

LxContactList PhoneBook::SelectedContacts() const
{
    // selectedRows() would look at every range for each row, and thousands of rows may be as many ranges.
    std::vector<int> rows;
    for (const QItemSelectionRange &range : m_ui->lvwContacts->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    LxContactList contacts;
    for (const int row : rows)
        contacts.Add(m_contacts->ContactAt(row));
    return contacts;
}

void PhoneBook::SelectGroup(const LxGroup &group)
{
    if (!m_isLoaded || m_groups->RowOf(group.GroupID()) < 0)
        return;
    ChooseRow(group);
    GroupClicked();
}

void PhoneBook::FillGroups(const LxGroup &toChoose)
{
    m_groups->Fill();
    ChooseRow(toChoose);
}

void PhoneBook::ChooseRow(const LxGroup &group)
{
    const QSignalBlocker blocker(m_ui->lvwGroups->selectionModel());
    const QModelIndex index = m_groups->index(qMax(0, m_groups->RowOf(group.GroupID())), 0);
    m_ui->lvwGroups->setCurrentIndex(index);
    m_ui->lvwGroups->scrollTo(index);
    m_ui->lvwGroups->viewport()->update();
}

void PhoneBook::KeepGroupSelected()
{
    // Ctrl and a click, which take the selection off, leave the group chosen.
    QItemSelectionModel *selection = m_ui->lvwGroups->selectionModel();
    if (!selection->hasSelection())
        selection->select(selection->currentIndex(), QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void PhoneBook::FillContacts()
{
    m_contacts->Fill(ChosenGroup(), m_ui->txtFind->text());
    ShowCount();
    EnableCommands();
}

void PhoneBook::FillContactsInPlace()
{
    QTreeView &list = *m_ui->lvwContacts;
    const LxContactList selected = SelectedContacts();
    const QModelIndex current = list.currentIndex();
    const LxContactPtr currentContact = current.isValid() ? m_contacts->ContactAt(current.row()) : nullptr;
    const int scrolledTo = list.verticalScrollBar()->value();
    FillContacts();
    QItemSelection rows;
    const auto isSelected = [&](int row) { return selected.Contains(*m_contacts->ContactAt(row)); };
    const int count = m_contacts->rowCount();
    for (int row = 0; row < count; ++row) {
        if (!isSelected(row))
            continue;
        // Neighbours share a range: what the list does with thousands of ranges takes their number squared.
        const int first = row;
        while (row + 1 < count && isSelected(row + 1))
            ++row;
        rows.select(m_contacts->index(first, 0), m_contacts->index(row, ContactModel::ColumnCount - 1));
    }
    list.selectionModel()->select(rows, QItemSelectionModel::Select);
    const int currentRow = currentContact ? m_contacts->RowOf(*currentContact) : -1;
    list.selectionModel()->setCurrentIndex(m_contacts->index(currentRow, 0), QItemSelectionModel::NoUpdate);
    list.verticalScrollBar()->setValue(scrolledTo);
}

void PhoneBook::FindTyped()
{
    CommitEditor();
    {
        const WaitCursor hourglass;
        if (m_contacts->IsStale())
            m_contacts->Fill(ChosenGroup(), m_ui->txtFind->text());
        else
            m_contacts->Find(m_ui->txtFind->text());
    }
    m_ui->lvwContacts->scrollToTop();
    ShowCount();
    EnableCommands();
}

void PhoneBook::GroupClicked()
{
    CommitEditor();
    const QSignalBlocker blocker(m_ui->txtFind);
    m_ui->txtFind->clear();
    FillContacts();
    m_ui->lvwContacts->scrollToTop();
}

void PhoneBook::SortByColumn(int column)
{
    CommitEditor();
    // The first click on a column sorts by it; clicking it again turns the order.
    m_reverseSort = column + 1 == m_sortBy && !m_reverseSort;
    m_sortBy = column + 1;
    ApplySort();
}

void PhoneBook::ApplySort()
{
    const bool isColumn = m_sortBy >= 1 && m_sortBy <= ContactModel::ColumnCount;
    const int column = isColumn ? m_sortBy - 1 : ContactModel::Name;
    const Qt::SortOrder order = m_reverseSort ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_contacts->SortBy(column, order);
    m_ui->lvwContacts->header()->setSortIndicator(column, order);
}

void PhoneBook::ShowCount()
{
    const QString found = m_ui->txtFind->text().isEmpty() ? QString() : tr(" found");
    Status(QString::number(m_contacts->rowCount()) + tr(" contacts") + found);
}

MenuRules::Situation PhoneBook::CurrentSituation() const
{
    return {.isInGroups = m_lastList == m_ui->lvwGroups,
            .isEveryoneChosen = &ChosenGroup() == &m_phoneBook->AllContacts(),
            .hasSelectedContact = m_ui->lvwContacts->selectionModel()->hasSelection(),
            .hasRows = m_contacts->rowCount() > 0,
            .hasOtherGroups = m_groups->rowCount() > 1};
}

void PhoneBook::EnableCommands()
{
    using namespace MenuRules;
    const Situation now = CurrentSituation();
    const auto enable = [](std::initializer_list<QAction *> actions, bool enabled) {
        for (QAction *action : actions)
            action->setEnabled(enabled);
    };
    enable({m_ui->mnuDelete}, CanDelete(now));
    enable({m_ui->mnuEditContact, m_ui->mnuPopupEditContact, m_ui->mnuPopupDeleteContacts,
            m_ui->mnuAddContactsTo->menuAction(), m_ui->mnuPopupAddContactsTo->menuAction(),
            m_ui->mnuAddContactsToNewGroup, m_ui->mnuPopupAddContactsToNewGroup},
           CanActOnContacts(now));
    enable({m_ui->mnuAddContactsToExistingGroup, m_ui->mnuPopupAddContactsToExistingGroup}, CanAddToExistingGroup(now));
    enable({m_ui->mnuRemoveContactsFrom->menuAction(), m_ui->mnuPopupRemoveContactsFrom->menuAction(),
            m_ui->mnuRemoveContactsFromAllGroups, m_ui->mnuPopupRemoveContactsFromAllGroups},
           CanRemoveFromGroups(now));
    enable({m_ui->mnuRemoveContactsFromThisGroup, m_ui->mnuPopupRemoveContactsFromThisGroup},
           CanRemoveFromThisGroup(now));
    enable({m_ui->mnuSelectAllContacts}, CanSelectAll(now));
    enable({m_ui->mnuPopupSelectAllContacts}, now.hasRows);
    enable({m_ui->mnuEditGroupName, m_ui->mnuPopupRenameGroup, m_ui->mnuPopupDeleteGroup}, CanChangeGroup(now));
}

void PhoneBook::LoadLists()
{
    if (!m_ui)
        BuildControls();
    constexpr int kDesignWidth = 2000 / Controls::kTwipsPerPixel;
    // A large font needs more.
    const int width = qMax(kDesignWidth, 18 * fontMetrics().averageCharWidth());
    for (const int column : {ContactModel::Name, ContactModel::Mobile})
        m_ui->lvwContacts->setColumnWidth(column, width);
    Controls::RestoreColumnWidths(m_services.window.settings, *m_ui->lvwContacts);
    Controls::RestoreWindowPosition(m_services.window.settings, *this);
    const auto groups = Controls::StoredControlSize(m_services.window.settings, *m_ui->picGroupsContainer);
    const auto contacts = Controls::StoredControlSize(m_services.window.settings, *m_ui->picContactsContainer);
    if (groups && contacts)
        m_ui->Splitter1->setSizes({groups->width(), contacts->width()});
    m_sortBy = m_services.window.settings.Get(kColumnsSection, kSortBy, u"0"_s).toInt();
    m_reverseSort =
        m_services.window.settings.Get(kColumnsSection, kReverseSort).compare("True"_L1, Qt::CaseInsensitive) == 0;
    m_isLoaded = true;
    m_lastList = m_ui->lvwContacts;
    FillGroups(m_phoneBook->AllContacts());
    GroupClicked();
    ApplySort();
    ShowNotice();
    m_ui->txtFind->setFocus();
}

void PhoneBook::Unload()
{
    Settings &settings = m_services.window.settings;
    Controls::SaveWindowPosition(settings, *this);
    settings.Save(kColumnsSection, kSortBy, QString::number(m_sortBy));
    settings.Save(kColumnsSection, kReverseSort, m_reverseSort ? u"True"_s : u"False"_s);
    Controls::SaveColumnWidths(settings, *m_ui->lvwContacts);
    Controls::SaveControlSize(settings, *m_ui->picContactsContainer);
    Controls::SaveControlSize(settings, *m_ui->picGroupsContainer);
    m_isLoaded = false;
}

void PhoneBook::showEvent(QShowEvent *event)
{
    if (!m_isLoaded)
        LoadLists();
    QMainWindow::showEvent(event);
}

void PhoneBook::closeEvent(QCloseEvent *event)
{
    event->accept();
    if (!m_isLoaded)
        return;
    // What cannot be saved would be lost with the window. A notice waits until the window is seen again.
    if (CommitAndSave())
        Unload();
    else
        event->ignore();
}

bool PhoneBook::CommitAndSave()
{
    const QScopedValueRollback closing(m_isClosing, true);
    CommitEditor();
    return Save();
}

void PhoneBook::CloseForGood()
{
    if (!m_isLoaded)
        return;
    CommitAndSave();
    Unload();
    close();
}
