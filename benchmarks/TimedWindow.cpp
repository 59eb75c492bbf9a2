#include "TimedWindow.h"

#include "ContactColumns.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "SampleData.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QItemSelectionModel>

#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

Flushes &FlushesSoFar()
{
    static Flushes s_flushes;
    return s_flushes;
}

/// The flush of a save takes what the disk takes. It stands before the C library's, and is timed apart.
extern "C" int fsync(int descriptor)
{
    QElapsedTimer timer;
    timer.start();
    Flushes &flushes = FlushesSoFar();
    // The file that is to replace the phone book may have no name yet; nothing else is saved into that folder.
    const QString path = QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(descriptor));
    flushes.saves += path.startsWith(QFileInfo(LxPhoneBook::DefaultFileName()).path() + u'/') ? 1 : 0;
    const auto result = static_cast<int>(::syscall(SYS_fsync, descriptor));
    flushes.nanoseconds += timer.nsecsElapsed();
    return result;
}

TimedWindow::TimedWindow(int contactCount)
    : TimedWindow(SampleData::PhoneBookFile(contactCount, kGroups))
{
}

TimedWindow::TimedWindow(const QByteArray &phoneBookFile)
    : PhoneBookWindow(static_cast<Machine &>(*this), prompts)
{
    countries = SampleData::Countries();
    Require(WriteBytes(LxPhoneBook::DefaultFileName(), phoneBookFile));
    phoneBook.LoadData();
}

void TimedWindow::Show()
{
    phoneBook.show();
    Contacts().viewport()->installEventFilter(&paints);
    Settle();
}

void TimedWindow::Settle()
{
    QCoreApplication::processEvents();
    paints.isPainted = false;
    Contacts().viewport()->update();
    while (!paints.isPainted)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
}

void TimedWindow::ClickHeader(int column) const
{
    emit Contacts().header()->sectionClicked(column);
}

void TimedWindow::SelectRows(int count)
{
    ClickHeader(ContactColumns::Mobile);
    const QAbstractItemModel &model = *Contacts().model();
    Contacts().selectionModel()->select({model.index(0, 0), model.index(count - 1, 0)},
                                        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ClickHeader(ContactColumns::Name);
    Settle();
}

void Accept(QWidget &dialog)
{
    QMetaObject::invokeMethod(&dialog, "accept");
}

int RunWindowBenchmarks(int argc, char *argv[])
{
    // A platform without a screen else waits a while before it paints, which is no work.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
