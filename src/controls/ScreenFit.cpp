#include "ScreenFit.h"

#include "Controls.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

int VisibleArea(const QRect &frame, const QScreen &screen)
{
    const QRect visible = screen.availableGeometry().intersected(frame);
    return visible.width() * visible.height();
}

/// The part of the desktop on which most of the frame lies; where none of it does, that of the window.
QRect ScreenOf(const QRect &frame, const QWidget &window)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto most = std::max_element(screens.begin(), screens.end(), [&frame](const QScreen *a, const QScreen *b) {
        return VisibleArea(frame, *a) < VisibleArea(frame, *b);
    });
    const QScreen *screen = VisibleArea(frame, **most) > 0 ? *most : window.screen();
    return screen->availableGeometry();
}

/// Also by several screens together.
bool IsWhollyVisible(const QRect &frame)
{
    QRegion hidden(frame);
    for (const QScreen *screen : QGuiApplication::screens())
        hidden -= screen->availableGeometry();
    return hidden.isEmpty();
}

} // namespace

ScreenFit::ScreenFit(QWidget &window)
    : QObject(&window)
    , m_window(window)
{
    window.installEventFilter(this);
}

void ScreenFit::Apply(QWidget &window, const std::optional<QPoint> &position)
{
    auto *fit = window.findChild<ScreenFit *>(QString(), Qt::FindDirectChildrenOnly);
    if (!fit)
        fit = new ScreenFit(window);
    fit->m_position = position;
    fit->m_isDue = true;
    fit->Fit();
}

bool ScreenFit::eventFilter(QObject *watched, QEvent *event)
{
    // The desktop tells the frame between showing the window and asking for its contents.
    if (event->type() == QEvent::Show && m_window.windowHandle())
        m_window.windowHandle()->installEventFilter(this);
    else if (event->type() == QEvent::Expose && static_cast<QWindow *>(watched)->isExposed() &&
             std::exchange(m_isDue, false))
        Fit();
    return QObject::eventFilter(watched, event);
}

void ScreenFit::Fit()
{
    if (m_window.isMaximized() || m_window.isFullScreen())
        return;
    const QMargins margins = m_window.windowHandle() ? m_window.windowHandle()->frameMargins() : QMargins();
    const QRect wanted(m_position.value_or(m_window.pos()), m_window.size().grownBy(margins));
    const QRect screen = ScreenOf(wanted, m_window);
    if (Controls::IsSizable(m_window))
        m_window.resize(m_window.size().boundedTo(screen.size().shrunkBy(margins)));
    QRect frame(wanted.topLeft(), m_window.size().grownBy(margins));
    // Until the window is shown, a place of its own would keep the desktop from choosing one.
    const bool isPlaced = m_position || !m_isDue;
    if (!Controls::HasPosition() || !isPlaced)
        return;
    if (!IsWhollyVisible(frame)) {
        frame.moveRight(qMin(frame.right(), screen.right()));
        frame.moveBottom(qMin(frame.bottom(), screen.bottom()));
        frame.moveLeft(qMax(frame.left(), screen.left()));
        frame.moveTop(qMax(frame.top(), screen.top()));
    }
    if (frame.topLeft() != m_window.pos())
        m_window.move(frame.topLeft());
}
