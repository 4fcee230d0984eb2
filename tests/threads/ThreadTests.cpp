// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Run.h"

#include <gtest/gtest.h>

#include <set>

namespace zeltest {
namespace {

using namespace std::chrono_literals;

const std::set<std::string> everything{
    "add a mode and remove it",
    "add a provider, make a root style, remove it",
    "add a style to a scheme and remove it",
    "add an update observer",
    "ask for a domain in a handler",
    "ask for domains",
    "ask for schemes",
    "cancel an update",
    "choose a mode",
    "convert colours",
    "describe modes and providers",
    "describe the host",
    "drain the main queue",
    "end an owner in a handler",
    "end the owner of a handler that works",
    "end the owner of an observer",
    "force a notification to a family of styles",
    "force a notification to everybody",
    "force handlers to work",
    "have handlers work in an update",
    "let a listener end",
    "look a style up in its scheme",
    "make a domain that ends",
    "make a chain of styles",
    "make a style that follows",
    "make a style that inherits, and move it",
    "move a view",
    "move nodes",
    "notify a subtree in a handler",
    "notify a subtree",
    "notify everybody in a handler",
    "notify everybody",
    "observe and post notifications",
    "observe values",
    "pin a subtree in a handler",
    "pin a subtree",
    "pin a view",
    "raise in a handler",
    "raise in an update",
    "read a child's values",
    "read a style's kind and seed",
    "read all values at once",
    "read by key",
    "read own values",
    "read typed attributes",
    "register a handler object again",
    "register a handler object",
    "register a handler that works",
    "register a handler",
    "register a listener and let it end",
    "register a second handler",
    "register in a handler",
    "remove an update observer",
    "replace a scheme's styles",
    "replace a view",
    "resolve a style",
    "set a scheme identifier",
    "set a style identifier",
    "store defaults",
    "switch a scheme",
    "turn the system dark or light",
    "unregister a handler that works",
    "unregister a listener",
    "unregister in a handler",
    "update a style in a handler",
    "update a style",
    "update inside an update",
    "write a value aside",
};

TEST(Threads, MayDoAtOnceWhatTheHeadersAllowThem) {
    std::set<std::string> done;
    for (std::uint64_t seed = 1; seed <= 10 && done.size() < everything.size(); ++seed) {
        for (const auto& [what, times] : runThreads(3s, seed)) { // more than once if it's slow
            if (times > 0) {
                done.insert(what);
            }
        }
    }
    EXPECT_EQ(done, everything);
}

} // namespace
} // namespace zeltest
