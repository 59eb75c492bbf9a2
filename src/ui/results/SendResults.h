#pragma once

#include "LxMessageRequest.h"
#include "WindowServices.h"

#include <QDialog>

#include <memory>

class SendResultsModel;
namespace Ui {
class SendResults;
}

/// Lists what became of each message of a send that did not wholly succeed, and saves the list as CSV.
class SendResults final : public QDialog
{
    Q_OBJECT

public:
    SendResults(const WindowServices &services, QWidget *parent);
    ~SendResults() override;

    /// Shows one row a request, in their order. Columns and window come back as they were stored, or else as large as
    /// the list and the font ask for.
    void Results(const LxMessageRequests &requests);

    /// Writes the list with a header line, every field quoted. Raises what SaveFile raises.
    void SaveResultsToFile(const QString &path) const;

    void done(int result) override;

private:
    void FitColumns();
    void FitWindow();
    void SaveAs();

    WindowServices m_services;
    std::unique_ptr<Ui::SendResults> m_ui;
    SendResultsModel *m_results;
};
