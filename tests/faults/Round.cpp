// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/Round.h"

#include <ZelStyleKit/NSUserDefaults.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zeltest {
namespace {

constexpr char witness[] = "witness"; // the key of this process
/// What the file holds from the beginning, which nobody may touch.
constexpr char foreignLines[] = "# kept\nno entry at all \x01\xFF = [\n";

} // namespace

Rounds::Rounds(std::string folder, std::uint32_t writers, std::uint64_t seed)
    : folder_(std::move(folder)), file_(folder_ + "/defaults.conf"), random_(seed),
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
    if (misreader_) {
        return "writer " + std::to_string(*misreader_) + " read something wrong";
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
    const auto count = static_cast<std::uint32_t>(writers_.size());
    for (std::uint32_t writer = 0; writer < count; ++writer) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody outlives the program
            if (::getppid() != self) {
                ::_exit(1);
            }
            writeUntilKilled({round_, writer, 1}, count, ends[1]);
        }
        if (child < 0) {
            throw std::runtime_error("no process");
        }
        writers_[writer].process = child;
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
    if (!entries()) {
        throw std::runtime_error("a torn file, in the middle of round " + std::to_string(round_));
    }
    for (const Writer& writer : writers_) {
        if (writer.process > 0) {
            ::kill(writer.process, SIGKILL);
        }
    }
    for (Writer& writer : writers_) {
        if (writer.process > 0) {
            kill(writer);
        }
    }
}

/// Every other time the writer that reported last: the one that most likely has the file's lock.
Rounds::Writer& Rounds::victim() {
    std::size_t chosen = random_() % 2 == 0 ? lastReporter_ : random_() % writers_.size();
    while (writers_[chosen].process < 0) {
        chosen = (chosen + 1) % writers_.size();
    }
    return writers_[chosen];
}

void Rounds::kill(Writer& writer) {
    ::kill(writer.process, SIGKILL);
    int status = 0;
    if (::waitpid(std::exchange(writer.process, -1), &status, 0) < 0 || !WIFSIGNALED(status)) {
        throw std::runtime_error("a writer ended by itself");
    }
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
    Writer& writer = writers_.at(report.write.writer);
    if (report.kind == Report::Kind::Misread) {
        misreader_ = report.write.writer;
    } else if (report.kind == Report::Kind::Begun) {
        ++figures_.begun;
        writer.underWay = report;
    } else {
        const std::int64_t taken = report.time - writer.underWay.value().time;
        writer.underWay.reset();
        const bool acknowledged = report.kind == Report::Kind::Acknowledged;
        ++(acknowledged ? figures_.acknowledged : figures_.refused);
        auto& longest = acknowledged ? figures_.longestAcknowledged : figures_.longestRefused;
        longest = std::max(longest, taken);
        if (acknowledged) {
            writer.durable = valueOf(report.write);
        }
    }
    return true;
}

/// The entries of the file, by a reader of the tests' own. None where the file is not whole: where
/// anything but the foreign lines, and then one line for each key with a string, is in it.
std::optional<std::map<std::string, std::string>> Rounds::entries() const {
    std::ifstream stream(file_, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    if (!stream || !text.starts_with(foreignLines) || text.back() != '\n') {
        return std::nullopt;
    }
    std::map<std::string, std::string> entries;
    for (std::size_t at = sizeof foreignLines - 1; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        const std::string line = text.substr(at, end - at);
        const std::size_t mark = line.find(" = \"");
        if (mark == std::string::npos || line.size() < mark + 5 || line.back() != '"' ||
            !entries.emplace(line.substr(0, mark), line.substr(mark + 4, line.size() - mark - 5))
                 .second) {
            return std::nullopt;
        }
        at = end + 1;
    }
    return entries;
}

std::optional<std::string> Rounds::wrongInFile() {
    auto left = entries();
    if (!left) {
        return "the file is torn";
    }
    const zel::NSUserDefaults reader;
    for (std::uint32_t number = 0; number < writers_.size(); ++number) {
        Writer& writer = writers_[number];
        const auto found = left->extract(keyOf(number));
        const auto value = found ? std::optional(found.mapped()) : std::nullopt;
        const bool isCutShort = writer.underWay.has_value();
        figures_.cutShort += isCutShort ? 1 : 0;
        if (value != writer.durable && !(isCutShort && value == valueOf(writer.underWay->write))) {
            return keyOf(number) + " holds " + value.value_or("(nothing)") + " instead of " +
                   writer.durable.value_or("(nothing)");
        }
        const auto read = reader.objectForKey(keyOf(number));
        if ((read ? std::optional(std::get<std::string>(*read)) : std::nullopt) != value) {
            return keyOf(number) + " is read as something else than the file holds";
        }
        writer.durable = value;
        writer.underWay.reset();
    }
    const auto own = left->extract(witness);
    if (round_ > 1 && (!own || own.mapped() != std::to_string(round_ - 1))) {
        return "what was written between the rounds is lost";
    }
    return left->empty() ? std::nullopt : std::optional("nobody wrote " + left->begin()->first);
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
    figures_.leftovers += std::filesystem::exists(file_ + ".tmp") ? 1 : 0;
    if (!zel::NSUserDefaults().setObject(std::to_string(round_), witness)) {
        return "the dead keep the living from writing";
    }
    return std::filesystem::exists(file_ + ".tmp") ? std::optional<std::string>("a leftover stays")
                                                   : std::nullopt;
}

} // namespace zeltest
