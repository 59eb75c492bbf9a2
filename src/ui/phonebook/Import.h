#pragma once

#include "WindowServices.h"

#include <QDialog>
#include <QString>

#include <functional>
#include <memory>

namespace Ui {
class Import;
}

/// Lets the user pick a file of contacts and reads it whole. The file is remembered, also after Cancel.
class Import final : public QDialog
{
    Q_OBJECT

public:
    /// Asks for a file, proposing one; gives its path, or empty text when the user cancelled.
    using AskFile = std::function<QString(const QString &proposal, QWidget *owner)>;

    Import(const WindowServices &services, AskFile askFile, QWidget *parent);
    ~Import() override;

    /// The text of the file after OK; empty after Cancel.
    [[nodiscard]] const QString &ContactData() const { return m_contactData; }

    void accept() override;
    void done(int result) override;

private:
    void Browse();
    void Refresh();
    void Tell(const QString &text, const QString &caption);

    WindowServices m_services;
    AskFile m_askFile;
    std::unique_ptr<Ui::Import> m_ui;
    QString m_path;
    QString m_contactData;
};
