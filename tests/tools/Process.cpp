// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace zeltest {
namespace {

using Clock = std::chrono::steady_clock;

/// Far longer than anything here takes; reached only where a test fails.
constexpr std::chrono::seconds patience{60};

bool holdsInTime(const std::function<bool()>& condition) {
    const auto end = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

/// What the user's own surroundings would change.
constexpr std::array<std::string_view, 8> usersOwn{
    "LANGUAGE=", "LANG=", "LC_", "NO_COLOR=", "TERM=", "XDG_", "DBUS_", "HOME="};

std::vector<std::string> environmentWith(const Variables& variables) {
    std::vector<std::string> result;
    for (char** each = environ; *each; ++each) {
        const std::string_view variable = *each;
        if (std::ranges::none_of(usersOwn, [&](auto own) { return variable.starts_with(own); })) {
            result.emplace_back(variable);
        }
    }
    for (const auto& [name, value] : variables) {
        result.push_back(name + '=' + value);
    }
    return result;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

struct Pipe {
    int read = -1;
    int write = -1;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    return {ends[0], ends[1]};
}

Pipe makeTerminal() {
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) {
        throw std::runtime_error("no terminal");
    }
    return {master, ::open(::ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC)};
}

Pipe makeOutput(const Surroundings& surroundings) {
    if (!surroundings.outputFile.empty()) {
        return {::open("/dev/null", O_RDONLY | O_CLOEXEC),
                ::open(surroundings.outputFile.c_str(), O_WRONLY | O_CLOEXEC)};
    }
    return surroundings.onTerminal ? makeTerminal() : makePipe();
}

void closeAndForget(int& descriptor) {
    if (descriptor >= 0) {
        ::close(descriptor);
        descriptor = -1;
    }
}

} // namespace

Process::Process(const std::string& program, Arguments arguments, const Surroundings& surroundings)
    : errors_(std::tmpfile()) {
    std::signal(SIGPIPE, SIG_IGN); // the program may have ended before it read its input
    Pipe input = makePipe();
    Pipe output = makeOutput(surroundings);
    input_ = input.write;
    output_ = output.read;

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.read, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.write, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ::fileno(errors_.get()), STDERR_FILENO);
    // A signal that the test ignores would be ignored by the program as well.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &broken);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    arguments.insert(arguments.begin(), program);
    std::vector<std::string> environment = environmentWith(surroundings.variables);
    const int error = ::posix_spawn(&process_, program.c_str(), &actions, &attributes,
                                    pointersTo(arguments).data(), pointersTo(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(input.read);
    ::close(output.write);
    if (error != 0) {
        process_ = -1;
        throw std::runtime_error("cannot run " + program);
    }
}

Process::~Process() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    closeInput();
    closeOutput();
}

void Process::write(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t written = ::write(input_, text.data(), text.size());
        if (written < 0) {
            return; // it reads no more
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void Process::closeInput() {
    closeAndForget(input_);
}

void Process::closeOutput() {
    closeAndForget(output_);
}

void Process::signal(int number) const {
    ::kill(process_, number);
}

/// Waits for more output; false at its end.
bool Process::fill(int otherDescriptor, const std::function<void()>& serveOther) {
    const auto end = Clock::now() + patience;
    while (!outputEnded_ && Clock::now() < end) {
        std::array<pollfd, 2> entries{pollfd{output_, POLLIN, 0},
                                      pollfd{otherDescriptor, POLLIN, 0}};
        ::poll(entries.data(), entries.size(), 1000);
        if (entries[1].revents != 0) {
            serveOther();
        }
        if (entries[0].revents != 0) {
            std::array<char, 4096> bytes;
            const ssize_t count = ::read(output_, bytes.data(), bytes.size());
            outputEnded_ = count <= 0; // a terminal that nobody writes to any more gives an error
            unread_.append(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
            return !outputEnded_;
        }
    }
    return false;
}

std::optional<std::string> Process::readLine(int otherDescriptor,
                                             const std::function<void()>& serveOther) {
    for (;;) {
        if (const std::size_t end = unread_.find('\n'); end != std::string::npos) {
            std::string line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            return line;
        }
        if (!fill(otherDescriptor, serveOther)) {
            return std::nullopt;
        }
    }
}

bool Process::readUntil(std::string_view beginning) {
    while (const auto line = readLine()) {
        if (line->starts_with(beginning)) {
            return true;
        }
    }
    return false;
}

int Process::waitForEnd() {
    const auto end = Clock::now() + patience;
    int status = 0;
    while (::waitpid(process_, &status, WNOHANG) == 0) {
        if (Clock::now() >= end) {
            return -1; // the destructor ends it
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    process_ = -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// The program's descriptor shares the file's position, which must stay at its end.
std::string Process::errors() const {
    std::string text;
    std::array<char, 4096> bytes;
    for (;;) {
        const ssize_t count = ::pread(::fileno(errors_.get()), bytes.data(), bytes.size(),
                                      static_cast<off_t>(text.size()));
        if (count <= 0) {
            return text;
        }
        text.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

bool Process::waitForError(std::string_view text) const {
    return holdsInTime([&] { return errors().find(text) != std::string::npos; });
}

bool Process::waitUntilItWaits() const {
    const std::string path = "/proc/" + std::to_string(process_) + "/stat"; // "… (name) S …"
    return holdsInTime([&] {
        const std::string status = contentOf(path);
        const std::size_t name = status.rfind(") ");
        return name != std::string::npos && status.compare(name + 2, 1, "S") == 0;
    });
}

Outcome Process::finish() {
    closeInput();
    return finishWithOpenInput();
}

Outcome Process::finishWithOpenInput() {
    while (output_ >= 0 && fill(-1, {})) {
    }
    Outcome outcome;
    outcome.code = waitForEnd();
    outcome.output = std::move(unread_);
    outcome.errors = errors();
    return outcome;
}

Folder::Folder() : path_((std::filesystem::temp_directory_path() / "zelstyle-XXXXXX").string()) {
    if (!::mkdtemp(path_.data())) {
        throw std::runtime_error("no folder " + path_);
    }
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

Surroundings User::surroundings(Variables more) const {
    more.try_emplace("HOME", home_.path());
    more.try_emplace("XDG_CONFIG_HOME", home_.path());
    more.try_emplace("XDG_RUNTIME_DIR", home_.path());
    more.try_emplace("LANG", "C");
    more.try_emplace("TERM", "xterm");
    return {.variables = std::move(more), .onTerminal = false, .outputFile = {}};
}

Outcome User::run(Arguments arguments, std::string_view input, Variables more) const {
    Process process(ZELSTYLE_COMMAND, std::move(arguments), surroundings(std::move(more)));
    process.write(input);
    return process.finish();
}

bool exists(const std::string& path) {
    return std::filesystem::exists(path);
}

std::string contentOf(const std::string& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> linesWith(const std::string& text, std::string_view beginning) {
    std::vector<std::string> lines = linesOf(text);
    std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(beginning); });
    return lines;
}

} // namespace zeltest
