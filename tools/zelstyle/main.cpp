// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/CommandLine.h"
#include "tools/zelstyle/Options.h"
#include "tools/zelstyle/terminal/Message.h"

#include <ZelStyleKit/NSProcessInfo.h>

#include <csignal>
#include <exception>

int main(int argc, char** argv) {
    // A reader that goes away ends the command by the failed write, not by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        // Names the user's defaults file, whatever the program's file is called.
        zel::NSProcessInfo::setProcessName("zelstyle");
        return zel::tool::runCommandLine(argc, argv);
    } catch (const std::exception& error) {
        zel::tool::printMessage(error.what());
        return zel::tool::ExitFailed;
    }
}
