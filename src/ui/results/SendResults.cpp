#include "SendResults.h"

#include "Controls.h"
#include "Error.h"
#include "Prompts.h"
#include "RememberedFile.h"
#include "SaveFile.h"
#include "SendResultsModel.h"
#include "TextFile.h"
#include "Utils.h"
#include "ui_SendResults.h"

using namespace Qt::StringLiterals;

SendResults::SendResults(const WindowServices &services, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_ui(std::make_unique<Ui::SendResults>())
    , m_results(new SendResultsModel(this))
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    Controls::SetUpReport(*m_ui->lvwSendResults);
    m_ui->lvwSendResults->setModel(m_results);
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &SendResults::SaveAs);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &SendResults::accept);
    Controls::RestoreWindowPosition(m_services.settings, *this);
    Controls::RestoreColumnWidths(m_services.settings, *m_ui->lvwSendResults);
}

SendResults::~SendResults() = default;

void SendResults::Results(const LxMessageRequests &requests)
{
    m_results->SetRequests(requests);
    m_ui->lvwSendResults->setCurrentIndex(m_results->index(0, 0));
}

void SendResults::SaveAs()
{
    const RememberedFile file(m_services, u"Send Results"_s);
    const QString path = file.AskToSave({.title = tr("Save Results As"),
                                         .filters = {{tr("CSV (Comma delimited)"), {u"*.csv"_s}}},
                                         .initialPath = Utils::MyDocumentsFolder() + u"/Send Results"_s},
                                        this);
    if (path.isEmpty())
        return;
    try {
        SaveResultsToFile(path);
    } catch (const Error &error) {
        m_services.prompts.ShowMessageBox(
            {.text = tr("The results could not be saved to a file: %1").arg(error.Description()),
             .icon = PromptIcon::Information,
             .caption = tr("Save Results Failed")},
            this);
    }
}

void SendResults::SaveResultsToFile(const QString &path) const
{
    SaveFile(path, TextFile::Encode(Utils::WriteListAsCsv(*m_results, m_ui->lvwSendResults->isHeaderHidden())));
}

void SendResults::done(int result)
{
    Controls::SaveWindowPosition(m_services.settings, *this);
    Controls::SaveColumnWidths(m_services.settings, *m_ui->lvwSendResults);
    QDialog::done(result);
}
