#include "Apps/CodingDesk/Program.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace CodingDesk {
namespace {

struct Outcome {
    explicit Outcome(const std::vector<std::string>& arguments)
        : status(runProgram(arguments, out, errors)) {}

    std::ostringstream out;
    std::ostringstream errors;
    int status;
};

TEST(ProgramTests, AMatchThatCannotBeReadIsNotBegun) {
    const auto folder = std::filesystem::path(testing::TempDir()) / "CodingDesk cannot be read";
    std::filesystem::create_directories(folder);
    const std::string match = folder / "bad.csv";
    std::ofstream(match, std::ios::binary) << "code,start,end\nShot,1,2\nShot,5,4\n";
    const Outcome broken({"--events", match, "--log", folder / "trace.log"});
    EXPECT_EQ(broken.status, 2);
    EXPECT_EQ(broken.errors.str(),
              "CodingDesk: " + match + ", line 3: the end \"4\" is before the start \"5\"\n");
    EXPECT_EQ(broken.out.str(), "");
    EXPECT_FALSE(std::filesystem::exists(folder / "trace.log"));
    std::filesystem::remove_all(folder);

    const Outcome missing({"--events", match});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.errors.str(), testing::HasSubstr("bad.csv: the file cannot be opened"));
}

TEST(ProgramTests, OptionsThatCannotBeFollowedAreRefused) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--analysts", "many"}, {"--what"}, {"--log", "no such folder/trace.log"}}) {
        const Outcome refused(arguments);
        EXPECT_EQ(refused.status, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(refused.errors.str(), testing::StartsWith("CodingDesk: "));
        EXPECT_EQ(refused.out.str(), "");
    }
    const Outcome help({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out.str(), testing::StartsWith("Usage: CodingDesk"));
}

}  // namespace
}  // namespace CodingDesk
