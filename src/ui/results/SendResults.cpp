#include "SendResults.h"

#include "Controls.h"
#include "Error.h"
#include "NumberDelegate.h"
#include "Prompts.h"
#include "RememberedFile.h"
#include "SaveFile.h"
#include "SendResultsModel.h"
#include "TextFile.h"
#include "Utils.h"
#include "ui_SendResults.h"

#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>

using namespace Qt::StringLiterals;

SendResults::SendResults(const WindowServices &services, SendAgain sendAgain, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_ui(std::make_unique<Ui::SendResults>())
    , m_results(new SendResultsModel(this))
    , m_sendAgain(std::move(sendAgain))
    , m_sending(services.quietTime)
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    QTreeView &list = *m_ui->lvwSendResults;
    Controls::SetUpReport(list);
    Controls::KeepReadable(list);
    list.setModel(m_results);
    list.setItemDelegateForColumn(SendResultsModel::Mobile, new NumberDelegate(this));
    list.header()->setResizeContentsPrecision(-1); // no row is left out, wherever it is
    constexpr int kMostReasonLines = 6;
    m_ui->lblReason->setMinimumHeight(fontMetrics().lineSpacing());
    m_ui->lblReason->setMaximumHeight(kMostReasonLines * fontMetrics().lineSpacing());
    connect(list.selectionModel(), &QItemSelectionModel::currentChanged, this, &SendResults::ShowReason);
    new QShortcut(QKeySequence(u"Ctrl+W"_s), this, this, &SendResults::accept);
    connect(m_results, &QAbstractItemModel::modelReset, this, &SendResults::ShowWhatCanBeSentAgain);
    connect(m_results, &QAbstractItemModel::dataChanged, this, &SendResults::ShowWhatCanBeSentAgain);
    connect(m_ui->cmdSendAgain, &QPushButton::clicked, this, &SendResults::SendFailedAgain);
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &SendResults::SaveAs);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &SendResults::accept);
}

SendResults::~SendResults() = default;

void SendResults::Results(const LxMessageRequests &requests)
{
    m_results->SetRequests(requests);
    m_ui->lvwSendResults->setCurrentIndex(m_results->index(0, 0));
    FitColumns();
    FitWindow();
    Controls::RestoreWindowPosition(m_services.settings, *this);
    Controls::RestoreColumnWidths(m_services.settings, *m_ui->lvwSendResults->header());
}

void SendResults::FitColumns()
{
    QTreeView &list = *m_ui->lvwSendResults;
    for (const int column : {SendResultsModel::Status, SendResultsModel::Name, SendResultsModel::Mobile})
        list.resizeColumnToContents(column);
    // A name may be as long as it likes, but not push the rest out of sight.
    constexpr int kMostCharacters = 30;
    const int most = kMostCharacters * list.fontMetrics().averageCharWidth();
    list.setColumnWidth(SendResultsModel::Name, qMin(list.columnWidth(SendResultsModel::Name), most));
}

void SendResults::FitWindow()
{
    constexpr int kMessageCharacters = 40;
    constexpr int kFewestRows = 5;
    constexpr int kMostRows = 15;
    QTreeView &list = *m_ui->lvwSendResults;
    const int rows = qBound(kFewestRows, m_results->rowCount(), kMostRows);
    QSize size(list.verticalScrollBar()->sizeHint().width(), list.header()->sizeHint().height());
    size += QSize(2 * list.frameWidth(), 2 * list.frameWidth());
    size.rwidth() += list.header()->sectionPosition(SendResultsModel::Message) +
                     kMessageCharacters * list.fontMetrics().averageCharWidth();
    size.rheight() += rows * qMax(list.sizeHintForRow(0), list.fontMetrics().height());
    const QSize wanted = layout()->totalSizeHint() - list.sizeHint() + size;
    resize(wanted.boundedTo(screen()->availableGeometry().size()));
}

void SendResults::ShowWhatCanBeSentAgain()
{
    m_ui->cmdSendAgain->setEnabled(!m_results->FailedRows().isEmpty());
    m_ui->lblNotKnown->setVisible(m_results->HasUnknown());
    ShowReason();
}

void SendResults::ShowReason()
{
    const QString reason = m_ui->lvwSendResults->currentIndex().data(SendResultsModel::ReasonRole).toString();
    m_ui->lblReason->setText(reason);
    m_ui->lblReason->setAccessibleDescription(reason); // the name of a label hides its text
}

void SendResults::SendFailedAgain()
{
    m_sending.Start([this] {
        const QList<int> rows = m_results->FailedRows();
        if (!rows.isEmpty())
            m_results->Replace(rows, m_sendAgain(m_results->Requests(rows), this));
    });
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
    Controls::SaveColumnWidths(m_services.settings, *m_ui->lvwSendResults->header());
    QDialog::done(result);
}
