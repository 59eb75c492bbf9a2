#pragma once

#include "AccountSettings.h"
#include "SendingSMS.h"
#include "WindowServices.h"

#include <QDialog>

#include <memory>

namespace Ui {
class AccountDetails;
}

/// The user's account: name, password and reply-to address, its balance, and the way to buy messages. User name and
/// password are stored as they are typed, so Cancel does not undo them; the reply-to address waits for OK.
class AccountDetails final : public QDialog
{
    Q_OBJECT

public:
    AccountDetails(const WindowServices &services, const SendingSMS::Gateway &gateway, QWidget *parent);
    ~AccountDetails() override;

    void accept() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void ConnectControls();
    /// In the colour of a hint as long as it stands there.
    void ShowHint();
    void EnableButtons();
    void ShowBalance();
    void TellBalance(const QString &username, const SendingSMS::Reply &reply);

    WindowServices m_services;
    SendingSMS::Gateway m_gateway;
    AccountSettings m_account;
    std::unique_ptr<Ui::AccountDetails> m_ui;
    /// What the reply-to box shows while there is no address; never stored.
    QString m_hint;
};
