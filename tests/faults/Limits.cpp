#include "tests/faults/Limits.h"

#include <csignal>

#include <unistd.h>

namespace {

/// The user "nobody", as the kernel numbers it.
constexpr uid_t kNobody = 65534;

} // namespace

OrdinaryUser::OrdinaryUser()
    : m_user(geteuid())
{
    // The real user too: access() asks for that one. The saved one leads back.
    if (m_user == 0 && setresuid(kNobody, kNobody, 0) != 0) {
        qFatal("cannot give up the superuser's rights");
    }
}

OrdinaryUser::~OrdinaryUser()
{
    if (geteuid() != m_user && setresuid(m_user, m_user, m_user) != 0) {
        qFatal("cannot get the superuser's rights back");
    }
}

FullDisk::FullDisk(rlim_t bytes)
    : m_handler(std::signal(SIGXFSZ, SIG_IGN))
{
    getrlimit(RLIMIT_FSIZE, &m_limit);
    rlimit smaller = m_limit;
    smaller.rlim_cur = bytes;
    if (setrlimit(RLIMIT_FSIZE, &smaller) != 0) {
        qFatal("cannot limit the size of files");
    }
}

FullDisk::~FullDisk()
{
    setrlimit(RLIMIT_FSIZE, &m_limit);
    std::signal(SIGXFSZ, m_handler);
}
