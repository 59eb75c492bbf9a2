#include "StartGuard.h"

#include <QCoreApplication>
#include <QKeyEvent>

StartGuard::StartGuard(std::chrono::milliseconds quietTime, QObject *parent)
    : QObject(parent)
    , m_quietTime(quietTime)
{
    qApp->installEventFilter(this);
}

bool StartGuard::IsQuiet(const QElapsedTimer &since) const
{
    return since.elapsed() >= m_quietTime.count();
}

bool StartGuard::MayStart()
{
    const bool isQuiet = !m_sinceTry.isValid() || IsQuiet(m_sinceTry);
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

bool StartGuard::Swallows(int key)
{
    if (m_heldKey != key)
        return false;
    if (IsQuiet(m_sinceHeldKey)) {
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
    case QEvent::KeyRelease: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        m_lastKey = key;
        if (!Swallows(key))
            return false;
        event->accept(); // which also keeps a shortcut from being looked for
        return true;
    }
    default:
        return false;
    }
}
