#pragma once

#include <QFile>

#include <cstdlib>
#include <unistd.h>

/// While it lives, the process obeys file modes even when root runs it. The folder is given to the user that the
/// process becomes.
class WithoutRoot final
{
public:
    explicit WithoutRoot(const QString &folder)
        : m_wasRoot(::geteuid() == 0)
    {
        constexpr uid_t kNobody = 65534;
        if (m_wasRoot)
            m_failed = ::chown(QFile::encodeName(folder).constData(), kNobody, kNobody) != 0 ||
                       ::setresuid(kNobody, kNobody, 0) != 0;
    }
    ~WithoutRoot()
    {
        if (m_wasRoot && ::setresuid(0, 0, 0) != 0)
            std::abort();
    }
    Q_DISABLE_COPY_MOVE(WithoutRoot)

    [[nodiscard]] bool Failed() const { return m_failed; }

private:
    bool m_wasRoot;
    bool m_failed = false;
};
