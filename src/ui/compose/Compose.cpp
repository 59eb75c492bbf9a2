#include "Compose.h"

#include "About.h"
#include "AccountDetails.h"
#include "Controls.h"
#include "Error.h"
#include "OrderPage.h"
#include "PhoneBook.h"
#include "PhoneNumbers.h"
#include "Prompts.h"
#include "SelectAllOnFocus.h"
#include "SendResults.h"
#include "Settings.h"
#include "VendorPages.h"
#include "VendorSite.h"
#include "ui_Compose.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMouseEvent>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"Compose"_s;
const QString kTextKey = u"Text"_s;

} // namespace

Compose::Compose(const Services &services)
    : m_services(services)
    , m_account(services.window.settings)
    , m_ui(std::make_unique<Ui::Compose>())
{
    m_ui->setupUi(this);
    m_ui->StatusBar->showMessage(tr("160 characters (1 SMS)"));
    new SelectAllOnFocus(m_ui->txtTextMessage);
    ConnectControls();
    Controls::RestoreWindowPosition(m_services.window.settings, *this);
    LoadDraft();
    m_ui->cboTo->setFocus();
}

Compose::~Compose() = default;

void Compose::ConnectControls()
{
    connect(m_ui->txtTextMessage, &MessageEdit::MessageChanged, this, &Compose::TextChanged);
    connect(m_ui->mnuFile, &QMenu::aboutToShow, this, &Compose::EnableSending);
    connect(m_ui->cmdSend, &QPushButton::clicked, this, &Compose::Send);
    connect(m_ui->mnuSend, &QAction::triggered, this, &Compose::Send);
    connect(m_ui->cmdPhoneBook, &QPushButton::clicked, this, &Compose::ShowPhoneBook);
    connect(m_ui->mnuPhoneBook, &QAction::triggered, this, &Compose::ShowPhoneBook);
    connect(m_ui->mnuAccount, &QAction::triggered, this, &Compose::ShowAccount);
    connect(m_ui->mnuOnlineHelp, &QAction::triggered, this,
            [this] { VendorPages::Open(VendorSite::kHelpPath, m_services.window, this); });
    connect(m_ui->mnuAbout, &QAction::triggered, this, [this] { About(m_services.window, this).exec(); });
    connect(m_ui->mnuExit, &QAction::triggered, this, &Compose::close);
    m_ui->cmdSend->installEventFilter(this);
}

void Compose::LoadDraft()
{
    m_message.SetText(m_ui->txtTextMessage->MessageText());
    ShowCount();
    m_ui->txtTextMessage->SetMessageText(m_services.window.settings.Get(kSection, kTextKey));
}

void Compose::ShowCount()
{
    const QString &text = m_message.Text();
    EnableSending();
    if (text.isEmpty()) {
        SetStatus(tr("Please enter a text message to send"));
        return;
    }
    const qsizetype parts = m_message.MessageParts().size();
    SetStatus(parts == 1 ? tr("%1 characters in 1 text message").arg(text.size())
                         : tr("%1 characters in %2 text messages").arg(text.size()).arg(parts));
}

void Compose::SetStatus(const QString &text)
{
    m_ui->StatusBar->showMessage(text);
}

void Compose::TextChanged(const QString &invalidChars)
{
    m_message.SetText(m_ui->txtTextMessage->MessageText());
    ShowCount();
    if (!invalidChars.isEmpty())
        SetStatus(tr("Character %1 not allowed in text messages!").arg(invalidChars));
}

void Compose::EnableSending()
{
    const bool enabled = !m_message.Text().isEmpty() && !m_isSending;
    m_ui->cmdSend->setEnabled(enabled);
    m_ui->mnuSend->setEnabled(enabled);
}

bool Compose::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        m_ui->cboTo->Refill(m_services.phoneBook.ReadOnlyPhoneBook());
    return QMainWindow::event(event);
}

