#include "ContactProperties.h"

#include "Contrast.h"
#include "Controls.h"
#include "Icons.h"
#include "LxCountryList.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "NameValidator.h"
#include "PhoneNumbers.h"
#include "Prompts.h"
#include "RowKeys.h"
#include "SelectAllOnFocus.h"
#include "Settings.h"
#include "VendorPages.h"
#include "VendorSite.h"
#include "ui_ContactProperties.h"

#include <QFocusEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScreen>
#include <QShortcut>
#include <QStandardItemModel>

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"Contact Properties"_s;
const QString kPageKey = u"PropertyPage"_s;

bool LeavesWithinWindow(const QFocusEvent &event)
{
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason;
}

} // namespace

ContactProperties::ContactProperties(const LxCountryList &countries, const WindowServices &services, QWidget *parent)
    : QDialog(parent)
    , m_countries(countries)
    , m_services(services)
    , m_ui(std::make_unique<Ui::ContactProperties>())
    , m_groups(new QStandardItemModel(0, 1, this))
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    m_ui->imgGuarantee_0->ShowIcon(Icons::Get("guaranteed"_L1), 2);
    m_ui->imgGuarantee_1->ShowIcon(Icons::Get("not-guaranteed"_L1), 2);
    for (QLabel *title : {m_ui->lblGuaranteeTitle_0, m_ui->lblGuaranteeTitle_1}) {
        QFont bold = title->font();
        bold.setBold(true);
        title->setFont(bold);
    }
    m_groups->setHorizontalHeaderLabels({tr("Group")});
    Controls::SetUpReport(*m_ui->lvwGroups);
    MakeGroupsReadable();
    m_ui->lvwGroups->setModel(m_groups);
    m_ui->txtName->setValidator(new NameValidator(m_ui->txtName));
    new SelectAllOnFocus(m_ui->txtName);
    new SelectAllOnFocus(m_ui->txtMobile);
    ConnectControls();

    const int page = m_services.settings.Get(kSection, kPageKey, u"0"_s).toInt();
    m_ui->tabPropertyPages->setCurrentIndex(page == 1 ? 1 : 0);
    // The longest names show whole where the screen has room for them.
    QComboBox &codes = *m_ui->cboCountryCode;
    codes.setMinimumWidth(qMin(codes.sizeHint().width(), screen()->availableGeometry().width() * 2 / 5));
    m_countries.FillCountryCombo([this](const QString &text, int code) { m_ui->cboCountryCode->addItem(text, code); });
}

ContactProperties::~ContactProperties() = default;

void ContactProperties::ConnectControls()
{
    // From everywhere; the pages themselves hear these keys only where one of their controls has the focus.
    const auto turnPage = [this] {
        m_ui->tabPropertyPages->setCurrentIndex(1 - m_ui->tabPropertyPages->currentIndex());
    };
    for (const auto &keys : {u"Ctrl+Tab"_s, u"Ctrl+Shift+Tab"_s, u"Ctrl+PgDown"_s, u"Ctrl+PgUp"_s})
        new QShortcut(QKeySequence(keys), this, this, turnPage);
    // Numbers read from left to right in every language.
    for (QLineEdit *number : {static_cast<QLineEdit *>(m_ui->txtMobile), m_ui->txtInternationalMobile})
        number->setLayoutDirection(Qt::LeftToRight);
    connect(m_ui->txtMobile, &QLineEdit::textChanged, this, &ContactProperties::ShowPreview);
    connect(m_ui->cboCountryCode, &QComboBox::currentIndexChanged, this, &ContactProperties::ShowGuarantee);
    connect(m_ui->lblGuaranteeHelp, &QLabel::linkActivated, this,
            [this] { VendorPages::Open(VendorSite::kGuaranteePath, m_services, this); });
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &ContactProperties::accept);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &ContactProperties::reject);
    m_ui->txtMobile->installEventFilter(this);
    m_ui->lvwGroups->viewport()->installEventFilter(this);
}

/// Some looks make the frame of a check box a darker window, which on a dark list nobody sees.
void ContactProperties::MakeGroupsReadable()
{
    constexpr double kContrast = 3.3;
    constexpr int kDarkerByPercent = 140;
    QPalette colours = m_ui->lvwGroups->palette();
    const QColor list = colours.color(QPalette::Base);
    const QColor frame = Contrast::StandingOut(colours.color(QPalette::Window), {list}, kContrast);
    colours.setColor(QPalette::Window, frame.lighter(kDarkerByPercent));
    m_ui->lvwGroups->setPalette(colours);
    Controls::KeepReadable(*m_ui->lvwGroups);
}

void ContactProperties::SetupTitle(bool isNew)
{
    setWindowTitle(isNew ? tr("New Contact") : tr("Edit Contact"));
}

void ContactProperties::Setup(const LxContactPtr &contact, LxPhoneBook &phoneBook, bool isNew,
                              const QString &initialName, const QString &initialNumber)
{
    if (m_ui->cboCountryCode->count() == 0) {
        m_services.prompts.ShowMessageBox(
            {tr("No country information loaded, please reinstall Brevio."), PromptIcon::Critical}, parent());
        return;
    }
    m_contact = contact;
    m_phoneBook = &phoneBook;
    SetupTitle(isNew);
    m_ui->txtName->setText(isNew ? initialName : contact->Name());
    m_ui->txtMobile->setText(isNew ? initialNumber : contact->UserMobile());
    SelectCountry(contact->CountryCode());
    if (isNew)
        ConvertNumber();
    FillGroups();
    if (isNew)
        m_ui->tabPropertyPages->setCurrentIndex(0);
    ShowPreview();
    ShowGuarantee();
    m_ui->txtName->setFocus();
    m_ui->txtName->selectAll();
    Controls::FitToContents(*this);
    m_canceled = false;
}

