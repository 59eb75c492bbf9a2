#pragma once

#include "StartGuard.h"

#include <QObject>

#include <chrono>

class PhoneBookHistory;
class QAction;

/// The menu entries that take the last command back and do it again: their captions name it, and a key that is held
/// goes back one command, not twenty.
class UndoActions final : public QObject
{
    Q_OBJECT

public:
    /// All must outlive it. `quietTime` is that of the other guards.
    UndoActions(QAction &undo, QAction &redo, const PhoneBookHistory &history, std::chrono::milliseconds quietTime,
                QObject *parent);

    /// Shows what can be taken back and done again now.
    void Refresh();

signals:
    void UndoAsked();
    void RedoAsked();

private:
    QAction &m_undo;
    QAction &m_redo;
    const PhoneBookHistory &m_history;
    StartGuard m_guard;
};
