// SPDX-License-Identifier: Apache-2.0
#include "tools/zelstyle/demo/DemoCommand.h"

#include <ZelStyleKit/NSUserDefaultsInMemory.h>

#include "tools/zelstyle/demo/Story.h"
#include "tools/zelstyle/terminal/Output.h"
#include "tools/zelstyle/watch/AppearanceSource.h"
#include "tools/zelstyle/watch/EventLoop.h"
#include "tools/zelstyle/watch/HostCommands.h"
#include "tools/zelstyle/watch/WatchCommand.h"

#include <iterator>
#include <string>

namespace zel::tool {
namespace {

/// Plays the story, one step each time, so that what a step causes is delivered before the next.
class StorySource final : public AppearanceSource {
public:
    StorySource(ThemedWindow& window, Output& output) : commands_(window), output_(output) {}

    [[nodiscard]] int fileDescriptor() const override { return -1; }
    [[nodiscard]] short events() const override { return 0; }
    [[nodiscard]] std::optional<std::chrono::microseconds> nextTimeout() const override {
        return std::chrono::microseconds(0);
    }

    bool process(short /*ready*/) override {
        if (next_ == std::end(storySteps)) {
            output_.write(storyEnd);
            return false;
        }
        std::string text = "\n";
        text += next_->text;
        text += "\n> ";
        text += next_->command;
        output_.write(text + '\n');
        return commands_.execute((next_++)->command);
    }

    [[nodiscard]] int exitCode() const override { return ExitDone; }

private:
    HostCommands commands_;
    Output& output_;
    const StoryStep* next_ = std::begin(storySteps);
};

} // namespace

int runDemo(const DemoOptions& options) {
    NSUserDefaults::standardUserDefaults().setStore(std::make_shared<NSUserDefaultsInMemory>());
    EventLoop loop;
    Output output;
    output.write(storyBeginning);
    const auto format =
        Output::showsColors(options.color) ? DeliveryFormat::Colored : DeliveryFormat::Plain;
    return themeWindow(loop, output, format, [&output](ThemedWindow& window) {
        return std::make_unique<StorySource>(window, output);
    });
}

} // namespace zel::tool
