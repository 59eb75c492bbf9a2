#include "PhoneBookFixture.h"

#include "ContactColumns.h"
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

PhoneBookFixture::PhoneBookFixture(int contactCount)
    : PhoneBookFixture(SampleData::PhoneBookFile(contactCount, kGroups))
{
}

PhoneBookFixture::PhoneBookFixture(const QByteArray &phoneBookFile)
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
    SampleData::FillCountries(countries);
    const QString path = LxPhoneBook::DefaultFileName();
    QDir().mkpath(QFileInfo(path).path());
    WriteFile(path, phoneBookFile);
    window.LoadData();
}

void PhoneBookFixture::Show()
{
    window.show();
    contacts = Child<QTreeView>(u"lvwContacts"_s);
    groups = Child<QTreeView>(u"lvwGroups"_s);
    find = Child<QLineEdit>(u"txtFind"_s);
    contacts->viewport()->installEventFilter(&paints);
    Settle();
}

void PhoneBookFixture::Settle()
{
    QCoreApplication::processEvents();
    paints.isPainted = false;
    contacts->viewport()->update();
    while (!paints.isPainted)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
}

void PhoneBookFixture::ClickHeader(int column) const
{
    emit contacts->header()->sectionClicked(column);
}

void PhoneBookFixture::SelectRows(int count)
{
    ClickHeader(ContactColumns::Mobile);
    const QAbstractItemModel &model = *contacts->model();
    contacts->selectionModel()->select({model.index(0, 0), model.index(count - 1, 0)},
                                       QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ClickHeader(ContactColumns::Name);
    Settle();
}

void WriteFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    Require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
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
