#pragma once

#include <QtGlobal>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While it lives, this thread obeys file modes even when root runs it. It stays root, so that it reaches its own files
/// in whatever folder they are.
class WithoutRoot final
{
public:
    WithoutRoot()
    {
        ::syscall(SYS_capget, &m_header, m_usual);
        __user_cap_data_struct fewer[] = {m_usual[0], m_usual[1]};
        fewer[0].effective &= ~(CAP_TO_MASK(CAP_DAC_OVERRIDE) | CAP_TO_MASK(CAP_DAC_READ_SEARCH));
        ::syscall(SYS_capset, &m_header, fewer);
    }
    ~WithoutRoot() { ::syscall(SYS_capset, &m_header, m_usual); }
    Q_DISABLE_COPY_MOVE(WithoutRoot)

private:
    __user_cap_header_struct m_header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_usual[_LINUX_CAPABILITY_U32S_3] = {};
};
