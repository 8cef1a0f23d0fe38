#include <ZBExtensions/Process.hpp>
#include <ZBExtensions/RegularExpressionMatching.hpp>

#include <Platform/ChildProcess.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/RegularExpression.hpp>
#include <Platform/UnicodeText.hpp>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <mutex>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace vantel {

namespace {

std::optional<std::string> utf8Text(const Data& bytes) {
    std::string text(bytes.begin(), bytes.end());
    if (!isValidUTF8(text)) return std::nullopt;
    return text;
}

// Up to `limit` bytes, blocking until some arrive; empty at the end.
Data readChunk(int descriptor, std::size_t limit) {
    Data chunk(limit);
    ssize_t count;
    do {
        count = ::read(descriptor, chunk.data(), chunk.size());
    } while (count < 0 && errno == EINTR);
    chunk.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return chunk;
}

}  // namespace

FileHandle::~FileHandle() { close(); }

void FileHandle::close() {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
}

Data FileHandle::readDataToEndOfFile() const {
    Data all;
    for (Data chunk = readChunk(descriptor_, 1 << 16); !chunk.empty(); chunk = readChunk(descriptor_, 1 << 16)) {
        all.insert(all.end(), chunk.begin(), chunk.end());
    }
    return all;
}

Pipe::Pipe() {
    PipeDescriptors ends = makePipe();
    fileHandleForReading = std::make_shared<FileHandle>(ends.reading);
    fileHandleForWriting = std::make_shared<FileHandle>(ends.writing);
}

std::optional<std::string> Pipe::readStringToEndOfFile() const {
    return utf8Text(fileHandleForReading->readDataToEndOfFile());
}

void Pipe::printPipe() const {
    if (auto text = readStringToEndOfFile()) std::cout << *text << '\n';
}

void Task::launch() {
    ChildProcessSetup setup;
    setup.executable = launchPath.value_or("");
    setup.arguments = arguments.value_or(std::vector<std::string>{});
    setup.environment = environment;
    if (currentDirectoryURL) setup.directory = currentDirectoryURL->path();
    if (standardInput) setup.standardInput = standardInput->fileHandleForReading->descriptor();
    if (standardOutput) setup.standardOutput = standardOutput->fileHandleForWriting->descriptor();
    if (standardError) setup.standardError = standardError->fileHandleForWriting->descriptor();
    processId_ = startChildProcess(setup);
    // The child has its copies; ours would keep the pipes from ever ending.
    if (standardInput) standardInput->fileHandleForReading->close();
    if (standardOutput) standardOutput->fileHandleForWriting->close();
    if (standardError) standardError->fileHandleForWriting->close();
}

void Task::waitUntilExit() {
    ChildExit exit = waitForChildProcess(processId_);
    terminationStatus_ = exit.status;
    terminationReason_ = exit.bySignal ? TerminationReason::uncaughtSignal : TerminationReason::exit;
}

std::optional<std::string> ProcessOutput::responseString() const { return utf8Text(response); }

ProcessError::ProcessError(std::shared_ptr<const Task> task, Data stdOut, Data stdErr)
    : task(std::move(task)),
      stdOut(std::move(stdOut)),
      stdErr(std::move(stdErr)),
      stdOutString(utf8Text(this->stdOut)),
      stdErrString(utf8Text(this->stdErr)),
      description_(localizedDescription()) {}

std::string ProcessError::localizedDescription() const {
    if (task->terminationReason() == Task::TerminationReason::uncaughtSignal) {
        return "exited with uncaught signal: " + std::to_string(task->terminationStatus());
    }
    return "exited normally";
}

namespace {

void printCommandLine(const Task& task) {
    if (!task.launchPath || !task.arguments) {
        // The directory line before it must not die in the buffer with us.
        std::cout.flush();
        fatalError("Task run verbosely without a launch path or arguments");
    }
    std::string line = *task.launchPath + " ";
    for (std::size_t i = 0; i < task.arguments->size(); ++i) line += (i ? " " : "") + (*task.arguments)[i];
    std::cout << line << '\n';
}

ProcessOutput launchAndCollect(const std::shared_ptr<Task>& task) {
    task->launch();
    task->waitUntilExit();
    Data output = task->standardOutput->fileHandleForReading->readDataToEndOfFile();
    Data errors = task->standardError->fileHandleForReading->readDataToEndOfFile();
    if (task->terminationStatus() != 0) throw ProcessError(task, std::move(output), std::move(errors));
    return {task->terminationStatus(), std::move(output)};
}

}  // namespace

