#pragma once

#include "SentKeeping.h"
#include "WindowServices.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>

class SentLog;
class SentMessagesModel;
struct SentMessage;
namespace Ui {
class SentMessages;
}

/// Lists what was sent with what became of it, newest first; finds in it, copies, exports and deletes it, and hands a
/// message over to be written again.
class SentMessages final : public QDialog
{
    Q_OBJECT

public:
    /// Takes a message over to be sent again; false when the user thinks better of it. `owner` is the window that asks.
    using SendAgain = std::function<bool(const SentMessage &message, QWidget *owner)>;

    /// The log must outlive the window, which closes once a message was taken over.
    SentMessages(const WindowServices &services, SentLog &log, SendAgain sendAgain, QWidget *parent);
    ~SentMessages() override;

    void done(int result) override;

private:
    void ConnectControls();
    void RestoreOrder();
    void SortByClick(int column);
    void ApplyOrder();
    void SelectAgain();
    void ShowState();
    void ShowDetails();
    [[nodiscard]] QString StatusText() const;
    [[nodiscard]] QString Hint() const;

    void SendCurrentAgain();
    void Copy();
    void Export();
    void Delete();
    void Clear();
    [[nodiscard]] bool Confirms(const QString &question, const QString &caption);
    void TellProblem(const QString &text, const QString &caption);

    /// These rows, each as `line` makes it of its fields; none when the user cancelled.
    [[nodiscard]] std::optional<QString> Printed(const std::vector<int> &rows, QString (*line)(const QStringList &));

    WindowServices m_services;
    SentKeeping m_keeping;
    SendAgain m_sendAgain;
    std::unique_ptr<Ui::SentMessages> m_ui;
    SentMessagesModel *m_rows;
    int m_sortBy = 0;
    bool m_reverseSort = false;
    /// The message to be current again once its row is there.
    qint64 m_current = 0;
    /// What the log had to tell while the window was open.
    QString m_notice;
};
