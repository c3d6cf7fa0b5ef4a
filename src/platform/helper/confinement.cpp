#include "platform/helper/confinement.h"

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "platform/helper/file_confinement.h"

namespace platform::helper {

namespace {

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

base::Error failure(const std::string& what, int error) {
    return {base::ErrorKind::notPermitted,
            "The helper program could not " + what + ": " + std::strerror(error) + "."};
}

/// Memory, the descriptors that are open, threads, time, and what the C library asks along the way.
/// `sysinfo` is asked by its sorting, `getrandom` by its containers, `sigaltstack` by sanitizers.
constexpr int allowedCalls[] = {
    SCMP_SYS(read),
    SCMP_SYS(pread64),
    SCMP_SYS(write),
    SCMP_SYS(writev),
    SCMP_SYS(close),
    SCMP_SYS(fstat),
    SCMP_SYS(lseek),
    SCMP_SYS(recvmsg),
    SCMP_SYS(sendmsg),
    SCMP_SYS(poll),
    SCMP_SYS(ppoll),
    SCMP_SYS(munmap),
    SCMP_SYS(mremap),
    SCMP_SYS(brk),
    SCMP_SYS(madvise),
    SCMP_SYS(futex),
    SCMP_SYS(set_robust_list),
    SCMP_SYS(rseq),
    SCMP_SYS(gettid),
    SCMP_SYS(getpid),
    SCMP_SYS(sched_yield),
    SCMP_SYS(sched_getaffinity),
    SCMP_SYS(getrandom),
    SCMP_SYS(sysinfo),
    SCMP_SYS(getrusage),
    SCMP_SYS(times),
    SCMP_SYS(time),
    SCMP_SYS(gettimeofday),
    SCMP_SYS(clock_gettime),
    SCMP_SYS(clock_getres),
    SCMP_SYS(clock_nanosleep),
    SCMP_SYS(nanosleep),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(sigaltstack),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
};

int allow(const Filter& filter, int call, const scmp_arg_cmp& condition) {
    return seccomp_rule_add(filter.get(), SCMP_ACT_ALLOW, call, 1, condition);
}

constexpr scmp_arg_cmp argumentEquals(unsigned index, scmp_datum_t value) {
    return {index, SCMP_CMP_EQ, value, 0};
}

constexpr scmp_arg_cmp argumentHasBits(unsigned index, scmp_datum_t mask, scmp_datum_t value) {
    return {index, SCMP_CMP_MASKED_EQ, mask, value};
}

/// Calls that are harmless with some arguments only.
int allowConditionally(const Filter& filter) {
    // A thread, never a process or a namespace.
    constexpr scmp_datum_t threadFlags = CLONE_VM | CLONE_THREAD;
    constexpr scmp_datum_t namespaceFlags = CLONE_NEWNS | CLONE_NEWCGROUP | CLONE_NEWUTS |
                                            CLONE_NEWIPC | CLONE_NEWUSER | CLONE_NEWPID |
                                            CLONE_NEWNET;
    int result = 0;
    const auto add = [&](int outcome) { result = result == 0 ? outcome : result; };
    add(allow(filter, SCMP_SYS(clone),
              argumentHasBits(0, threadFlags | namespaceFlags, threadFlags)));
    // Its flags are behind a pointer; told that there is no such call, the C library uses the
    // other.
    add(seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0));
    add(allow(filter, SCMP_SYS(mmap), argumentHasBits(2, PROT_EXEC, 0)));
    add(allow(filter, SCMP_SYS(mprotect), argumentHasBits(2, PROT_EXEC, 0)));
    add(allow(filter, SCMP_SYS(fcntl), argumentEquals(1, F_GET_SEALS)));
    // By its empty path and the flag for it, this is how the C library asks about a descriptor.
    add(allow(filter, SCMP_SYS(newfstatat), argumentHasBits(3, AT_EMPTY_PATH, AT_EMPTY_PATH)));
    // Signals to itself alone: that is how it aborts.
    add(allow(filter, SCMP_SYS(tgkill), argumentEquals(0, static_cast<scmp_datum_t>(::getpid()))));
    // Reading a limit, not setting one.
    add(allow(filter, SCMP_SYS(prlimit64), argumentEquals(2, 0)));
    add(allow(filter, SCMP_SYS(prctl), argumentEquals(0, PR_SET_NAME)));
    return result;
}

int applyFilter() {
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)), &seccomp_release);
    if (!filter) {
        return -ENOMEM;
    }
    int result = seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1);
    for (const int call : allowedCalls) {
        if (result == 0) {
            result = seccomp_rule_add(filter.get(), SCMP_ACT_ALLOW, call, 0);
        }
    }
    if (result == 0) {
        result = allowConditionally(filter);
    }
    return result == 0 ? seccomp_load(filter.get()) : result;
}

/// Of its data segment, which is what the limit counts; 0 when it cannot be told.
unsigned long long dataLength() {
    // size, resident, shared, text, library, data: in pages.
    std::ifstream statistics("/proc/self/statm");
    unsigned long long pages = 0;
    for (int column = 0; column < 6; ++column) {
        statistics >> pages;
    }
    return statistics ? pages * static_cast<unsigned long long>(::sysconf(_SC_PAGESIZE)) : 0;
}

bool limit(__rlimit_resource_t resource, rlim_t value) {
    const rlimit both{value, value};
    return ::setrlimit(resource, &both) == 0;
}

}  // namespace

base::Status confineToReading() {
    if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_DUMPABLE, 0) != 0 || !limit(RLIMIT_CORE, 0) || !limit(RLIMIT_FSIZE, 0)) {
        return failure("give up its privileges", errno);
    }
    const auto files = confineFiles();
    return files ? base::Status(base::Nothing{}) : base::Status(files.error());
}

base::Status confineToComputing(unsigned long long memoryGrowth) {
    const unsigned long long length = dataLength();
    if (length == 0 || !limit(RLIMIT_DATA, length + memoryGrowth)) {
        return failure("limit its memory", errno);
    }
    if (const int result = applyFilter(); result != 0) {
        return failure("confine itself, since the kernel offers no system call filter", -result);
    }
    return base::Nothing{};
}

}  // namespace platform::helper
