// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/Operations.h"
#include "tests/threads/ThreadTable.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace zeltest {
namespace {

using Names = std::set<std::string>;

ThreadTable table() {
    return readThreadTable(ZEL_SOURCE_DIR "/docs/threads.md");
}

Names publicOperations() {
    const std::filesystem::path source = ZEL_SOURCE_DIR;
    std::vector<std::filesystem::path> folders{source / "include/ZelStyleKit"};
    for (const auto& each : std::filesystem::directory_iterator(source / "integrations")) {
        folders.push_back(each.path() / "include/ZelStyleKit");
    }
    Names operations;
    for (const auto& folder : folders) {
        if (std::filesystem::exists(folder)) {
            for (const auto& header : std::filesystem::directory_iterator(folder)) {
                operations.merge(readPublicOperations(header.path()));
            }
        }
    }
    return operations;
}

/// The typed accessors are one operation each way; the table speaks of them together.
bool isTypedAccessor(const std::string& operation) {
    static const Names accessors{
#define ZELTEST_NAMES(key, Key, Kind, group) #key, "set" #Key,
        ZEL_STYLE_ATTRIBUTES(ZELTEST_NAMES)
#undef ZELTEST_NAMES
    };
    const auto name = operation.find("::");
    return (operation.starts_with("ZelStyleBasePalette::") ||
            operation.starts_with("ZelStyleSemanticColors::")) &&
           accessors.contains(operation.substr(name + 2));
}

TEST(ThreadTable, HasARowForEachPublicOperationAndNoOther) {
    const ThreadTable read = table();
    Names rows;
    for (const ThreadRow& row : read.rows) {
        EXPECT_TRUE(rows.insert(row.operation).second) << row.operation << " stands there twice";
    }
    Names operations = publicOperations();
    std::erase_if(operations, [&](const std::string& each) {
        return read.values.contains(each.substr(0, each.find("::"))) || isTypedAccessor(each);
    });
    EXPECT_GE(operations.size(), 250U); // they were found
    for (const std::string& each : operations) {
        EXPECT_TRUE(rows.contains(each)) << each << " has no row in docs/threads.md";
    }
    for (const std::string& each : rows) {
        EXPECT_TRUE(operations.contains(each)) << each << " is in no header";
    }
}

TEST(ThreadTable, SaysOfEachOperationWhatItsColumnsCanSay) {
    for (const ThreadRow& row : table().rows) {
        EXPECT_TRUE(row.thread == "any" || row.thread == "main" || row.thread == "called")
            << row.operation << ": " << row.thread;
        EXPECT_EQ(row.inHandlers, row.inDestructors) << row.operation;
    }
}

/// Of the core: integrations promise no more than the main thread.
TEST(ThreadTable, PromisesNothingThatIsNotTried) {
    Names promised;
    for (const ThreadRow& row : table().rows) {
        if (row.inHandlers || row.inDestructors) {
            promised.insert(row.operation);
        }
    }
    Names tried;
    Names triedAtOnce;
    for (const Operation& each : allOperations()) {
        tried.insert(each.name);
        if (each.onAnyThread) {
            triedAtOnce.insert(each.name);
        }
    }
    EXPECT_EQ(tried, promised);
    for (const ThreadRow& row : table().rows) {
        EXPECT_EQ(row.inHandlers && row.thread == "any", triedAtOnce.contains(row.operation))
            << row.operation;
    }
}

} // namespace
} // namespace zeltest
