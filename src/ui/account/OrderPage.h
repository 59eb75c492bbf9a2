#pragma once

class QObject;
struct WindowServices;

/// The vendor's page where messages are bought and accounts are opened.
namespace OrderPage {

/// Opens the plain page.
void Open(const WindowServices &services, QObject *owner);

/// Opens the page for the account in the settings: its user name and reply-to address go along when either is there.
void BuyMessages(const WindowServices &services, QObject *owner);

} // namespace OrderPage
