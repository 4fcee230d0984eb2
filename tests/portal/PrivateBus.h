// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <sys/types.h>

namespace zeltest {

/// A bus daemon of the test's own, on a socket in a folder of its own. It starts no services but
/// the one that a test describes.
/// Owns: the process and the folder; both go with it.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// Whether there is a daemon to run; tests skip where there isn't.
    static bool isInstalled();

    /// Runs the daemon, returns once it listens. False where it doesn't.
    bool start();
    /// Before `start`: what the daemon runs when it needs a portal.
    void setPortalCommand(const std::string& command);
    /// Ends the daemon and with it every connection; the address stays the same.
    void stop();
    /// Lets the daemon stand still, and go on: it keeps every connection and serves none.
    void freeze();
    void thaw();

    [[nodiscard]] const std::string& folder() const { return folder_; }
    [[nodiscard]] std::string address() const { return "unix:path=" + folder_ + "/bus"; }

private:
    std::string folder_;
    pid_t daemon_ = -1;
};

} // namespace zeltest
