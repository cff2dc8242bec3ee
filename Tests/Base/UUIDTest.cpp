#include "Base/UUID.hpp"

#include <gtest/gtest.h>

#include <string>

namespace {

using Base::UUID;

TEST(UUID, ReadsAndWritesItsTextFormAndNoOther) {
    // The example of RFC 9562, appendix A.3.
    const auto uuid = UUID::parse("919108F7-52d1-4320-9bac-f847db4148a8");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->bytes(), (UUID::Bytes{0x91, 0x91, 0x08, 0xf7, 0x52, 0xd1, 0x43, 0x20, 0x9b, 0xac, 0xf8,
                                          0x47, 0xdb, 0x41, 0x48, 0xa8}));
    EXPECT_EQ(uuid->text(), "919108f7-52d1-4320-9bac-f847db4148a8");

    for (const std::string text :
         {"", "919108f7-52d1-4320-9bac-f847db4148a", "919108f7-52d1-4320-9bac-f847db4148a8a",
          "919108f7-52d1-4320-9bac-f847db4148a8\n", "919108f752d143209bacf847db4148a8",
          "919108f75-2d1-4320-9bac-f847db4148a8", "919108f7-52d1-4320-9bac_f847db4148a8",
          "g19108f7-52d1-4320-9bac-f847db4148a8", "-19108f7-52d1-4320-9bac-f847db4148a8"}) {
        EXPECT_FALSE(UUID::parse(text)) << '"' << text << '"';
    }
}

TEST(UUID, MarksRandomBytesAsVersion4AndLeavesTheRest) {
    EXPECT_EQ(UUID::version4(UUID::Bytes{}).text(), "00000000-0000-4000-8000-000000000000");
    const auto ones = UUID::parse("ffffffff-ffff-ffff-ffff-ffffffffffff")->bytes();
    EXPECT_EQ(UUID::version4(ones).text(), "ffffffff-ffff-4fff-bfff-ffffffffffff");
}

}  // namespace
