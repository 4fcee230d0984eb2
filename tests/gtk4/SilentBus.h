// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <stdexcept>
#include <string>

namespace zeltest {

/// A bus that takes connections and never says anything.
class SilentBus {
public:
    SilentBus() {
        std::string name = "/tmp/zel-silent-XXXXXX";
        if (!mkdtemp(name.data())) {
            throw std::runtime_error("no folder for the bus");
        }
        folder_ = name;
        sockaddr_un at{};
        at.sun_family = AF_UNIX;
        const std::string path = folder_ + "/bus";
        std::copy(path.begin(), path.end(), std::begin(at.sun_path));
        socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::bind(socket_, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0 ||
            ::listen(socket_, 100) != 0) {
            throw std::runtime_error("no socket for the bus");
        }
    }
    ~SilentBus() {
        ::close(socket_);
        ::unlink((folder_ + "/bus").c_str());
        ::rmdir(folder_.c_str());
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;

    [[nodiscard]] const std::string& folder() const { return folder_; }
    [[nodiscard]] std::string address() const { return "unix:path=" + folder_ + "/bus"; }

private:
    std::string folder_;
    int socket_ = -1;
};

} // namespace zeltest
