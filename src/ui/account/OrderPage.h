#pragma once

#include <QString>

class Prompts;
class QObject;
class Settings;
class Shell;

/// The vendor's page where messages are bought and accounts are opened.
namespace OrderPage {

/// Opens the plain page.
void Open(const Settings &settings, Shell &shell, Prompts &prompts, QObject *owner);

/// Opens the page for the account in the settings: its user name and reply-to address go along when either is there.
void BuyMessages(Settings &settings, Shell &shell, Prompts &prompts, QObject *owner);

} // namespace OrderPage
