#include "SystemCalls.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Plan {
    SystemCall call;
    long spared;
    bool lasting;
    bool hit;
};

thread_local Plan* plan = nullptr;

bool fails(SystemCall call) {
    if (!plan || plan->call != call || (plan->hit && !plan->lasting))
        return false;
    if (plan->spared > 0) {
        --plan->spared;
        return false;
    }
    plan->hit = true;
    errno = ENOMEM;
    return true;
}

} // namespace

FailingCalls::FailingCalls(SystemCall call, long spared, bool lasting) {
    static thread_local Plan of;
    of = {call, spared, lasting, false};
    plan = &of;
}

FailingCalls::~FailingCalls() {
    plan = nullptr;
}

bool FailingCalls::hit() const {
    return plan && plan->hit;
}

std::string inChild(std::function<std::string()> const& function) {
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    std::fflush(nullptr); // or the child would write once more what stands in the buffers
    pid_t const child = fork();
    if (child == 0) {
        std::string const text = function();
        bool const written = write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
        std::exit(written ? 0 : 1);
    }
    close(ends[1]);
    std::string text;
    char part[256];
    for (ssize_t count; (count = read(ends[0], part, sizeof part)) > 0;)
        text.append(part, static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    bool const ended = child > 0 && waitpid(child, &status, 0) == child && status == 0;
    return ended ? text : "died";
}

// ---- in place of those of the C library -----------------------------------------------------------------

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) {
    return fails(SystemCall::MALLOC) ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    return fails(SystemCall::MALLOC) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    return fails(SystemCall::MALLOC) ? nullptr : __libc_realloc(block, size);
}

void* mmap(void* wish, std::size_t size, int protection, int flags, int file, off_t offset) {
    if (fails(SystemCall::MMAP))
        return MAP_FAILED;
#ifdef SYS_mmap2 // counts the offset in pages
    constexpr off_t page = 4096;
    return reinterpret_cast<void*>(syscall(SYS_mmap2, wish, size, protection, flags, file, offset / page));
#else
    return reinterpret_cast<void*>(syscall(SYS_mmap, wish, size, protection, flags, file, offset));
#endif
}

int madvise(void* area, std::size_t size, int advice) {
    return fails(SystemCall::MADVISE) ? -1 : static_cast<int>(syscall(SYS_madvise, area, size, advice));
}

int munmap(void* area, std::size_t size) {
    return fails(SystemCall::MUNMAP) ? -1 : static_cast<int>(syscall(SYS_munmap, area, size));
}

} // extern "C"
