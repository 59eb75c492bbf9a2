#pragma once

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QTest>
#include <QTimer>

/// Calls `act` once with the modal dialog of this object name, from the event loop, as a user would use it. The
/// dialog is closed when `act` leaves it open; the test fails when it does not come within ten seconds.
template <typename Act>
void WhenDialogOpens(const QString &name, Act act)
{
    constexpr int kLimitMs = 10000;
    auto *poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, name, act, limit = QDeadlineTimer(kLimitMs)]() mutable {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        const bool isIt = dialog && dialog->objectName() == name;
        if (!isIt && !limit.hasExpired())
            return;
        poll->stop();
        poll->deleteLater();
        const QPointer<QDialog> watched(dialog);
        if (isIt)
            act(*dialog);
        else
            QTest::qFail(qPrintable(name + QStringLiteral(" did not open")), __FILE__, __LINE__);
        if (watched && watched->isVisible())
            watched->reject();
    });
    poll->start(0);
}

/// The window of this object name, or null.
inline QWidget *FindWindow(const QString &name)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == name)
            return window;
    }
    return nullptr;
}

/// The control of this object name, which must be there.
template <typename T>
T &Control(const QWidget &window, const char *name)
{
    auto *control = window.findChild<T *>(QString::fromLatin1(name));
    if (!control)
        qFatal("There is no control %s", name);
    return *control;
}
