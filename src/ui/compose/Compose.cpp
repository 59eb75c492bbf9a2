#include "Compose.h"

#include "About.h"
#include "AccountDetails.h"
#include "Controls.h"
#include "Error.h"
#include "LxGroup.h"
#include "OrderPage.h"
#include "PhoneBook.h"
#include "PhoneNumbers.h"
#include "Prompts.h"
#include "SelectAllOnFocus.h"
#include "SendResults.h"
#include "SentList.h"
#include "SentLog.h"
#include "SentMessages.h"
#include "SentNotes.h"
#include "Settings.h"
#include "VendorPages.h"
#include "VendorSite.h"
#include "ui_Compose.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"Compose"_s;
const QString kTextKey = u"Text"_s;

/// What the details of a failure add where nobody can know; empty where nothing went out.
QString MayHaveBeenTaken(const SendingSMS::SendOutcome &outcome)
{
    if (!SendingSMS::HasUnknown(outcome.requests))
        return {};
    const QString warning =
        outcome.left == RequestLeft::Whole
            ? Compose::tr("The whole request had gone out by then, so the gateway may have taken the message.")
            : Compose::tr("Some of the request had gone out by then, so the gateway may have taken the message.");
    return "\r\n\r\n"_L1 + warning;
}

/// What the status says beside the outcome when nobody can know what became of the message. Where some of it went out,
/// the window of the results tells.
QString WhatIsNotKnown(const SendingSMS::SendOutcome &outcome)
{
    using enum SendingSMS::SendStatus;
    if (outcome.status == Sent || outcome.status == SomeFailed || !SendingSMS::HasUnknown(outcome.requests))
        return {};
    return outcome.isNoted ? Compose::tr(", see Sent Messages") : Compose::tr("; the gateway may have taken it");
}

} // namespace

Compose::Compose(const Services &services)
    : m_services(services)
    , m_account(services.window.settings)
    , m_ui(std::make_unique<Ui::Compose>())
    , m_sending(services.window.quietTime)
    , m_help(services.window.quietTime)
{
    m_ui->setupUi(this);
    m_ui->cboTo->lineEdit()->setAccessibleName(m_ui->cboTo->accessibleName());
    m_draftTimer.setSingleShot(true);
    m_draftTimer.setInterval(std::chrono::seconds(1));
    connect(&m_draftTimer, &QTimer::timeout, this, &Compose::StoreDraft);
    SetStatus(tr("160 characters (1 SMS)"));
    new SelectAllOnFocus(m_ui->txtTextMessage);
    ConnectControls();
    ShowWhereTheAccountIs();
    Controls::SetFirstSize(*this, 74, 21);
    Controls::RestoreWindowPosition(m_services.window.settings, *this);
    LoadDraft();
    m_ui->cboTo->setFocus();
}

Compose::~Compose()
{
    // The box loses the focus when the window is hidden, which comes after the rest of it is gone, and may change then.
    disconnect(m_ui->cboTo, nullptr, this, nullptr);
}

void Compose::ConnectControls()
{
    connect(m_ui->txtTextMessage, &MessageEdit::MessageChanged, this, &Compose::TextChanged);
    connect(m_ui->cboTo, &RecipientBox::RecipientChanged, this, &Compose::CountPeople);
    connect(m_ui->mnuFile, &QMenu::aboutToShow, this, &Compose::EnableSending);
    connect(m_ui->cmdSend, &QPushButton::clicked, this, &Compose::Send);
    connect(m_ui->mnuSend, &QAction::triggered, this, &Compose::Send);
    connect(m_ui->cmdPhoneBook, &QPushButton::clicked, this, &Compose::ShowPhoneBook);
    connect(m_ui->mnuPhoneBook, &QAction::triggered, this, &Compose::ShowPhoneBook);
    connect(m_ui->mnuAccount, &QAction::triggered, this, &Compose::ShowAccount);
    connect(m_ui->mnuSentMessages, &QAction::triggered, this, &Compose::ShowSentMessages);
    connect(m_ui->mnuOnlineHelp, &QAction::triggered, this,
            [this] { m_help.Start([this] { VendorPages::Open(VendorSite::kHelpPath, m_services.window, this); }); });
    connect(m_ui->mnuAbout, &QAction::triggered, this, [this] { About(m_services.window, this).exec(); });
    connect(m_ui->mnuExit, &QAction::triggered, this, &Compose::close);
}

void Compose::LoadDraft()
{
    m_message.SetText(m_ui->txtTextMessage->MessageText());
    ShowCount();
    m_ui->txtTextMessage->SetMessageText(m_services.window.settings.Get(kSection, kTextKey));
}

