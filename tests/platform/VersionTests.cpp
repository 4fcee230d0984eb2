// SPDX-License-Identifier: Apache-2.0
#include <ZelStyleKit/ZelExceptions.h>
#include <ZelStyleKit/ZelStyleVersion.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

TEST(Version, TheLibrarysVersionIsTheNumberOne) {
    static_assert(std::is_same_v<decltype(zel::ZelStyleKitVersionNumber), const double>);
    EXPECT_EQ(zel::ZelStyleKitVersionNumber, 1.0);
}

TEST(Exceptions, AnInvalidArgumentIsCaughtAsTheStandardOneWithItsText) {
    try {
        throw zel::ZelInvalidArgument("no key");
    } catch (const std::invalid_argument& caught) {
        EXPECT_EQ(std::string(caught.what()), "no key");
    }
}

TEST(Exceptions, AnEnumerationMutationIsALogicErrorAndNoInvalidArgument) {
    try {
        throw zel::ZelEnumerationMutation("changed");
    } catch (const std::invalid_argument&) {
        FAIL() << "told as an invalid argument";
    } catch (const std::logic_error& caught) {
        EXPECT_EQ(std::string(caught.what()), "changed");
    }
}

} // namespace
