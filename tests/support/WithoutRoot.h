#pragma once

#include <QFile>

#include <unistd.h>

/// While it lives, the process obeys file modes even when root runs it. The folder is given to the user that the
/// process becomes.
class WithoutRoot final
{
public:
    explicit WithoutRoot(const QString &folder)
    {
        constexpr uid_t kNobody = 65534;
        if (::geteuid() == 0 && ::chown(QFile::encodeName(folder).constData(), kNobody, kNobody) == 0)
            std::ignore = ::setresuid(kNobody, kNobody, 0);
    }
    /// Becomes root again; other users cannot, and stay what they are.
    ~WithoutRoot() { std::ignore = ::setresuid(0, 0, 0); }
    Q_DISABLE_COPY_MOVE(WithoutRoot)

    [[nodiscard]] bool Failed() const { return ::geteuid() == 0; }
};
