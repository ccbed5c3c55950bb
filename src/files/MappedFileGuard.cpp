#include "files/MappedFileGuard.h"

#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace vantorel {
namespace {

struct Region {
    std::uintptr_t begin;
    std::uintptr_t end;
    volatile sig_atomic_t faulted;
};

constexpr int kSlots = 4;
// Plain thread-local data with constant initialisation: safe to read in a
// signal handler of a statically linked program.
thread_local Region tRegions[kSlots] = {};
thread_local bool tUsed[kSlots] = {};

std::uintptr_t gPageSize = 4096;
struct sigaction gPrevious {};

void onBusError(int signal, siginfo_t* info, void* context) {
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (int i = 0; i < kSlots; ++i) {
        Region& region = tRegions[i];
        if (!tUsed[i] || address < region.begin || address >= region.end) continue;
        void* page = reinterpret_cast<void*>(address & ~(gPageSize - 1));
        if (::mmap(page, gPageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED) {
            region.faulted = 1;
            return;  // the read is retried and sees zeros
        }
    }
    // Not ours: behave as if we had never been here.
    if (gPrevious.sa_flags & SA_SIGINFO) {
        gPrevious.sa_sigaction(signal, info, context);
    } else if (gPrevious.sa_handler != SIG_DFL && gPrevious.sa_handler != SIG_IGN) {
        gPrevious.sa_handler(signal);
    } else {
        ::signal(SIGBUS, SIG_DFL);  // returning re-runs the access, which now ends the process
    }
}

void installHandler() {
    static std::once_flag once;
    std::call_once(once, [] {
        gPageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
        struct sigaction action {};
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        ::sigaction(SIGBUS, &action, &gPrevious);
    });
}

}  // namespace

MappedFileGuard::MappedFileGuard(const void* begin, std::size_t length) {
    installHandler();
    for (int i = 0; i < kSlots; ++i) {
        if (tUsed[i]) continue;
        const auto start = reinterpret_cast<std::uintptr_t>(begin);
        tRegions[i].begin = start;
        tRegions[i].end = start + length;
        tRegions[i].faulted = 0;
        std::atomic_signal_fence(std::memory_order_seq_cst);
        tUsed[i] = true;
        slot_ = i;
        return;
    }
}

MappedFileGuard::~MappedFileGuard() {
    if (slot_ >= 0) {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        tUsed[slot_] = false;
    }
}

bool MappedFileGuard::faulted() const noexcept {
    return slot_ >= 0 && tRegions[slot_].faulted != 0;
}

}  // namespace vantorel
