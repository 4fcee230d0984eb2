// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace zeltest {

using Arguments = std::vector<std::string>;
using Variables = std::map<std::string, std::string>;

/// What a process left behind.
struct Outcome {
    int code = -1; ///< its exit code; 128 and the signal's number where a signal ended it
    std::string output;
    std::string errors;
};

/// What a program is given beside its arguments.
struct Surroundings {
    Variables variables;     ///< on top of the test's own, cleared of what belongs to its user
    bool onTerminal = false; ///< its output is a terminal and no pipe
    std::string outputFile;  ///< its output is this file and no pipe
};

/// A program that runs until it ends or the test ends it.
/// Owns: the process, which is killed with it, and its streams. Waits are bounded: one that takes
/// far longer than anything here does answers nothing, or -1 as the exit code.
class Process {
public:
    Process(const std::string& program, Arguments arguments, const Surroundings& surroundings = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void write(std::string_view text) const;
    void closeInput();
    void closeOutput();
    void signal(int number) const;

    /// The next line of the output, without its end. Serves another descriptor while it waits.
    std::optional<std::string> readLine(int otherDescriptor = -1,
                                        const std::function<void()>& serveOther = {});
    /// Reads lines until one begins so; false where none does.
    bool readUntil(std::string_view beginning);

    /// Waits for a text on standard error; false where it doesn't come.
    [[nodiscard]] bool waitForError(std::string_view text) const;
    /// Waits until the program waits for something itself; false where it doesn't.
    [[nodiscard]] bool waitUntilItWaits() const;

    /// Closes the input, reads the rest of the output and waits for the end.
    Outcome finish();
    /// The same, but the input stays open.
    Outcome finishWithOpenInput();

private:
    bool fill(int otherDescriptor, const std::function<void()>& serveOther);
    int waitForEnd();
    [[nodiscard]] std::string errors() const;

    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    bool outputEnded_ = false;
    std::string unread_;
    std::unique_ptr<std::FILE, Close> errors_;
};

/// A folder of the test's own, gone with it.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// A user with nothing stored, on a system without a session bus, whose language is English.
class User {
public:
    [[nodiscard]] std::string configFile() const {
        return home_.path() + "/zelstyle/defaults.conf";
    }
    [[nodiscard]] const std::string& folder() const { return home_.path(); }
    [[nodiscard]] Surroundings surroundings(Variables more = {}) const;

    /// Runs the command to its end.
    Outcome run(Arguments arguments, std::string_view input = {}, Variables more = {}) const;

private:
    Folder home_;
};

[[nodiscard]] bool exists(const std::string& path);
/// The whole file; empty where it can't be read.
std::string contentOf(const std::string& path);
std::vector<std::string> linesOf(const std::string& text);
/// The lines that begin so.
std::vector<std::string> linesWith(const std::string& text, std::string_view beginning);

} // namespace zeltest