ProcessOutput run(const std::shared_ptr<Task>& task, const std::optional<URL>& workingDir, bool verbose) {
    task->standardOutput = std::make_shared<Pipe>();
    task->standardError = std::make_shared<Pipe>();
    task->currentDirectoryURL = workingDir;
    if (verbose) {
        std::cout << (task->currentDirectoryURL ? task->currentDirectoryURL->path().string() : "Working path not set")
                  << '\n';
        printCommandLine(*task);
    }
    return launchAndCollect(task);
}

ProcessOutput run(const std::shared_ptr<Task>& task, bool verbose) {
    task->standardOutput = std::make_shared<Pipe>();
    task->standardError = std::make_shared<Pipe>();
    if (verbose) printCommandLine(*task);
    return launchAndCollect(task);
}

// ---- terminal titles

namespace {

using DataObserver = std::function<void(const std::shared_ptr<FileHandle>&, const Data&)>;

// Each call reaches the observer itself, with whatever state it keeps, not a
// copy; an observer re-arms its handle's reader while it runs, so the calls
// to one observer are taken one at a time.
struct SerialObserver {
    std::mutex calling;
    DataObserver observer;
};

// The process-wide observers of "data available" on watched handles. They are
// never removed, and the detached readers below may post to them while the
// process exits, so the centre is never destroyed.
struct DataAvailableCentre {
    std::mutex mutex;
    std::vector<std::shared_ptr<SerialObserver>> observers;

    static DataAvailableCentre& shared() {
        static DataAvailableCentre& centre = *new DataAvailableCentre;
        return centre;
    }
    void add(DataObserver observer) {
        auto serial = std::make_shared<SerialObserver>();
        serial->observer = std::move(observer);
        std::lock_guard lock(mutex);
        observers.push_back(std::move(serial));
    }
    void post(const std::shared_ptr<FileHandle>& handle, const Data& chunk) {
        std::vector<std::shared_ptr<SerialObserver>> current;
        {
            std::lock_guard lock(mutex);
            current = observers;
        }
        for (const auto& serial : current) {
            std::lock_guard lock(serial->calling);
            serial->observer(handle, chunk);
        }
    }
};

// The handles with a reader at work. The readers are detached and may still
// be reading when the process exits, so what they touch is never destroyed.
struct WaitingHandles {
    std::mutex mutex;
    std::vector<const FileHandle*> handles;

    static WaitingHandles& shared() {
        static WaitingHandles& waiting = *new WaitingHandles;
        return waiting;
    }
    // False when the handle already has a reader.
    bool add(const FileHandle* handle) {
        std::lock_guard lock(mutex);
        if (std::find(handles.begin(), handles.end(), handle) != handles.end()) return false;
        handles.push_back(handle);
        return true;
    }
    void remove(const FileHandle* handle) {
        std::lock_guard lock(mutex);
        std::erase(handles, handle);
    }
};

// One background reader per handle at a time: it reads the next chunk and
// posts it; the observers arm it again for the one after. At the end of
// the data it posts nothing and stops.
void waitForDataInBackgroundAndNotify(const std::shared_ptr<FileHandle>& handle) {
    if (!WaitingHandles::shared().add(handle.get())) return;
    std::thread([handle] {
        Data chunk = readChunk(handle->descriptor(), 1 << 16);
        WaitingHandles::shared().remove(handle.get());
        if (!chunk.empty()) DataAvailableCentre::shared().post(handle, chunk);
    }).detach();
}

}  // namespace

std::optional<std::string> terminalTitle(const std::string& text) {
    static const std::optional<RegularExpression> title = RegularExpression::compile("\\033]\\d;(\\w+)\\007");
    if (!title) return std::nullopt;
    std::optional<RegularExpression::Match> match = firstMatch(*title, text);
    if (!match) return std::nullopt;
    return matchedString(*match, title->numberOfCaptureGroups() == 1 ? 1 : 0, text);
}

void readTitle(const std::shared_ptr<FileHandle>& handle, std::function<void(const std::string&)> handler) {
    // The observer first: data already waiting in the pipe is read at once,
    // and a chunk posted before the observer is there is lost for good.
    DataAvailableCentre::shared().add([handler = std::move(handler)](const std::shared_ptr<FileHandle>& from,
                                                                     const Data& chunk) {
        waitForDataInBackgroundAndNotify(from);
        std::optional<std::string> text = utf8Text(chunk);
        if (!text) return;
        if (std::optional<std::string> found = terminalTitle(*text)) handler(*found);
    });
    waitForDataInBackgroundAndNotify(handle);
}

}  // namespace vantel
