// SPDX-License-Identifier: Apache-2.0
#include "PrivateBus.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zeltest {
namespace {

constexpr char daemonPath[] = "/usr/bin/dbus-daemon";

void writeConfiguration(const std::string& file, const std::string& address,
                        const std::string& services) {
    std::ofstream(file) << "<busconfig><type>session</type><listen>" << address
                        << "</listen><servicedir>" << services
                        << "</servicedir><auth>EXTERNAL</auth><policy context='default'>"
                           "<allow send_destination='*' eavesdrop='true'/>"
                           "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>\n";
}

} // namespace

PrivateBus::PrivateBus() {
    std::string name = std::filesystem::temp_directory_path() / "zel-portal-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no folder for the bus");
    }
    folder_ = name;
    std::filesystem::create_directory(folder_ + "/services");
}

PrivateBus::~PrivateBus() {
    stop();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

bool PrivateBus::isInstalled() {
    return ::access(daemonPath, X_OK) == 0;
}

void PrivateBus::setPortalCommand(const std::string& command) {
    std::ofstream(folder_ + "/services/org.freedesktop.portal.Desktop.service")
        << "[D-BUS Service]\nName=org.freedesktop.portal.Desktop\nExec=" << command << "\n";
}

bool PrivateBus::start() {
    const std::string file = folder_ + "/configuration";
    writeConfiguration(file, address(), folder_ + "/services");
    const std::string configuration = "--config-file=" + file;
    int addressPipe[2];
    if (::pipe2(addressPipe, 0) != 0) {
        return false;
    }
    const std::string print = "--print-address=" + std::to_string(addressPipe[1]);
    daemon_ = ::fork();
    if (daemon_ == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // a test that crashes leaves no daemon
        ::close(addressPipe[0]);
        ::execl(daemonPath, daemonPath, "--nofork", configuration.c_str(), print.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(addressPipe[1]);
    char printed = 0; // the daemon prints its address when it listens
    const bool listens = daemon_ > 0 && ::read(addressPipe[0], &printed, 1) == 1;
    ::close(addressPipe[0]);
    return listens;
}

void PrivateBus::stop() {
    if (daemon_ > 0) {
        ::kill(daemon_, SIGKILL);
        ::waitpid(daemon_, nullptr, 0);
        daemon_ = -1;
        std::error_code ignored;
        std::filesystem::remove(folder_ + "/bus", ignored);
    }
}

void PrivateBus::freeze() {
    ::kill(daemon_, SIGSTOP);
    ::waitpid(daemon_, nullptr, WUNTRACED);
}

void PrivateBus::thaw() {
    ::kill(daemon_, SIGCONT);
}

} // namespace zeltest
