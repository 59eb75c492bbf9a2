#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTimer>

/// Calls `act` once with the modal dialog of this object name, from the event loop, as a user would use it. The
/// dialog is closed when `act` leaves it open.
template <typename Act>
void WhenDialogOpens(const QString &name, Act act)
{
    auto *poll = new QTimer(qApp);
    poll->callOnTimeout(poll, [poll, name, act] {
        const QPointer dialog(qobject_cast<QDialog *>(QApplication::activeModalWidget()));
        if (!dialog || dialog->objectName() != name)
            return;
        poll->stop();
        poll->deleteLater();
        act(*dialog);
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
    poll->start(0);
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

/// The window of this object name, or null.
inline QWidget *FindWindow(const QString &name)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto isIt = [&name](const QWidget *window) { return window->objectName() == name; };
    const auto it = std::find_if(windows.begin(), windows.end(), isIt);
    return it == windows.end() ? nullptr : *it;
}
