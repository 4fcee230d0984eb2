// SPDX-License-Identifier: Apache-2.0
// Against the real desktop portal, in a session of the tests' own: see run_in_a_desktop.sh.
#include "tests/contract/ContractFixture.h"

#include <cstdlib>

namespace {

using namespace zeltest;

class DesktopContract : public Contract {
protected:
    static void setDesktop(const std::string& colorScheme) {
        const std::string command =
            "gsettings set org.gnome.desktop.interface color-scheme " + colorScheme;
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    bool runUntilHeard() {
        const bool heard = toolkit().runUntil([&] { return recorder.calls.size() >= 2; });
        toolkit().settle();
        return heard;
    }
};

TEST_F(DesktopContract, LightDarkAndLightAgainReachEachListenerOnce) {
    setDesktop("default");
    const auto window = listen(toolkit().makeWindow(), "window");
    listen(toolkit().makeChild(window), "child");
    toolkit().followDesktop();
    toolkit().settle();
    EXPECT_EQ(recorder.take(), StyleCalls{});
    setDesktop("prefer-dark");
    EXPECT_TRUE(runUntilHeard());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"window", dark, 1}, {"child", dark, 1}}));
    setDesktop("default");
    EXPECT_TRUE(runUntilHeard());
    EXPECT_EQ(recorder.take(), (StyleCalls{{"window", light, 1}, {"child", light, 1}}));
}

} // namespace
