// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Round.h"

#include "tests/faults/DefaultsText.h"
#include "tests/faults/Writer.h"

#include <ZelStyleKit/NSUserDefaults.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zeltest {
namespace {

constexpr std::uint32_t sharedKeys = 8;
constexpr char witness[] = "witness"; // the key of this process

} // namespace

Rounds::Rounds(std::string folder, std::uint32_t writers, std::uint64_t seed)
    : folder_(std::move(folder)), file_(folder_ + "/defaults.conf"), seed_(seed), random_(seed),
      writers_(writers) {
    std::filesystem::create_directories(folder_);
    std::ofstream(file_, std::ios::binary) << foreignLines;
}

std::optional<std::string> Rounds::play() {
    ++round_;
    startWriters();
    killAll();
    while (readReport()) {
    }
    ::close(std::exchange(pipe_, -1));
    for (std::uint32_t writer = 0; writer < writers_.size(); ++writer) {
        history_.addDeath(writer, writers_[writer].died);
    }
    if (!history_.misread.empty()) {
        return "a writer read something wrong: " + history_.misread;
    }
    const auto wrong = wrongInFile();
    return wrong ? wrong : wrongInFolder();
}

void Rounds::startWriters() {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    pipe_ = ends[0];
    const pid_t self = ::getpid();
    for (std::uint32_t writer = 0; writer < writers_.size(); ++writer) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody outlives the program
            if (::getppid() != self) {
                ::_exit(1);
            }
            const auto count = static_cast<std::uint32_t>(writers_.size());
            writeUntilKilled({seed_, round_, writer, count, sharedKeys, ends[1]});
        }
        if (child < 0) {
            throw std::runtime_error("no process");
        }
        writers_[writer] = {child, 0};
    }
    ::close(ends[1]);
}

/// What the writers say sets the pace, so that a slow machine gets as far as a fast one. Some are
/// killed one by one, while the others go on, and the rest all at once, as a crash does.
void Rounds::killAll() {
    readReports(random_() % (2 * writers_.size()));
    const std::size_t oneByOne = random_() % writers_.size() / (1 + random_() % 16);
    for (std::size_t count = 0; count < oneByOne; ++count) {
        readReports(1 + random_() % 3);
        ::usleep(static_cast<useconds_t>(random_() % 300)); // into the middle of what a write does
        kill(victim());
    }
    if (!readDefaultsText(file_)) {
        throw std::runtime_error("a torn file, in the middle of round " + std::to_string(round_));
    }
    for (const Writer& writer : writers_) {
        if (writer.died == 0) {
            ::kill(writer.process, SIGKILL);
        }
    }
    for (std::size_t writer = 0; writer < writers_.size(); ++writer) {
        if (writers_[writer].died == 0) {
            kill(writer);
        }
    }
}

/// Every other time the writer that was heard last: the one that most likely has the file's lock.
std::size_t Rounds::victim() {
    std::size_t chosen = random_() % 2 == 0 ? lastReporter_ : random_() % writers_.size();
    while (writers_[chosen].died != 0) {
        chosen = (chosen + 1) % writers_.size();
    }
    return chosen;
}

void Rounds::kill(std::size_t writer) {
    ::kill(writers_[writer].process, SIGKILL);
    int status = 0;
    if (::waitpid(writers_[writer].process, &status, 0) < 0 || !WIFSIGNALED(status)) {
        throw std::runtime_error("a writer ended by itself");
    }
    writers_[writer].died = now();
}

void Rounds::readReports(std::size_t count) {
    for (std::size_t read = 0; read < count; ++read) {
        if (!readReport()) {
            throw std::runtime_error("the writers fell silent");
        }
    }
}

bool Rounds::readReport() {
    Report report;
    if (::read(pipe_, &report, sizeof report) != sizeof report) {
        return false;
    }
    lastReporter_ = report.write.writer;
    history_.add(report);
    return true;
}

std::optional<std::string> Rounds::wrongInFile() {
    auto entries = readDefaultsText(file_);
    if (!entries) {
        return "the file is torn";
    }
    const zel::NSUserDefaults reader;
    const auto keys = static_cast<std::uint32_t>(writers_.size()) + sharedKeys;
    for (std::uint32_t key = 0; key < keys; ++key) {
        const auto found = entries->extract(keyNamed(key));
        const History::Value value = found ? std::optional(found.mapped()) : std::nullopt;
        if (!history_.mayHold(key, value)) {
            return keyNamed(key) + " holds " + value.value_or("(nothing)") + " after\n" +
                   history_.describe(key);
        }
        const auto read = reader.objectForKey(keyNamed(key));
        if ((read ? std::optional(std::get<std::string>(*read)) : std::nullopt) != value) {
            return keyNamed(key) + " is read as something else than the file holds";
        }
        history_.settle(key, value);
    }
    const auto own = entries->extract(witness);
    if (round_ > 1 && (!own || own.mapped() != std::to_string(round_ - 1))) {
        return std::string("what was written between the rounds is lost");
    }
    return entries->empty() ? std::nullopt
                            : std::optional("nobody wrote " + entries->begin()->first);
}

/// The dead hinder nobody: neither by a lock nor by a file that they left half written.
std::optional<std::string> Rounds::wrongInFolder() {
    const std::set<std::string> known = {"defaults.conf", "defaults.conf.lock",
                                         "defaults.conf.tmp"};
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
        if (!known.contains(entry.path().filename().string())) {
            return "nobody should have left " + entry.path().string();
        }
    }
    leftovers_ += std::filesystem::exists(file_ + ".tmp") ? 1 : 0;
    if (!zel::NSUserDefaults().setObject(std::to_string(round_), witness)) {
        return "the dead keep the living from writing";
    }
    return std::filesystem::exists(file_ + ".tmp") ? std::optional<std::string>("a leftover stays")
                                                   : std::nullopt;
}

} // namespace zeltest
