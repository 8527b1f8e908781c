#include <gtest/gtest.h>

#include <fstream>

#include "cli/CommandRunner.h"

namespace vantor {
namespace {

/// A dump that lost one byte, for each of its bytes, against data/make_counter_faults.py.
TEST(CounterCheck, FindsTheWholeRunsBeforeALostByte) {
    const auto expected = nlohmann::json::parse(std::ifstream(VANTOR_TEST_DATA "counter_faults.json"));
    const std::string dump = expected["dump"];
    const auto check = [](const std::string& text) {
        CommandRunner runner;
        runner.Files.PutText("/f/Day.tdc", text);
        const auto result = runner.Json({"counter", "check", "/f/Day.tdc"});
        const auto& fault = result["fault"];
        EXPECT_TRUE(fault.is_null() || !fault["reason"].get<std::string>().empty());
        return nlohmann::json{result["runs"], fault.is_null() ? nlohmann::json() : fault["record"]};
    };
    EXPECT_EQ(check(dump), nlohmann::json({3, nullptr}));
    ASSERT_EQ(expected["lost"].size(), dump.size());
    for (std::size_t i = 0; i < dump.size(); ++i)
        EXPECT_EQ(check(dump.substr(0, i) + dump.substr(i + 1)), expected["lost"][i]) << "without byte " << i;
}

TEST(CounterCheck, WhatAFileHoldsDoesNotSteerTheTerminal) {
    CommandRunner runner;
    runner.Files.PutText("/f/Day.tdc", "\x1b[2J\x9b,1");
    EXPECT_EQ(runner.Run({"counter", "check", "/f/Day.tdc"}), 0);
    EXPECT_NE(runner.Out.find("fault.reason: It begins with \"\\x1b[2J\xE2\x80\xBA\""), std::string::npos)
        << runner.Out;
    EXPECT_EQ(runner.Run({"counter", "check", "/f/\x1b[2J\xC2\x9B.tdc"}), 1);
    EXPECT_NE(runner.Err.find("/f/\\x1b[2J\\x9b.tdc"), std::string::npos) << runner.Err;
}

}  // namespace
}  // namespace vantor
