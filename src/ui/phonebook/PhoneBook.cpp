#include "PhoneBook.h"

#include "ContactModel.h"
#include "ContactProperties.h"
#include "Controls.h"
#include "Error.h"
#include "GroupModel.h"
#include "Prompts.h"
#include "Utils.h"
#include "ui_PhoneBook.h"

#include <QCloseEvent>

using namespace Qt::StringLiterals;

PhoneBook::PhoneBook(const Services &services)
    : m_services(services)
    , m_phoneBook(services.countries, services.clock)
{
    setObjectName(u"PhoneBook"_s);
}

PhoneBook::~PhoneBook() = default;

void PhoneBook::BuildControls()
{
    m_ui = std::make_unique<Ui::PhoneBook>();
    m_ui->setupUi(this);
    m_groups = new GroupModel(m_phoneBook, this);
    m_contacts = new ContactModel(m_phoneBook, this);
    Controls::SetUpReport(*m_ui->lvwGroups);
    Controls::SetUpReport(*m_ui->lvwContacts);
    m_ui->lvwGroups->setModel(m_groups);
    m_ui->lvwContacts->setModel(m_contacts);
    m_ui->Splitter1->setStretchFactor(0, 0);
    m_ui->Splitter1->setStretchFactor(1, 1);
    m_ui->Splitter1->setSizes({180, 540});
    connect(m_ui->lvwGroups->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &PhoneBook::FillContacts);
    Status(tr("Ready"));
}

void PhoneBook::LoadData()
{
    m_phoneBook.OpenPhoneBook(LxPhoneBook::DefaultFileName());
}

LxContactPtr PhoneBook::GetContact(int contactID) const
{
    return m_phoneBook.AllContacts().GetContact(contactID);
}

LxGroup &PhoneBook::GetGroup(int groupID)
{
    return m_phoneBook.Groups().GetGroup(groupID);
}

void PhoneBook::AddContact(const LxContactPtr &contact)
{
    m_phoneBook.AllContacts().Add(contact);
    if (!m_isLoaded)
        return;
    if (ChosenGroup().IsMember(*contact))
        m_contacts->Append(contact);
    SelectContact(*contact);
}

bool PhoneBook::EditContact(const LxContactPtr &contact, bool isNew, const QString &initialName,
                            const QString &initialNumber, bool addToCurrentGroup, QWidget *parent)
{
    LxGroup &chosen = ChosenGroup();
    if (isNew && addToCurrentGroup && &chosen != &m_phoneBook.AllContacts())
        chosen.Add(contact);
    ContactProperties dialog({m_services.countries, m_services.prompts, m_services.shell, m_services.settings}, parent);
    dialog.Setup(contact, m_phoneBook, isNew, initialName, initialNumber);
    if (!dialog.Canceled())
        dialog.exec();
    if (dialog.Canceled()) {
        if (isNew)
            contact->Destroy();
        return false;
    }
    if (isNew)
        AddContact(contact);
    else if (m_isLoaded)
        m_contacts->Rewrite(*contact);
    if (m_isLoaded)
        ShowCount();
    Autosave();
    return true;
}

bool PhoneBook::Autosave()
{
    const bool isSaved = Save();
    ShowNotice();
    return isSaved;
}

bool PhoneBook::Save()
{
    try {
        const QString kept = m_phoneBook.SavePhoneBook();
        if (!kept.isEmpty())
            m_notice = tr("What could not be read was kept in %1").arg(Utils::FileNameOfPath(kept));
        return true;
    } catch (const Error &error) {
        m_services.prompts.ShowMessageBox(
            {tr("The phone book could not be saved: ") + error.Description(), PromptIcon::Exclamation}, this);
        return false;
    }
}

void PhoneBook::ShowNotice()
{
    // While nobody can see the window, the notice waits.
    if (m_isLoaded && !m_notice.isEmpty())
        Status(std::exchange(m_notice, {}));
}

void PhoneBook::Status(const QString &text)
{
    m_ui->sbStatusBar->showMessage(text);
}

void PhoneBook::SelectContact(const LxContact &contact)
{
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
        return m_phoneBook.AllContacts();
    const QModelIndex current = m_ui->lvwGroups->currentIndex();
    return current.isValid() ? m_groups->GroupAt(current.row()) : m_phoneBook.AllContacts();
}

void PhoneBook::FillContacts()
{
    m_contacts->Fill(ChosenGroup());
    ShowCount();
}

void PhoneBook::ShowCount()
{
    Status(QString::number(m_contacts->rowCount()) + tr(" contacts"));
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
    Controls::RestoreColumnWidths(m_services.settings, *m_ui->lvwContacts);
    Controls::RestoreWindowPosition(m_services.settings, *this);
    const auto groups = Controls::StoredControlSize(m_services.settings, *m_ui->picGroupsContainer);
    const auto contacts = Controls::StoredControlSize(m_services.settings, *m_ui->picContactsContainer);
    if (groups && contacts)
        m_ui->Splitter1->setSizes({groups->width(), contacts->width()});
    m_isLoaded = true;
    m_groups->Fill();
    m_ui->lvwGroups->setCurrentIndex(m_groups->index(0, 0));
    FillContacts();
    ShowNotice();
}

void PhoneBook::Unload()
{
    Settings &settings = m_services.settings;
    Controls::SaveWindowPosition(settings, *this);
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
    // What cannot be saved would be lost with the window. A notice waits until the window is seen again.
    if (m_isLoaded && !Save()) {
        event->ignore();
        return;
    }
    if (m_isLoaded)
        Unload();
    event->accept();
}

void PhoneBook::CloseForGood()
{
    if (!m_isLoaded)
        return;
    Save();
    Unload();
    close();
}
