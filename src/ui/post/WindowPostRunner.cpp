#include "WindowPostRunner.h"

#include "CGIPostWindow.h"

#include <QApplication>

void WindowPostRunner::Run(CGIPost &post, QObject *owner)
{
    auto *parent = qobject_cast<QWidget *>(owner);
    CGIPostWindow(post, parent ? parent : QApplication::activeWindow()).exec();
}
