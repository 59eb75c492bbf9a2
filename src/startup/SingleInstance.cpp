#include "SingleInstance.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

SingleInstance::SingleInstance()
    : m_lock(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + u"/brevio.lock"_s)
{
    // However old the lock is, only the end of its holder frees it.
    m_lock.setStaleLockTime(0);
}

bool SingleInstance::TryToBecome()
{
    return m_lock.tryLock() || m_lock.error() != QLockFile::LockFailedError;
}
