// Holds a thread, and those that it starts, to the system calls that a session of the library makes.
#pragma once

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <iterator>
#include <stdexcept>
#include <vector>

// clang-format off
constexpr unsigned kSessionCalls[] = {
    // threads and memory, as the C library makes them
    SYS_brk, SYS_clone3, SYS_exit, SYS_futex, SYS_gettid, SYS_madvise, SYS_mmap, SYS_mprotect, SYS_munmap, SYS_rseq,
    SYS_rt_sigprocmask, SYS_set_robust_list,
    // the library's own file as it is loaded, the registry's file, the log
    SYS_access, SYS_close, SYS_faccessat2, SYS_fcntl, SYS_getdents64, SYS_lseek, SYS_newfstatat, SYS_openat, SYS_read,
    SYS_readlink, SYS_write,
    // the folder of a log that has no place beside the library; a log that others could read
    SYS_mkdir, SYS_geteuid, SYS_fchmod,
    // ports, the arrival of devices, waits and timers
    SYS_epoll_create1, SYS_epoll_ctl, SYS_epoll_wait, SYS_eventfd2, SYS_flock, SYS_inotify_add_watch, SYS_inotify_init1,
    SYS_inotify_rm_watch, SYS_ioctl, SYS_ppoll, SYS_timerfd_create, SYS_timerfd_settime,
    // of TellCall
    SYS_exit_group,
};
// clang-format on

inline void TellCall(int, siginfo_t* information, void*)
{
    char line[80];
    const int length = std::snprintf(line, sizeof line, "not in the list: system call %d\n", information->si_syscall);
    [[maybe_unused]] const ssize_t told = write(STDERR_FILENO, line, static_cast<size_t>(length));
    _exit(1);
}

// The process ends with a line that names the first call that is not in the list.
inline void AllowSessionCallsOnly()
{
    struct sigaction action
    {
    };
    action.sa_sigaction = TellCall;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSYS, &action, nullptr);

    std::vector<sock_filter> program{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const unsigned call : kSessionCalls) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP));
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
        throw std::runtime_error("this kernel takes no filter of system calls");
}
