#pragma once

#include "LxContact.h"
#include "WindowServices.h"

#include <QDialog>

#include <memory>

class LxCountryList;
class LxPhoneBook;
class QLineEdit;
class QStandardItemModel;
namespace Ui {
class ContactProperties;
}

/// Creates or edits a contact: name, country, number with its international form, and groups. Set up, exec, and read
/// Canceled.
class ContactProperties final : public QDialog
{
    Q_OBJECT

public:
    /// The countries must outlive the dialog.
    ContactProperties(const LxCountryList &countries, const WindowServices &services, QWidget *parent);
    ~ContactProperties() override;

    /// Prepares the dialog. A new contact starts with the two texts; an existing one with its own. Without any
    /// country to choose from, this is told, and Canceled stays true: the dialog is then not to be shown.
    void Setup(const LxContactPtr &contact, LxPhoneBook &phoneBook, bool isNew, const QString &initialName,
               const QString &initialNumber);

    /// Sets the caption.
    void MakeGroupsReadable();
    void SetupTitle(bool isNew);

    /// False once set up; true again when the dialog was left without OK.
    [[nodiscard]] bool Canceled() const { return m_canceled; }

    void accept() override;
    void reject() override;
    void done(int result) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ConnectControls();
    void SelectCountry(int code);
    [[nodiscard]] int SelectedCode() const;
    void ConvertNumber();
    void ShowPreview();
    void ShowGuarantee();
    void FillGroups();
    void ToggleAt(const QPoint &position);
    [[nodiscard]] bool IsNumberAcceptable() const;
    void Refuse(const QString &why, QLineEdit *where);
    void Store();

    const LxCountryList &m_countries;
    WindowServices m_services;
    std::unique_ptr<Ui::ContactProperties> m_ui;
    QStandardItemModel *m_groups;
    LxContactPtr m_contact;
    LxPhoneBook *m_phoneBook = nullptr;
    bool m_canceled = true;
};