bool Compose::eventFilter(QObject *watched, QEvent *event)
{
    const bool isSecond = event->type() == QEvent::MouseButtonDblClick;
    if (watched == m_ui->cmdSend && (isSecond || event->type() == QEvent::MouseButtonPress)) {
        // The later presses of a double or triple click are no wish to send the message again.
        const quint64 now = static_cast<QMouseEvent *>(event)->timestamp();
        const std::optional<quint64> before = std::exchange(m_sendPressedAt, now);
        if (isSecond || (before && now - *before < static_cast<quint64>(QApplication::doubleClickInterval())))
            return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void Compose::Send()
{
    if (m_isSending)
        return;
    m_isSending = true;
    EnableSending();
    try {
        SendNow();
    } catch (const Error &error) {
        TellProblem(error.Description());
        SetStatus(tr("Message failed"));
    }
    m_isSending = false;
    EnableSending();
}

void Compose::SendNow()
{
    if (m_message.Text().isEmpty()) {
        TellProblem(tr("Please enter a text message."));
        m_ui->txtTextMessage->setFocus();
        return;
    }
    const std::optional<LxContactList> recipients = Recipients();
    if (!recipients)
        return;
    if (m_account.Username().isEmpty()) {
        OfferToBuyMessages();
        return;
    }
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    Tell(SendingSMS::SendMessage(m_services.gateway, m_account.Get(), *recipients, m_message, this));
    m_ui->cboTo->setFocus();
}

std::optional<LxContactList> Compose::Recipients()
{
    const std::optional<int> id = m_ui->cboTo->SelectedID();
    if (id && *id < 0)
        return m_services.phoneBook.GetGroup(-*id).ContactList();
    const LxContactPtr contact = id ? m_services.phoneBook.GetContact(*id) : NewRecipient(m_ui->cboTo->currentText());
    if (!contact)
        return std::nullopt;
    LxContactList recipients;
    recipients.SetName(contact->Name());
    recipients.Add(contact);
    return recipients;
}

LxContactPtr Compose::NewRecipient(const QString &typed)
{
    const LxPhoneBook &phoneBook = m_services.phoneBook.ReadOnlyPhoneBook();
    const LxContactPtr contact = phoneBook.CreateHomeContact();
    const bool isNumber = PhoneNumbers::IsValidPhoneNumber(PhoneNumbers::CleanPhoneNumber(typed));
    const PhoneBook::NewContactOptions options{.name = typed, .number = isNumber ? typed : QString()};
    if (!m_services.phoneBook.EditNewContact(contact, options, this))
        return nullptr;
    m_ui->cboTo->Refill(phoneBook);
    m_ui->cboTo->Pick(contact->ContactID());
    return contact;
}

void Compose::OfferToBuyMessages()
{
    const QString text = tr("Please buy some messages to continue.\r\n\r\n"
                            "If you have already bought messages then please enter your account details sent to you by "
                            "email, subject \"Brevio Account\".\r\n\r\n"
                            "Do you want to buy messages online now?");
    const PromptAnswer answer =
        m_services.window.prompts.ShowMessageBox({text, PromptIcon::Information, PromptButtons::YesNo}, this);
    if (answer == PromptAnswer::Yes)
        OrderPage::BuyMessages(m_services.window, this);
    SetStatus(tr("Sending cancelled!"));
}

void Compose::Tell(const SendingSMS::SendOutcome &outcome)
{
    using enum SendingSMS::SendStatus;
    switch (outcome.status) {
    case Sent:
    case Cancelled:
        break;
    case EmptyGroup:
        TellProblem(tr("Group contains no contacts. Message was not sent.\r\n\r\n"
                       "Please add some contacts to this group."));
        break;
    case TransferFailed:
        TellProblem(tr("Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                       "Please check you are connected to the internet."));
        break;
    case Refused:
        TellProblem(tr("Your message could not be sent:\r\n\r\n%1").arg(outcome.reason));
        break;
    case SomeFailed: {
        SendResults results(m_services.window, this);
        results.Results(outcome.requests);
        results.exec();
        break;
    }
    }
    const bool isSent = outcome.status == Sent;
    if (outcome.balance < 0)
        SetStatus(isSent ? tr("Message sent") : tr("Message failed"));
    else
        SetStatus((isSent ? tr("Message sent. %1 messages remaining") : tr("Message failed. %1 messages remaining"))
                      .arg(outcome.balance));
}

void Compose::TellProblem(const QString &text)
{
    m_services.window.prompts.ShowMessageBox({text, PromptIcon::Exclamation}, this);
}

void Compose::ShowPhoneBook()
{
    PhoneBook &phoneBook = m_services.phoneBook;
    phoneBook.setWindowState(phoneBook.windowState() & ~Qt::WindowMinimized);
    phoneBook.show();
    phoneBook.raise();
    phoneBook.activateWindow();
}

void Compose::ShowAccount()
{
    AccountDetails account(m_services.window, m_services.gateway, this);
    if (account.exec() == QDialog::Accepted && !m_account.Username().isEmpty())
        RefreshBalance();
}

void Compose::RefreshBalance()
{
    try {
        const SendingSMS::Reply reply = SendingSMS::GetBalance(m_services.gateway, m_account.Get(), this);
        if (reply.code == SendingSMS::ResultCode::kSuccess && reply.balance >= 0)
            SetStatus(tr("%1 Messages Remaining").arg(reply.balance));
    } catch (const Error &error) {
        TellProblem(error.Description());
    }
}

void Compose::closeEvent(QCloseEvent *event)
{
    if (m_isSending) {
        event->ignore();
        return;
    }
    Settings &settings = m_services.window.settings;
    // The draft comes first: whatever else fails, the text is kept.
    settings.Save(kSection, kTextKey, m_ui->txtTextMessage->MessageText());
    Controls::SaveWindowPosition(settings, *this);
    settings.Flush();
    m_services.phoneBook.CloseForGood();
    event->accept();
}
