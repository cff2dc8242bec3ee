#include "Base/IdIndex.hpp"

#include "ReferenceHost/SeededRandom.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using Base::IdIndex;

TEST(IdIndexTest, FindsWhatAMapWouldFindAfterAnyEdits) {
    constexpr std::size_t texts = 400;
    std::vector<std::string> list;  // each text twice, so that one can lead to either place
    list.reserve(2 * texts);
    for (std::size_t place = 0; place < 2 * texts; ++place) {
        list.push_back("text " + std::to_string(place % texts));
    }
    const auto textAt = [&](IdIndex::Position position) -> std::string_view { return list[position]; };
    using Found = std::optional<IdIndex::Position>;

    IdIndex index;
    std::map<std::string, IdIndex::Position> map;
    const auto inMap = [&](const std::string& text) {
        const auto found = map.find(text);
        return found != map.end() ? Found(found->second) : Found();
    };
    ReferenceHost::SeededRandom random(7);
    for (int turn = 0; turn < 20'000; ++turn) {
        const auto place = static_cast<IdIndex::Position>(random.below(list.size()));
        const std::string& text = list[place];
        // Phases of growing and of shrinking, so that long runs of slots come and go.
        if (random.chance(turn / 2'000 % 2 == 0 ? 0.8 : 0.2)) {
            EXPECT_EQ(index.put(text, place, textAt), inMap(text));
            map[text] = place;
        } else {
            EXPECT_EQ(index.erase(text, textAt), inMap(text));
            map.erase(text);
        }
        const std::string& other = list[random.below(texts)];
        ASSERT_EQ(index.find(other, textAt), inMap(other)) << "turn " << turn;
    }
    for (std::size_t place = 0; place < texts; ++place) {
        EXPECT_EQ(index.find(list[place], textAt), inMap(list[place]));
    }
}

}  // namespace