void Compose::StoreDraft()
{
    m_services.window.settings.Save(kSection, kTextKey, m_ui->txtTextMessage->MessageText());
}

void Compose::Store()
{
    StoreDraft();
    Controls::SaveWindowPosition(m_services.window.settings, *this);
    m_services.window.settings.Flush();
}

void Compose::ShowCount()
{
    const QString &text = m_message.Text();
    EnableSending();
    ShowCost();
    if (text.isEmpty()) {
        SetStatus(tr("Please enter a text message to send"));
        return;
    }
    const qsizetype parts = m_message.MessageParts().size();
    SetStatus(parts == 1 ? tr("%1 characters in 1 text message").arg(text.size())
                         : tr("%1 characters in %2 text messages").arg(text.size()).arg(parts));
}

void Compose::CountPeople()
{
    m_people = People();
    ShowCost();
}

std::optional<int> Compose::People() const
{
    const std::optional<int> id = m_ui->cboTo->SelectedID();
    if (!id)
        return m_ui->cboTo->currentText().trimmed().isEmpty() ? std::nullopt : std::optional(1);
    if (*id > 0)
        return 1;
    // Not GetGroup, which raises: the group may be gone and the box not yet filled again.
    for (const LxGroup *group : m_services.phoneBook.ReadOnlyPhoneBook().GroupsExcludingAllContacts()) {
        if (group->GroupID() == -*id)
            return group->Count();
    }
    return std::nullopt;
}

void Compose::ShowCost()
{
    if (m_people && !m_message.Text().isEmpty())
        m_ui->StatusBar->ShowCost(*m_people, m_message.MessageParts().size());
    else
        m_ui->StatusBar->HideCost();
}

void Compose::SetStatus(const QString &text)
{
    m_ui->StatusBar->ShowStatus(text);
}

void Compose::TextChanged(const QString &invalidChars)
{
    m_draftTimer.start();
    m_message.SetText(m_ui->txtTextMessage->MessageText());
    ShowCount();
    if (!invalidChars.isEmpty())
        m_ui->StatusBar->ShowRefusal(invalidChars);
}

void Compose::EnableSending()
{
    const bool enabled = !m_message.Text().isEmpty() && !m_sending.IsGoingOn();
    m_ui->cmdSend->setEnabled(enabled);
    m_ui->mnuSend->setEnabled(enabled);
}

bool Compose::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate) {
        m_ui->cboTo->Refill(m_services.phoneBook.ReadOnlyPhoneBook());
        CountPeople(); // a group may have other members
        if (!m_sending.IsGoingOn())
            TellNotices();
    }
    return QMainWindow::event(event);
}

void Compose::TellNotices()
{
    // Beside what stands there, which may be the outcome of a send.
    if (const QString notices = m_services.phoneBook.TakeNotices(); !notices.isEmpty())
        SetStatus(m_ui->StatusBar->currentMessage() + "; "_L1 + notices);
}

void Compose::Send()
{
    m_sending.Start([this] {
        EnableSending();
        try {
            SendNow();
        } catch (const Error &error) {
            TellProblem(error.Description());
            SetStatus(tr("Message failed"));
        }
    });
    EnableSending();
}

void Compose::SendNow()
{
    if (m_message.Text().isEmpty()) {
        TellProblem(tr("Please enter a text message."));
        m_ui->txtTextMessage->setFocus();
        return;
    }
    StoreDraft();
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
    LxContactPtr contact = phoneBook.CreateHomeContact();
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
    TellFailure(outcome, this);
    ShowOutcome(outcome);
    if (outcome.status != SendingSMS::SendStatus::SomeFailed)
        return;
    const auto sendAgain = [this](const LxMessageRequests &failed, QWidget *owner) { return SendAgain(failed, owner); };
    SendResults results(m_services.window, sendAgain, this);
    results.Results(outcome.requests);
    results.exec();
}

void Compose::TellFailure(const SendingSMS::SendOutcome &outcome, QWidget *owner)
{
    using enum SendingSMS::SendStatus;
    switch (outcome.status) {
    case Sent:
    case Cancelled:
    case SomeFailed:
        break;
    case EmptyGroup:
        TellProblem(tr("Group contains no contacts. Message was not sent.\r\n\r\n"
                       "Please add some contacts to this group."),
                    {}, owner);
        break;
    case TransferFailed:
        TellProblem(tr("Could not connect over the internet to Corvane. Message was not sent.\r\n\r\n"
                       "Please check you are connected to the internet."),
                    outcome.reason + MayHaveBeenTaken(outcome), owner);
        break;
    case Refused:
        TellProblem(tr("Your message could not be sent:\r\n\r\n%1").arg(outcome.reason),
                    MayHaveBeenTaken(outcome).trimmed(), owner);
        break;
    }
}

