#pragma once

#include <QDir>
#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

class QWidget;

/// Walks through the program's windows as a user would, one step at a time from the event loop, takes a picture of
/// each, and sends one message.
class Tour final : public QObject
{
    Q_OBJECT

public:
    explicit Tour(const QDir &pictures);

    void Start();

    /// The compose window's status after the send; empty when the tour did not get that far.
    [[nodiscard]] const QString &Outcome() const { return m_outcome; }

private:
    /// True when the step is done; it is tried again until then.
    using Step = std::function<bool()>;

    void NextStep();
    void PlanSteps();
    /// Opens a dialog by its menu entry, takes its picture and leaves it.
    void PlanDialog(const QString &action, const QString &window);
    /// Waits for a dialog, takes its picture and leaves it.
    void PlanPicture(const QString &window);
    void Save(QWidget &window, const QString &name);

    QDir m_pictures;
    std::vector<Step> m_steps;
    size_t m_step = 0;
    int m_tries = 0;
    QTimer m_timer;
    QString m_outcome;
};
