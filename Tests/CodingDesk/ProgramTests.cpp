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

class ProgramTests : public testing::Test {
protected:
    ProgramTests() { std::filesystem::create_directories(folder_); }
    ~ProgramTests() override { std::filesystem::remove_all(folder_); }

    std::string file(const std::string& name) const { return (folder_ / name).string(); }
    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(file(name), std::ios::binary) << text;
        return file(name);
    }

private:
    const testing::UnitTest& unitTest_ = *testing::UnitTest::GetInstance();
    const std::filesystem::path folder_ =
        std::filesystem::path(testing::TempDir()) /
        (std::string("CodingDesk ") + unitTest_.current_test_info()->name());
};

TEST_F(ProgramTests, AMatchThatCannotBeReadIsNotBegun) {
    const std::string match = write("bad.csv", "code,start,end\nShot,1,2\nShot,5,4\n");
    const Outcome broken({"--events", match, "--log", file("trace.log")});
    EXPECT_EQ(broken.status, 2);
    EXPECT_EQ(broken.errors.str(),
              "CodingDesk: " + match + ", line 3: the end \"4\" is before the start \"5\"\n");
    EXPECT_EQ(broken.out.str(), "");
    EXPECT_FALSE(std::filesystem::exists(file("trace.log")));

    const Outcome missing({"--events", file("missing.csv")});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.errors.str(), testing::HasSubstr("missing.csv: the file cannot be opened"));
    EXPECT_EQ(missing.out.str(), "");
}

TEST_F(ProgramTests, OptionsThatCannotBeFollowedAreRefused) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--analysts", "many"}, {"--what"}, {"--log", file("no such folder/trace.log")}}) {
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
