#pragma once

#include "AccountSettings.h"
#include "LxContactList.h"
#include "LxMessage.h"
#include "SendingSMS.h"
#include "WindowServices.h"

#include <QMainWindow>

#include <memory>
#include <optional>

class PhoneBook;
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
        PhoneBook &phoneBook;
    };

    explicit Compose(const Services &services);
    ~Compose() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void ConnectControls();
    void LoadDraft();
    void ShowCount();
    void SetStatus(const QString &text);
    void TextChanged(const QString &invalidChars);
    void EnableSending();

    /// Everything from the click to the outcome; a second start meanwhile does nothing.
    void Send();
    void SendNow();
    /// None when the user gave up.
    [[nodiscard]] std::optional<LxContactList> Recipients();
    [[nodiscard]] LxContactPtr NewRecipient(const QString &typed);
    void OfferToBuyMessages();
    void Tell(const SendingSMS::SendOutcome &outcome);
    void TellProblem(const QString &text);

    void ShowPhoneBook();
    void ShowAccount();
    void RefreshBalance();

    Services m_services;
    AccountSettings m_account;
    std::unique_ptr<Ui::Compose> m_ui;
    LxMessage m_message;
    bool m_isSending = false;
    /// When cmdSend was last pressed, in milliseconds of the window system's clock.
    std::optional<quint64> m_sendPressedAt;
};
