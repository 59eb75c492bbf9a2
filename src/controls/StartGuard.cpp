#include "StartGuard.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

/// How late the first repeat of a key may come. That the key was let go may never be heard of, as when a window that
/// a dialog blocks has the focus, so it does not count as down for ever.
constexpr std::chrono::milliseconds kLongestDelay(2500);

bool HasPassed(const QElapsedTimer &since, std::chrono::milliseconds time)
{
    return since.elapsed() >= time.count();
}

} // namespace

StartGuard::StartGuard(std::chrono::milliseconds quietTime, QObject *parent)
    : QObject(parent)
    , m_quietTime(quietTime)
{
    qApp->installEventFilter(this);
}

bool StartGuard::MayStart()
{
    const bool isQuiet = !m_sinceTry.isValid() || HasPassed(m_sinceTry, m_quietTime);
    const bool mayStart = isQuiet && !m_isGoingOn;
    m_isGoingOn = m_isGoingOn || mayStart;
    m_sinceTry.start();
    // The input that is being handled is the one that asks for the start.
    m_heldKey = m_lastKey;
    m_sinceHeldKey.start();
    return mayStart;
}

void StartGuard::Ended()
{
    m_isGoingOn = false;
    m_sinceTry.start();
}

bool StartGuard::Swallows(const QKeyEvent &event)
{
    const bool wasDown = m_lastKey == event.key() && m_lastKeyIsDown;
    m_lastKey = event.key();
    m_lastKeyIsDown = event.type() != QEvent::KeyRelease;
    if (m_heldKey != event.key())
        return false;
    if (HasPassed(m_sinceHeldKey, wasDown ? std::max(m_quietTime, kLongestDelay) : m_quietTime)) {
        m_heldKey.reset();
        return false;
    }
    m_sinceTry.start();
    m_sinceHeldKey.start();
    return true;
}

bool StartGuard::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        m_lastKey.reset();
        return false;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (!Swallows(*static_cast<QKeyEvent *>(event)))
            return false;
        event->accept(); // which also keeps a shortcut from being looked for
        return true;
    default:
        return false;
    }
}
