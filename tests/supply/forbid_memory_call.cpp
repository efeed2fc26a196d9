// Runs a program in which process_vm_readv fails with EPERM, as in some sandboxes. Usage: forbid_memory_call PROGRAM
// [ARGUMENT...]

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

bool ForbidMemoryCall() {
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_process_vm_readv, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{program.size(), program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

/// A filter without effect would let the tests pass by the path that they are not about.
bool IsForbidden() {
    char from = 1;
    char to = 0;
    const iovec local{&to, 1};
    const iovec remote{&from, 1};
    return ::process_vm_readv(::getpid(), &local, 1, &remote, 1, 0) < 0 && errno == EPERM;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 2 || !ForbidMemoryCall() || !IsForbidden()) {
        std::perror("forbid_memory_call: cannot forbid process_vm_readv");
        return 1;
    }
    ::execv(argv[1], argv + 1);
    std::perror(argv[1]);
    return 1;
}
