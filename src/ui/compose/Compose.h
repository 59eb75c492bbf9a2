#pragma once

#include "AccountSettings.h"
#include "LxContactList.h"
#include "LxMessage.h"
#include "SendingSMS.h"
#include "StartGuard.h"
#include "WindowServices.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>
#include <optional>

class PhoneBook;
class SentLog;
struct SentMessage;
namespace Ui {
class Compose;
}

/// The main window: whom to write to, the text, and Send. Closing it ends the program.
class Compose final : public QMainWindow
{
    Q_OBJECT

public:
    /// What it needs of the program; all of it must outlive the window.
    struct Services
    {
        WindowServices window;
        SendingSMS::Gateway gateway;
        SentLog &sentLog;
        PhoneBook &phoneBook;
    };

    explicit Compose(const Services &services);
    ~Compose() override;

    /// Stores the unsent text and the layout now.
    void Store();

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void ConnectControls();
    void LoadDraft();
    void StoreDraft();
    void ShowCount();
    void CountPeople();
    /// How many the message goes to; none without a recipient.
    [[nodiscard]] std::optional<int> People() const;
    void ShowCost();
    void SetStatus(const QString &text);
    void TellNotices();
    void TextChanged(const QString &invalidChars);
    void EnableSending();

    /// Everything from the click to the outcome.
    void Send();
    void SendNow();
    /// None when the user gave up.
    [[nodiscard]] std::optional<LxContactList> Recipients();
    [[nodiscard]] LxContactPtr NewRecipient(const QString &typed);
    void OfferToBuyMessages();
    void Tell(const SendingSMS::SendOutcome &outcome);
    /// In a box where nothing, or perhaps nothing, was sent, and in the status bar.
    void ShowOutcome(const SendingSMS::SendOutcome &outcome, QWidget *owner);
    /// For the window of results: gives the messages back with what became of them now.
    [[nodiscard]] LxMessageRequests SendAgain(const LxMessageRequests &failed, QWidget *owner);
    void TellProblem(const QString &text, QWidget *owner);

    void ShowPhoneBook();
    void ShowAccount();
    void ShowSentMessages();
    /// Puts a message that was sent, and whom it went to, in place of what is being written; false when the user keeps
    /// that.
    bool WriteAgain(const SentMessage &message, QWidget *owner);
    /// Whether there is something that was never sent and that writing this message again would replace.
    [[nodiscard]] bool HasDraftBeside(const SentMessage &message) const;
    /// While there is no account, the empty message box says where to enter one.
    void ShowWhereTheAccountIs();
    void RefreshBalance();

    Services m_services;
    AccountSettings m_account;
    std::unique_ptr<Ui::Compose> m_ui;
    LxMessage m_message;
    /// The text that was sent last, which is no draft any more.
    QString m_sentText;
    /// What People said last, as looking a name up among 100,000 is no work for each key in the message.
    std::optional<int> m_people;
    StartGuard m_sending;
    StartGuard m_help;
    QTimer m_draftTimer;
};
