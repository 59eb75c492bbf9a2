#pragma once

#include "LxMessageRequest.h"
#include "StartGuard.h"
#include "WindowServices.h"

#include <QDialog>

#include <functional>
#include <memory>

class SendResultsModel;
namespace Ui {
class SendResults;
}

/// Lists what became of each message of a send that did not wholly succeed, saves the list as CSV, and sends the failed
/// ones again: never one that the gateway may have taken.
class SendResults final : public QDialog
{
    Q_OBJECT

public:
    /// Posts messages once more and gives them back with what became of them, in their order. `owner` is the window
    /// that asks for it.
    using SendAgain = std::function<LxMessageRequests(const LxMessageRequests &failed, QWidget *owner)>;

    SendResults(const WindowServices &services, SendAgain sendAgain, QWidget *parent);
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
    void SendFailedAgain();
    void ShowWhatCanBeSentAgain();
    void ShowReason();

    WindowServices m_services;
    std::unique_ptr<Ui::SendResults> m_ui;
    SendResultsModel *m_results;
    SendAgain m_sendAgain;
    StartGuard m_sending;
};
