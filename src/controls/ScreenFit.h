#pragma once

#include <QObject>
#include <QPoint>

#include <optional>

class QWidget;

/// Keeps a window within its screen, frame and title bar included: a size that can be changed is made to fit, and the
/// window is moved until all of it can be seen. As a frame is known only once the window is shown, all is done again
/// then, one time.
class ScreenFit final : public QObject
{
    Q_OBJECT

public:
    /// Fits the window, its frame at this position; where none is given, the desktop chooses one.
    static void Apply(QWidget &window, const std::optional<QPoint> &position = {});

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit ScreenFit(QWidget &window);
    void Fit();

    QWidget &m_window;
    std::optional<QPoint> m_position;
    bool m_isDue = false;
};
