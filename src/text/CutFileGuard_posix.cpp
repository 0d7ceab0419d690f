#include "text/CutFileGuard.h"

#include <atomic>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace vornhale::text {
namespace {

// Each guard is a range of addresses the handler reads without a lock: a signal may come on
// any thread at any moment.
struct Guard
{
    std::atomic<std::uintptr_t> start{0};
    std::atomic<std::uintptr_t> end{0};
    std::atomic<bool> taken{false};
};

constexpr int kGuards = 16;
Guard g_guards[kGuards];
std::uintptr_t g_pageSize = 4096;
struct sigaction g_before
{
};
std::once_flag g_installed;

void onBusError(int signal, siginfo_t* info, void* context)
{
    const auto at = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (Guard& g : g_guards) {
        const std::uintptr_t start = g.start.load(std::memory_order_acquire);
        const std::uintptr_t end = g.end.load(std::memory_order_acquire);
        if (start == 0 || at < start || at >= end) {
            continue;
        }
        // Zero pages in place of the file's from the page read to the mapping's end; the read
        // is then made again and succeeds.
        const std::uintptr_t page = at & ~(g_pageSize - 1);
        void* const zeros = ::mmap(reinterpret_cast<void*>(page), end - page, PROT_READ,
                                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
        if (zeros != MAP_FAILED) {
            return;
        }
    }
    // Not a guarded page: what the program did before the guard.
    if ((g_before.sa_flags & SA_SIGINFO) != 0 && g_before.sa_sigaction != nullptr) {
        g_before.sa_sigaction(signal, info, context);
        return;
    }
    if (g_before.sa_handler != SIG_DFL && g_before.sa_handler != SIG_IGN) {
        g_before.sa_handler(signal);
        return;
    }
    // The default action: the read is made again, faults again and ends the program.
    ::signal(SIGBUS, SIG_DFL);
}

void install()
{
    const long page = ::sysconf(_SC_PAGESIZE);
    if (page > 0) {
        g_pageSize = static_cast<std::uintptr_t>(page);
    }
    struct sigaction action
    {
    };
    action.sa_sigaction = onBusError;
    action.sa_flags = SA_SIGINFO | SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGBUS, &action, &g_before);
}

} // namespace

int guardMapping(const void* start, std::size_t size)
{
    std::call_once(g_installed, install);
    const auto first = reinterpret_cast<std::uintptr_t>(start);
    // The mapping reaches to the end of its last page.
    const std::uintptr_t end = (first + size + g_pageSize - 1) & ~(g_pageSize - 1);
    for (int i = 0; i < kGuards; ++i) {
        Guard& g = g_guards[i];
        bool expected = false;
        if (g.taken.compare_exchange_strong(expected, true)) {
            g.end.store(end, std::memory_order_release);
            g.start.store(first, std::memory_order_release);
            return i;
        }
    }
    return -1;
}

void unguardMapping(int guard)
{
    if (guard < 0 || guard >= kGuards) {
        return;
    }
    Guard& g = g_guards[guard];
    g.start.store(0, std::memory_order_release);
    g.end.store(0, std::memory_order_release);
    g.taken.store(false, std::memory_order_release);
}

} // namespace vornhale::text