void Compose::ShowOutcome(const SendingSMS::SendOutcome &outcome)
{
    const bool isSent = outcome.status == SendingSMS::SendStatus::Sent;
    if (isSent && !SendingSMS::HasUnknown(outcome.requests))
        m_sentText = m_message.Text();
    QString status = isSent ? tr("Message sent") : tr("Message failed");
    if (outcome.balance >= 0)
        status = (isSent ? tr("Message sent. %1 messages remaining") : tr("Message failed. %1 messages remaining"))
                     .arg(outcome.balance);
    status += WhatIsNotKnown(outcome);
    if (const QString notice = m_services.gateway.notes.TakeNotice(); !notice.isEmpty())
        status += "; "_L1 + notice;
    SetStatus(status);
}

LxMessageRequests Compose::SendAgain(const LxMessageRequests &failed, QWidget *owner)
{
    try {
        const QString to = failed.size() == 1 ? failed.front().Name : tr("%1 messages").arg(failed.size());
        const SendingSMS::SendOutcome outcome =
            SendingSMS::SendRequests(m_services.gateway, m_account.Get(), failed, to, owner);
        TellFailure(outcome, owner);
        ShowOutcome(outcome);
        return outcome.requests;
    } catch (const Error &error) {
        TellProblem(error.Description(), {}, owner);
        return failed;
    }
}

void Compose::TellProblem(const QString &text, const QString &details, QWidget *owner)
{
    m_services.window.prompts.ShowMessageBox({.text = text, .icon = PromptIcon::Exclamation, .details = details},
                                             owner);
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
    StoreDraft();
    AccountDetails account(m_services.window, m_services.gateway, this);
    const bool isAccepted = account.exec() == QDialog::Accepted;
    ShowWhereTheAccountIs();
    if (isAccepted && !m_account.Username().isEmpty())
        RefreshBalance();
}

void Compose::ShowSentMessages()
{
    StoreDraft();
    const auto writeAgain = [this](SentMessage message, QWidget *owner) {
        try {
            message.text = LxMessage::JoinParts(m_services.sentLog.TextsBeside(message.id), message.text);
        } catch (const Error &error) {
            TellProblem(error.Description(), {}, owner);
            return false;
        }
        return WriteAgain(message, owner);
    };
    SentMessages(m_services.window, m_services.sentLog, writeAgain, this).exec();
}

bool Compose::HasDraftBeside(const SentMessage &message) const
{
    const QString &text = m_message.Text();
    if (!text.isEmpty() && text != m_sentText && text != message.text)
        return true;
    const QString to = m_ui->cboTo->currentText().trimmed();
    return !to.isEmpty() && to != message.number && !m_ui->cboTo->SelectedID();
}

bool Compose::WriteAgain(const SentMessage &message, QWidget *owner)
{
    const QString question = tr("You are writing another message, which was not sent yet.\r\n\r\n"
                                "Do you want to write this one in its place?");
    if (HasDraftBeside(message) && m_services.window.prompts.ShowMessageBox({.text = question,
                                                                             .icon = PromptIcon::Question,
                                                                             .buttons = PromptButtons::YesNo,
                                                                             .defaultAnswer = PromptAnswer::No},
                                                                            owner) != PromptAnswer::Yes)
        return false;
    m_ui->cboTo->PickNumber(m_services.phoneBook.ReadOnlyPhoneBook(), message.number, message.name);
    m_ui->txtTextMessage->ReplaceText(message.text);
    m_ui->txtTextMessage->setFocus();
    return true;
}

void Compose::ShowWhereTheAccountIs()
{
    MessageEdit &box = *m_ui->txtTextMessage;
    const bool hasAccount = !m_account.Username().isEmpty();
    const QString where = tr("To send messages, first enter your account: Tools, Account Details...");
    box.setPlaceholderText(hasAccount ? tr("Your text message") : where);
    box.setAccessibleDescription(hasAccount ? QString() : box.toolTip() + ". "_L1 + where);
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
    // The draft comes first: whatever else fails, the text is kept.
    Store();
    if (m_sending.IsGoingOn()) {
        event->ignore();
        return;
    }
    m_services.phoneBook.CloseForGood();
    event->accept();
}
