#include <Platform/TemporaryFiles.hpp>

#include <fcntl.h>
#include <signal.h>
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
extern "C" void cleanUpAndExit(int signal) {
    cleaningUp.store(true);
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

int createRemovedOnSignal(const std::filesystem::path& path, int flags, unsigned mode, CleanupOnSignal& cleanup) {
    cleanup = CleanupOnSignal::removing(path);
    int fd = ::open(path.c_str(), flags | O_CREAT | O_EXCL, static_cast<mode_t>(mode));
    // The handler may have looked at the slots before the file existed: then
    // it is this thread's to remove, and nothing more is made here before
    // the handler ends the process.
    if (fd >= 0 && cleaningUp.load()) {
        ::unlink(path.c_str());
        for (;;) ::pause();
    }
    return fd;
}

void installSignalCleanup() {
    struct sigaction action {};
    action.sa_handler = cleanUpAndExit;
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&action.sa_mask, signal);
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        if (::sigaction(signal, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) continue;
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace vantel
