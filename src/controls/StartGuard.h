#pragma once

#include <QElapsedTimer>
#include <QKeyEvent>

#include <chrono>
#include <optional>

/// Keeps one slip of the hand (a key held too long, a double click) from starting a thing twice.
///
/// Once a start was let through, further ones are refused until the thing has ended and none was tried for the quiet
/// time. The key that brought a start does nothing else as long as it is held, in no window: each of its events is
/// swallowed and counts as a try, whether it is marked as a repeat or not, until none came for the quiet time, or for
/// longer while the key was not seen let go.
class StartGuard final : public QObject
{
    Q_OBJECT

public:
    explicit StartGuard(std::chrono::milliseconds quietTime, QObject *parent = nullptr);

    /// Does the thing if it may be started now; a refused call counts as a try.
    template <typename Thing>
    void Start(Thing thing)
    {
        if (!MayStart())
            return;
        const End end(*this);
        thing();
    }

    /// From a start that was let through to the end of the thing, with the box that told its outcome.
    [[nodiscard]] bool IsGoingOn() const { return m_isGoingOn; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// However the thing ends.
    class End final
    {
    public:
        explicit End(StartGuard &guard)
            : m_guard(guard)
        {
        }
        ~End() { m_guard.Ended(); }
        Q_DISABLE_COPY_MOVE(End)

    private:
        StartGuard &m_guard;
    };

    [[nodiscard]] bool MayStart();
    void Ended();
    /// Whether the event is one of the key that is held.
    [[nodiscard]] bool Swallows(const QKeyEvent &event);

    std::chrono::milliseconds m_quietTime;
    bool m_isGoingOn = false;
    /// Since the last try, or the end of the thing.
    QElapsedTimer m_sinceTry;
    /// Of the user's last input, where that was a key.
    std::optional<int> m_lastKey;
    bool m_lastKeyIsDown = false;
    std::optional<int> m_heldKey;
    QElapsedTimer m_sinceHeldKey;
};
