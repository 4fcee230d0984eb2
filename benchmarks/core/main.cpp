// SPDX-License-Identifier: Apache-2.0
#include "core/ListeningTree.h"
#include "support/Program.h"

int main(int argc, char** argv) {
    zel::becomeMultithreaded();
    zel::ZelStyleDomain::setupStyles();
    const int result = zel::runBenchmarks(argc, argv);
    zel::endSharedTree();
    return result;
}
