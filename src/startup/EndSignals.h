#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <memory>

/// Tells of SIGTERM, SIGINT and SIGHUP from the event loop, any that runs, instead of the process dying of them. One
/// at a time; with it the signals get back what they did before.
class EndSignals final : public QObject
{
    Q_OBJECT

public:
    EndSignals();
    ~EndSignals() override;

signals:
    void Received();

private:
    static constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

    std::array<int, 2> m_pipe = {-1, -1};
    std::array<struct sigaction, kSignals.size()> m_before = {};
    std::unique_ptr<QSocketNotifier> m_notifier;
};
