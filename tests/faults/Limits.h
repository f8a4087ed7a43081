#pragma once

#include <QtGlobal>

#include <sys/resource.h>
#include <sys/types.h>

/// While it lives, files are opened with the rights of a user who owns nothing, also when the test
/// runs as the superuser, whom no permission stops.
class OrdinaryUser final
{
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

public:
    OrdinaryUser();
    ~OrdinaryUser();

private:
    uid_t m_user;
};

/// While it lives, a file of this process can hold @p bytes and no more: to whoever writes, the
/// disk is full.
class FullDisk final
{
    Q_DISABLE_COPY_MOVE(FullDisk)

public:
    explicit FullDisk(rlim_t bytes);
    ~FullDisk();

private:
    rlimit m_limit{};
    void (*m_handler)(int);
};
