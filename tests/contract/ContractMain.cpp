// SPDX-License-Identifier: Apache-2.0
// Runs the contract over one toolkit. Also the application that the contract starts to see what it
// remembers: with "--application" it sets itself up, prints the scheme that its window opens in,
// and with "--application MODE" chooses a mode first.
#include "tests/contract/ContractFixture.h"

#include <cstdio>
#include <string_view>

namespace {

std::unique_ptr<zeltest::Toolkit> theToolkit;
std::string thePath;

int runApplication(int argc, char** argv) {
    theToolkit->keepDefaultsAsApplicationsDo();
    theToolkit->connect();
    zel::ZelStyleManager::setup();
    if (argc > 2) {
        zel::ZelStyleManager::sharedStyleManager()->setActiveModeIdentifier(argv[2]);
    }
    const auto window = theToolkit->makeWindow();
    const auto style = zel::ZelStyle::forStyleable(theToolkit->styleableOf(window));
    std::puts(style->isDarkStyle() ? "dark" : "light");
    theToolkit->disconnect();
    return 0;
}

} // namespace

namespace zeltest {

Toolkit& toolkit() {
    return *theToolkit;
}

const std::string& programPath() {
    return thePath;
}

} // namespace zeltest

int main(int argc, char** argv) {
    thePath = argv[0];
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS(); // needs no toolkit, which may want a display
    }
    theToolkit = zeltest::makeToolkit(argc, argv);
    const bool application = argc > 1 && std::string_view(argv[1]) == "--application";
    const int status = application ? runApplication(argc, argv) : RUN_ALL_TESTS();
    theToolkit.reset();
    return status;
}
