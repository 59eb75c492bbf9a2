#include "Import.h"

#include "Attempt.h"
#include "Controls.h"
#include "Prompts.h"
#include "Settings.h"
#include "TextFile.h"
#include "Utils.h"
#include "VendorPages.h"
#include "VendorSite.h"
#include "ui_Import.h"

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"Import Contacts"_s;
const QString kFileName = u"FileName"_s;

} // namespace

Import::Import(const WindowServices &services, AskFile askFile, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_askFile(std::move(askFile))
    , m_ui(std::make_unique<Ui::Import>())
    , m_path(services.settings.Get(kSection, kFileName))
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    connect(m_ui->cmdBrowse, &QPushButton::clicked, this, &Import::Browse);
    connect(m_ui->lblHelpLink, &QLabel::linkActivated, this,
            [this] { VendorPages::Open(VendorSite::kImportingHelpPath, m_services, this); });
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &Import::accept);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &Import::reject);
    // Wide enough for the caption and most names.
    constexpr int kUsualCharacters = 40;
    m_ui->txtFileTitle->setMinimumWidth(kUsualCharacters * fontMetrics().averageCharWidth());
    Refresh();
    Controls::FitToContents(*this);
    Controls::RestoreWindowPosition(m_services.settings, *this);
    m_ui->cmdBrowse->setFocus();
}

Import::~Import() = default;

void Import::Browse()
{
    const QString path = m_askFile(m_path, this);
    if (path.isEmpty())
        return;
    m_path = path;
    Refresh();
    m_ui->cmdOK->setFocus();
}

void Import::Refresh()
{
    const QString title = Utils::FileNameOfPath(m_path);
    if (!title.isEmpty())
        m_ui->txtFileTitle->setText(title);
    m_ui->cmdOK->setEnabled(!title.isEmpty());
}

void Import::Tell(const QString &text, const QString &caption)
{
    m_services.prompts.ShowMessageBox({.text = text, .icon = PromptIcon::Exclamation, .caption = caption}, this);
}

void Import::accept()
{
    if (m_path.isEmpty())
        return;
    QString text;
    const QString failure = Attempt([&] { text = TextFile::DecodeForeign(Utils::ReadTextFile(m_path)); });
    if (!failure.isEmpty()) {
        Tell(tr("The selected file cannot not be opened: %1\r\n\r\nPlease ensure the file is not in use in another "
                "application, and try again.")
                 .arg(failure),
             tr("File not available"));
        return;
    }
    if (text.isEmpty()) {
        Tell(tr("The selected file was empty."), tr("File empty"));
        return;
    }
    m_contactData = text;
    QDialog::accept();
}

void Import::done(int result)
{
    Controls::SaveWindowPosition(m_services.settings, *this);
    m_services.settings.Save(kSection, kFileName, m_path);
    QDialog::done(result);
}
