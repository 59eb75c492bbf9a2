#include "UndoActions.h"

#include "PhoneBookHistory.h"

#include <QAction>

#include <algorithm>

namespace {

/// Two strokes in a row are further apart. Between the repeats of a held key, which some systems pass off as strokes,
/// there is next to nothing.
constexpr std::chrono::milliseconds kBetweenStrokes(50);

} // namespace

UndoActions::UndoActions(QAction &undo, QAction &redo, const PhoneBookHistory &history,
                         std::chrono::milliseconds quietTime, QObject *parent)
    : QObject(parent)
    , m_undo(undo)
    , m_redo(redo)
    , m_history(history)
    , m_guard(std::min(quietTime, kBetweenStrokes))
{
    connect(&m_undo, &QAction::triggered, this, [this] { m_guard.Start([this] { emit UndoAsked(); }); });
    connect(&m_redo, &QAction::triggered, this, [this] { m_guard.Start([this] { emit RedoAsked(); }); });
}

void UndoActions::Refresh()
{
    const auto caption = [](const QString &plain, const QString &named, const QString &command) {
        return command.isEmpty() ? plain : named.arg(command);
    };
    m_undo.setText(caption(tr("&Undo"), tr("&Undo %1"), m_history.UndoName()));
    m_redo.setText(caption(tr("&Redo"), tr("&Redo %1"), m_history.RedoName()));
    m_undo.setEnabled(m_history.CanUndo());
    m_redo.setEnabled(m_history.CanRedo());
}