void ContactProperties::SelectCountry(int code)
{
    Controls::SelectComboItemByData(*m_ui->cboCountryCode, code);
}

int ContactProperties::SelectedCode() const
{
    const QVariant code = m_ui->cboCountryCode->currentData();
    return code.isValid() ? code.toInt() : PhoneNumbers::kDefaultCountryCode;
}

void ContactProperties::ConvertNumber()
{
    const QString cleaned = PhoneNumbers::CleanPhoneNumber(m_ui->txtMobile->text());
    if (!PhoneNumbers::IsInternationalNumber(cleaned))
        return;
    if (const auto split = PhoneNumbers::SplitInternational(m_countries, cleaned)) {
        SelectCountry(split->code);
        m_ui->txtMobile->setText(split->local);
    }
}

void ContactProperties::ShowPreview()
{
    // A change of the country alone does not come here. That is meant.
    const QString cleaned = PhoneNumbers::CleanPhoneNumber(m_ui->txtMobile->text());
    QString preview;
    if (PhoneNumbers::IsInternationalNumber(cleaned))
        preview = cleaned;
    else if (PhoneNumbers::IsValidPhoneNumber(cleaned))
        preview = PhoneNumbers::MakeInternational(SelectedCode(), PhoneNumbers::RemoveTrunkZero(cleaned));
    m_ui->txtInternationalMobile->setText(preview);
}

void ContactProperties::ShowGuarantee()
{
    const int code = SelectedCode();
    const bool guaranteed = m_countries.CountryExists(code) && m_countries.Lookup(code).Guaranteed;
    for (QLabel *label : std::initializer_list<QLabel *>{m_ui->imgGuarantee_0, m_ui->lblGuaranteeTitle_0,
                                                         m_ui->lblGuaranteeDescription_0})
        label->setVisible(guaranteed);
    for (QLabel *label : std::initializer_list<QLabel *>{m_ui->imgGuarantee_1, m_ui->lblGuaranteeTitle_1,
                                                         m_ui->lblGuaranteeDescription_1})
        label->setVisible(!guaranteed);
}

void ContactProperties::FillGroups()
{
    m_groups->setRowCount(0);
    for (const LxGroup *group : m_phoneBook->GroupsExcludingAllContacts()) {
        auto *item = new QStandardItem(group->Name());
        item->setData(RowKeys::OfGroup(group->GroupID()), RowKeys::kKeyRole);
        item->setEditable(false);
        item->setCheckable(true);
        item->setCheckState(group->IsMember(*m_contact) ? Qt::Checked : Qt::Unchecked);
        m_groups->appendRow(item);
    }
    m_ui->lvwGroups->setCurrentIndex(m_groups->index(0, 0));
}

void ContactProperties::ToggleAt(const QPoint &position)
{
    const QModelIndex index = m_ui->lvwGroups->indexAt(position);
    QStandardItem *item = m_groups->itemFromIndex(index);
    if (!item)
        return;
    // Each click on the box itself has toggled already.
    const int boxWidth =
        style()->pixelMetric(QStyle::PM_IndicatorWidth) + 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 2;
    if (position.x() >= m_ui->lvwGroups->visualRect(index).left() + boxWidth)
        item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

bool ContactProperties::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->txtMobile && event->type() == QEvent::FocusOut) {
        if (LeavesWithinWindow(*static_cast<QFocusEvent *>(event)))
            ConvertNumber();
    } else if (watched == m_ui->lvwGroups->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        ToggleAt(static_cast<QMouseEvent *>(event)->position().toPoint());
    }
    return QDialog::eventFilter(watched, event);
}

bool ContactProperties::IsNumberAcceptable() const
{
    const QString cleaned = PhoneNumbers::CleanPhoneNumber(m_ui->txtMobile->text());
    return m_ui->cboCountryCode->currentIndex() >= 0 &&
           PhoneNumbers::IsLocalNumber(PhoneNumbers::RemoveTrunkZero(cleaned));
}

void ContactProperties::Refuse(const QString &why, QLineEdit *where)
{
    m_ui->tabPropertyPages->setCurrentIndex(0);
    where->selectAll();
    where->setFocus();
    m_services.prompts.ShowMessageBox({why, PromptIcon::Exclamation}, this);
}

void ContactProperties::accept()
{
    ConvertNumber();
    if (!IsNumberAcceptable()) {
        Refuse(tr("Please enter a valid phone number."), m_ui->txtMobile);
        return;
    }
    if (m_ui->txtName->text().isEmpty()) {
        // The wording is meant.
        Refuse(tr("Please enter a the name for this contact."), m_ui->txtName);
        return;
    }
    Store();
    QDialog::accept();
}

void ContactProperties::Store()
{
    m_contact->SetName(m_ui->txtName->text());
    m_contact->SetCountryCode(SelectedCode());
    m_contact->SetUserMobile(m_ui->txtMobile->text());
    for (int row = 0; row < m_groups->rowCount(); ++row) {
        const QStandardItem *item = m_groups->item(row);
        LxGroup &group = m_phoneBook->Groups().GetGroup(RowKeys::IdentityOf(item->data(RowKeys::kKeyRole).toString()));
        if (item->checkState() == Qt::Checked)
            group.Add(m_contact);
        else
            group.Remove(m_contact);
    }
}

void ContactProperties::reject()
{
    m_canceled = true;
    QDialog::reject();
}

void ContactProperties::done(int result)
{
    m_services.settings.Save(kSection, kPageKey, QString::number(m_ui->tabPropertyPages->currentIndex()));
    QDialog::done(result);
}
