// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/zelstyle/watch/AppearanceSource.h"
#include "tools/zelstyle/watch/HostCommands.h"
#include "tools/zelstyle/watch/LineSplitter.h"

namespace zel::tool {

/// Host commands from standard input, one line each time, so that the main queue is drained between
/// any two. Ends with the input or with "quit".
class InputSource final : public AppearanceSource {
public:
    explicit InputSource(ThemedWindow& window) : commands_(window) {}

    [[nodiscard]] int fileDescriptor() const override;
    [[nodiscard]] short events() const override;
    [[nodiscard]] std::optional<std::chrono::microseconds> nextTimeout() const override;
    bool process(short ready) override;
    [[nodiscard]] int exitCode() const override { return exitCode_; }

private:
    void read();

    HostCommands commands_;
    LineSplitter lines_;
    bool atEnd_ = false;
    int exitCode_ = 0;
};

} // namespace zel::tool
