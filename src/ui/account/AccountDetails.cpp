#include "AccountDetails.h"

#include "Controls.h"
#include "EmailAddresses.h"
#include "Error.h"
#include "OrderPage.h"
#include "Prompts.h"
#include "SelectAllOnFocus.h"
#include "ui_AccountDetails.h"

#include <QEvent>

AccountDetails::AccountDetails(const WindowServices &services, const SendingSMS::Gateway &gateway, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_gateway(gateway)
    , m_account(services.settings)
    , m_ui(std::make_unique<Ui::AccountDetails>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    m_hint = m_ui->txtEmail->text();
    m_ui->txtEmail->setPlaceholderText(m_hint);
    constexpr int kUsualCharacters = 36;
    m_ui->txtEmail->setMinimumWidth(kUsualCharacters * fontMetrics().averageCharWidth());
    m_ui->txtUserName->setText(m_account.Username());
    m_ui->txtPassword->setText(m_account.Password());
    if (const QString address = m_account.ReplyEmailAddress(); !address.isEmpty())
        m_ui->txtEmail->setText(address);
    new SelectAllOnFocus(m_ui->txtEmail);
    ShowHint();
    EnableButtons();
    ConnectControls();
    Controls::FitToContents(*this);
}

AccountDetails::~AccountDetails() = default;

void AccountDetails::ConnectControls()
{
    connect(m_ui->txtUserName, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_account.SetUsername(text);
        EnableButtons();
    });
    connect(m_ui->txtPassword, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_account.SetPassword(text); });
    connect(m_ui->txtEmail, &QLineEdit::textChanged, this, &AccountDetails::ShowHint);
    connect(m_ui->cmdBalance, &QPushButton::clicked, this, &AccountDetails::ShowBalance);
    connect(m_ui->cmdBuyMessages, &QPushButton::clicked, this, [this] { OrderPage::BuyMessages(m_services, this); });
    connect(m_ui->cmdOpenAccount, &QPushButton::clicked, this, [this] { OrderPage::Open(m_services, this); });
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &AccountDetails::accept);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &AccountDetails::reject);
}

void AccountDetails::ShowHint()
{
    QPalette colours;
    if (m_ui->txtEmail->text() == m_hint)
        colours.setBrush(QPalette::Text, palette().placeholderText());
    m_ui->txtEmail->setPalette(colours);
}

void AccountDetails::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        ShowHint();
}

void AccountDetails::EnableButtons()
{
    const bool hasName = !m_ui->txtUserName->text().isEmpty();
    m_ui->cmdBalance->setEnabled(hasName);
    m_ui->cmdBuyMessages->setEnabled(hasName);
}

void AccountDetails::ShowBalance()
{
    const SendingSMS::Account account = m_account.Get();
    try {
        TellBalance(account.username, SendingSMS::GetBalance(m_gateway, account, this));
    } catch (const Error &error) {
        m_services.prompts.ShowMessageBox(
            {.text = error.Description(), .icon = PromptIcon::Exclamation, .caption = tr("Account Balance")}, this);
    }
}

void AccountDetails::TellBalance(const QString &username, const SendingSMS::Reply &reply)
{
    namespace ResultCode = SendingSMS::ResultCode;
    const QString caption = tr("Account Balance");
    if (reply.code == ResultCode::kCanceled)
        return;
    // A reply that does not say the balance is as good as none.
    if (reply.code == ResultCode::kSuccess && reply.balance >= 0) {
        m_services.prompts.ShowMessageBox(
            {.text = tr("Username: %1\r\nBalance: %2 Messages Remaining").arg(username, QString::number(reply.balance)),
             .icon = PromptIcon::Information,
             .caption = caption},
            this);
    } else if (reply.code == ResultCode::kLogonRefused) {
        const PromptAnswer answer = m_services.prompts.ShowMessageBox(
            {.text = tr("Logon Failed.\r\n\r\n"
                        "Please open a Brevio account, or check your username and password if you have one already."
                        "\r\n\r\nDo you want to open a Brevio account now?"),
             .icon = PromptIcon::Exclamation,
             .buttons = PromptButtons::YesNo,
             .caption = caption},
            this);
        if (answer == PromptAnswer::Yes)
            OrderPage::Open(m_services, this);
    } else {
        m_services.prompts.ShowMessageBox(
            {.text = tr("Could not connect over the internet to Corvane. Unable to get balance.\r\n\r\n"
                        "Please check you are connected to the internet."),
             .icon = PromptIcon::Exclamation,
             .caption = caption,
             .details = reply.code == ResultCode::kSuccess ? tr("The reply does not tell the balance.") : reply.reason},
            this);
    }
}

void AccountDetails::accept()
{
    const QString address = m_ui->txtEmail->text();
    if (address.isEmpty() || address == m_hint) {
        m_account.SetReplyEmailAddress({});
    } else if (EmailAddresses::IsValidEmailAddress(address)) {
        m_account.SetReplyEmailAddress(address);
    } else {
        m_services.prompts.ShowMessageBox(
            {.text = tr("Please enter a valid email address, or leave the Reply-To Email box blank."),
             .icon = PromptIcon::Exclamation,
             .caption = tr("Reply-To Email")},
            this);
        m_ui->txtEmail->setFocus();
        m_ui->txtEmail->selectAll();
        return;
    }
    m_account.SetUsername(m_ui->txtUserName->text());
    m_account.SetPassword(m_ui->txtPassword->text());
    QDialog::accept();
}
