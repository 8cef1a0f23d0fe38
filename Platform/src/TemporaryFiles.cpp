#include <Platform/TemporaryFiles.hpp>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>

namespace vantel {

namespace {

// One registered file. Allocated and freed outside the signal handler; the
// handler only reads it.
struct Entry {
    int fd;            // emptied when >= 0
    const char* path;  // removed otherwise; stored right after the entry
};

// Far more than the command holds at once (a temporary output and perhaps a
// download for each of at most 1024 jobs).
constexpr std::size_t slotCount = 4096;

std::array<std::atomic<Entry*>, slotCount> slots{};

// Set by the handler before it reads any slot. A slot cleared after that may
// still be in the handler's hands, so its entry is left alone (the process is
// ending anyway). Sequentially consistent: the handler's store comes before
// its loads, and a release's exchange before its check of the flag.
std::atomic<bool> cleaningUp{false};

// Threads between registering a file and having made it. The handler waits
// for them before it removes anything, or a file made just after it looked
// would outlive the process. A thread keeps the signals blocked meanwhile,
// so the handler never waits for the thread it runs on.
std::atomic<int> creating{0};

static_assert(std::atomic<Entry*>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "the signal handler may only use lock-free atomics");

int claimSlot(Entry* entry) {
    for (std::size_t i = 0; i < slotCount; ++i) {
        Entry* empty = nullptr;
        if (slots[i].compare_exchange_strong(empty, entry)) return static_cast<int>(i);
    }
    std::free(entry);
    throw std::system_error(std::make_error_code(std::errc::too_many_files_open),
                            "too many temporary files at once");
}

Entry* newEntry(int fd, const char* path) {
    std::size_t length = std::strlen(path);
    auto* entry = static_cast<Entry*>(std::malloc(sizeof(Entry) + length + 1));
    if (entry == nullptr) throw std::bad_alloc();
    auto* text = reinterpret_cast<char*>(entry + 1);
    std::memcpy(text, path, length + 1);
    entry->fd = fd;
    entry->path = text;
    return entry;
}

// Only async-signal-safe calls from here on.
void waitForCreations() {
    const timespec pause{0, 1000000};
    for (int waited = 0; creating.load() > 0 && waited < 2000; ++waited) ::nanosleep(&pause, nullptr);
}

extern "C" void cleanUpAndExit(int signal) {
    cleaningUp.store(true);
    waitForCreations();
    for (std::atomic<Entry*>& slot : slots) {
        const Entry* entry = slot.load();
        if (entry == nullptr) continue;
        if (entry->fd >= 0) {
            (void)!::ftruncate(entry->fd, 0);
        } else {
            ::unlink(entry->path);
        }
    }
    ::_exit(128 + signal);
}

}  // namespace

CleanupOnSignal CleanupOnSignal::removing(const std::filesystem::path& path) {
    return CleanupOnSignal(claimSlot(newEntry(-1, path.c_str())));
}

CleanupOnSignal CleanupOnSignal::emptying(int fd) { return CleanupOnSignal(claimSlot(newEntry(fd, ""))); }

CleanupOnSignal::CleanupOnSignal(CleanupOnSignal&& other) noexcept : slot_(other.slot_) { other.slot_ = -1; }

CleanupOnSignal& CleanupOnSignal::operator=(CleanupOnSignal&& other) noexcept {
    if (this != &other) {
        release();
        slot_ = other.slot_;
        other.slot_ = -1;
    }
    return *this;
}

CleanupOnSignal::~CleanupOnSignal() { release(); }

void CleanupOnSignal::release() noexcept {
    if (slot_ < 0) return;
    Entry* entry = slots[static_cast<std::size_t>(slot_)].exchange(nullptr);
    slot_ = -1;
    if (!cleaningUp.load()) std::free(entry);
}

namespace {

sigset_t cleanupSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
    return signals;
}

// Counts the calling thread in `creating` with the cleanup signals blocked,
// for as long as it lives.
class CreationInProgress {
public:
    CreationInProgress() {
        sigset_t signals = cleanupSignals();
        pthread_sigmask(SIG_BLOCK, &signals, &previous_);
        creating.fetch_add(1);
    }
    ~CreationInProgress() {
        creating.fetch_sub(1);
        pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
    }
    CreationInProgress(const CreationInProgress&) = delete;
    CreationInProgress& operator=(const CreationInProgress&) = delete;

private:
    sigset_t previous_{};
};

}  // namespace

int createRemovedOnSignal(const std::filesystem::path& path, int flags, unsigned mode, CleanupOnSignal& cleanup) {
    {
        CreationInProgress creation;
        if (!cleaningUp.load()) {
            cleanup = CleanupOnSignal::removing(path);
            return ::open(path.c_str(), flags | O_CREAT | O_EXCL, static_cast<mode_t>(mode));
        }
    }
    // The process is ending: make nothing more that would need removing.
    for (;;) ::pause();
}

void installSignalCleanup() {
    struct sigaction action {};
    action.sa_handler = cleanUpAndExit;
    action.sa_mask = cleanupSignals();
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        if (::sigaction(signal, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) continue;
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace vantel
