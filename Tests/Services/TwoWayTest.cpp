#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

class TwoWayTest : public SynchroniserTest {};

TEST_F(TwoWayTest, WhatOneEditsArrivesAtTheOther) {
    startTwo({"Attack", "Défense"});
    const auto clip = ann().tag("Attack", 1, 2);
    ben().tag("Défense", 3, 3);
    settle();
    EXPECT_EQ(remote().moments.size(), 2U);
    expectAllEqual();

    ann().timeline->retimeInstance(clip->uniqueId(), 1.5, 2.5);
    ben().timeline->recolorRow(ben().row("Attack")->uniqueId(), Base::Color(200, 0, 0));
    ben().timeline->addRow("Set play", Base::Color(0, 200, 0), 0);
    settle();
    expectAllEqual();
    EXPECT_EQ(ann().timeline->rowAt(0)->name(), "Set play");

    ann().timeline->renameRow(ann().row("Attack")->uniqueId(), "Break");
    settle();
    expectAllEqual();
    EXPECT_TRUE(ben().row("Break"));

    ann().timeline->removeInstance(clip->uniqueId());
    ben().timeline->removeRow(ben().row("Set play")->uniqueId());
    settle();
    expectAllEqual();
    EXPECT_EQ(remote().moments.size(), 1U);
}

TEST_F(TwoWayTest, TextsMayBeLongEmptyOrStrange) {
    startTwo(
        {"", std::string("a\0b", 3), std::string(100'000, 'x'), "\"], [\"", "e\u0301", "\u00e9", "\xff\xfe"});
    for (const auto& row : {ann().timeline->rowAt(0), ann().timeline->rowAt(3), ann().timeline->rowAt(6)}) {
        ann().timeline->addInstance(row->uniqueId(), 1, 1, "notes \n\t\U0001F3C0" + row->name());
    }
    settle();
    ben().timeline->renameRow(ben().timeline->rowAt(6)->uniqueId(), "\u202edetnuoc eb ot\n");
    settle();
    EXPECT_EQ(remote().moments.size(), 3U);
    EXPECT_EQ(ann().timeline->rowAt(6)->name(), "\u202edetnuoc eb ot\n");
    expectAllEqual();
}

}  // namespace
}  // namespace RemoteCoding
