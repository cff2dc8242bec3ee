// What becomes of edits that several analysts make to one list of rows, or to one clip.

#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/CodeListMerge.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace ReferenceHost;
using Kind = RowEdit::Kind;
const Base::Color grey(9, 9, 9);

/// A list in words; a star marks a row that is not grey.
std::vector<CodeRecord> listOf(const std::string& words) {
    std::vector<CodeRecord> codes;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        const bool isRed = word.back() == '*';
        codes.push_back(
            {isRed ? word.substr(0, word.size() - 1) : word, isRed ? Base::Color(255, 0, 0) : grey});
    }
    return codes;
}

std::string wordsOf(const std::vector<CodeRecord>& codes) {
    std::string words;
    for (const CodeRecord& code : codes) {
        words += (words.empty() ? "" : " ") + code.name + (code.color == grey ? "" : "*");
    }
    return words;
}

/// `row` as in a list; `above` empty: it is the first afterwards.
RowEdit edit(Kind kind, const std::string& row, const std::string& above = {},
             const std::string& oldName = {}) {
    const CodeRecord code = listOf(row).front();
    return {kind, 0, code.name, oldName, code.color, above.empty() ? std::nullopt : std::optional(above)};
}

TEST(CodeListMerge, MakesAnEditWhereOthersHaveChangedTheListMeanwhile) {
    const std::vector<std::pair<RowEdits, const char*>> cases{
        {{edit(Kind::add, "D")}, "D A B C"},
        {{edit(Kind::add, "D", "B")}, "A B D C"},
        {{edit(Kind::add, "D", "gone")}, "A B C D"},
        {{edit(Kind::add, "B*", "C")}, "A B C"},  // two add the same row
        {{edit(Kind::remove, "B")}, "A C"},
        {{edit(Kind::remove, "gone")}, "A B C"},
        {{edit(Kind::rename, "D*", "A", "B")}, "A D C"},
        {{edit(Kind::rename, "C", "A", "B")}, "A C"},           // somebody has made a row of that name
        {{edit(Kind::rename, "D*", "A", "gone")}, "A D* B C"},  // what is edited is wanted
        {{edit(Kind::rename, "B", "A", "B")}, "A B C"},         // somebody has given it its name back
        {{edit(Kind::rename, "C*", "A", "gone")}, "A B C"},
        {{edit(Kind::recolor, "B*", "A")}, "A B* C"},
        {{edit(Kind::recolor, "D*", "B")}, "A B D* C"},
        {{edit(Kind::move, "C*")}, "C A B"},
        {{edit(Kind::move, "A", "C")}, "B C A"},
        {{edit(Kind::move, "A", "gone")}, "B C A"},
        {{edit(Kind::move, "D", "A")}, "A D B C"},
        {{edit(Kind::rename, "D", "", "A"), edit(Kind::add, "E", "D"), edit(Kind::move, "C", "E")},
         "D E C B"},
        {{edit(Kind::add, "D", "C"), edit(Kind::remove, "D")}, "A B C"},
        {{edit(Kind::remove, "A"), edit(Kind::add, "A*", "B")}, "B A* C"}};
    for (std::size_t index = 0; index < cases.size(); ++index) {
        EXPECT_EQ(wordsOf(withEdits(listOf("A B C"), cases[index].first)), cases[index].second) << index;
    }
    EXPECT_EQ(wordsOf(withEdits({}, {edit(Kind::add, "A", "gone"), edit(Kind::add, "B")})), "B A");
    RowEdit belowARenamedRow = edit(Kind::move, "C", "not yet or not any more");
    belowARenamedRow.newAbove = "A";
    EXPECT_EQ(wordsOf(withEdits(listOf("A B C"), {belowARenamedRow})), "A C B");
}

/// One session, written to as its clients do.
struct MergingTest : testing::Test {
    std::string save(const std::string& timelineId, const char* list, std::optional<RowEdits> edits) {
        const auto codes = std::make_shared<const std::vector<CodeRecord>>(listOf(list));
        EXPECT_TRUE(
            cloud.savePresentationView(1, "video", session, timelineId, codes, std::move(edits)).succeeded());
        return wordsOf(*cloud.snapshot(session)->presentationView);
    }
    /// Writes the moment, of which these edits have set the parts. Gives what it says then.
    std::string write(const std::string& timelineId, EditNumbers numbers, const char* code, double start,
                      const char* notes) {
        const MomentDraft draft{"clip", moment, code, grey, start, start + 1, notes, numbers};
        EXPECT_TRUE(moment.empty()
                        ? cloud.createMoments(1, "video", session, timelineId, {draft}).succeeded()
                        : cloud.updateMoments(1, "video", session, timelineId, {draft}).succeeded());
        const MomentRecord record = *cloud.snapshot(session)->moments.front();
        moment = record.id;
        return record.code + " " + std::to_string(std::lround(record.start)) + "-" +
               std::to_string(std::lround(record.end)) + " " + record.notes;
    }

    VirtualTime time{1};
    VirtualScheduler scheduler{time};
    CloudService cloud{scheduler};
    std::string session = cloud.createTaggingSession("team", "video", "Ann");
    std::string moment;
};

TEST_F(MergingTest, TheListTakesEachEditOfEachTimelineOnce) {
    RowEdits anns{edit(Kind::add, "A"), edit(Kind::add, "B", "A"), edit(Kind::remove, "A")};
    RowEdits bens{edit(Kind::add, "C", "B"), edit(Kind::add, "A")};
    for (RowEdits* edits : {&anns, &bens}) {
        for (std::uint64_t number = 0; RowEdit & edit : *edits) {
            edit.number = ++number;
        }
    }
    const RowEdits first(anns.begin(), anns.begin() + 2);
    EXPECT_EQ(save("ann", "A B", first), "A B") << "A first list may hold its edits already.";
    EXPECT_EQ(save("ann", "B", RowEdits{anns[2]}), "B");
    EXPECT_EQ(save("ann", "A B", first), "B") << "The answer was lost, and the call is repeated late.";
    EXPECT_EQ(save("ben", "A B C", bens), "A B C") << "His numbers are not hers.";
    EXPECT_EQ(save("ann", "", anns), "A B C");
    EXPECT_EQ(save("ann", "D*", std::nullopt), "D*") << "Without an account of edits the list is replaced.";
}

TEST_F(MergingTest, TheListTakesEditsThatComeLateForWhatTheyWere) {
    const auto numbered = [](std::uint64_t number, RowEdit edit, bool waits = false) {
        edit.number = number;
        edit.waits = waits;
        return edit;
    };
    const RowEdit renamed = edit(Kind::rename, "B", "", "A");
    const RowEdit colored = edit(Kind::recolor, "B*");
    EXPECT_EQ(save("ann", "B* C", RowEdits{numbered(1, renamed, true), numbered(2, colored, true)}), "B* C");
    EXPECT_EQ(save("ben", "", RowEdits{numbered(1, edit(Kind::recolor, "B"))}), "B C");
    EXPECT_EQ(save("ann", "", RowEdits{numbered(1, renamed), numbered(2, colored)}), "B C")
        << "They waited for their clips, and the first list had them.";
    EXPECT_EQ(save("ann", "", RowEdits{numbered(4, edit(Kind::add, "C", "B")), numbered(6, colored)}),
              "B* C");
    EXPECT_EQ(save("ann", "",
                   RowEdits{numbered(3, edit(Kind::rename, "D", "B", "C")),
                            numbered(5, edit(Kind::recolor, "B")), numbered(7, renamed, true)}),
              "B* C D")
        << "An earlier session of the timeline saves last: C is another row by now, and B has another "
           "colour.";
}

TEST_F(MergingTest, AMomentTakesEachPartFromWhoeverSetItLast) {
    EXPECT_EQ(write("ann", {1, 1, 1}, "Shot", 1, "n"), "Shot 1-2 n");
    EXPECT_EQ(write("ben", {0, 1, 0}, "Pass", 5, "m"), "Shot 5-6 n") << "He has set the times only.";
    EXPECT_EQ(write("ann", {1, 1, 2}, "Shot", 1, "o"), "Shot 5-6 o") << "She has set the notes since.";
    EXPECT_EQ(write("ann", {3, 1, 2}, "Goal", 1, "o"), "Goal 5-6 o");
    EXPECT_EQ(write("ben", {0, 1, 0}, "Pass", 7, "m"), "Goal 5-6 o") << "The same edit comes again.";
    EXPECT_EQ(write("ann", {2, 4, 1}, "Shot", 8, "n"), "Goal 8-9 o") << "Older parts come late.";
    EXPECT_EQ(write("ann", {3, 3, 3}, "Shot", 3, "p"), "Goal 8-9 p");
    EXPECT_EQ(cloud.snapshot(session)->moments.front()->taken.at("ann"), (EditNumbers{3, 4, 3}));
}

/// A timeline on its own.
struct UserEditsTest : testing::Test {
    static std::shared_ptr<Timeline> make(int& lastId) {
        Timeline::Options options;
        options.uniqueId = "timeline";
        options.makeId = [&lastId] { return std::to_string(++lastId); };
        return Timeline::make(std::move(options));
    }
    /// The names of the rows whose edits can be saved in that session.
    std::string unsaved(const std::string& session = "one", std::uint64_t writer = 1) {
        std::string words;
        for (const RowEdit& edit : timeline->rowEdits().unsaved(session, writer)) {
            words += edit.waits
                         ? ""
                         : (words.empty() ? "" : " ") + edit.name + (edit.above ? "<" + *edit.above : "");
        }
        return words;
    }
    void save(const std::string& session = "one") {
        timeline->rowEdits().areSaved(session, timeline->rowEdits().unsaved(session, 1));
    }
    std::string add(const char* name) { return timeline->addRow(name, grey)->uniqueId(); }

    int lastId = 0;
    std::shared_ptr<Timeline> timeline = make(lastId);
};

TEST_F(UserEditsTest, OnlyWhatTheUserHasDoneToRowsIsSavedAndOnceInEachSession) {
    const std::string shot = add("Shot");
    timeline->codingTarget()->insertRowWithName("Theirs", grey, 0, {});
    timeline->codingTarget()->setRowNameWithRowNum(0, "Others");
    (void)add("Pass");
    timeline->addInstance(shot, 1, 2);
    EXPECT_EQ(unsaved(), "Shot Pass<Shot");
    const RowEdits captured = timeline->rowEdits().unsaved("one", 1);
    timeline->recolorRow(shot, Base::Color());
    timeline->rowEdits().areSaved("one", captured);
    EXPECT_EQ(unsaved(), "Shot<Others") << "It was made while the others were on their way.";
    EXPECT_EQ(unsaved("two"), "Shot Pass<Shot Shot<Others");
    save();
    (void)add("Goal");
    timeline->codingTarget()->setRowNameWithRowNum(3, "Score");
    EXPECT_EQ(unsaved(), "") << "Whoever has renamed the new row brings it into the list.";
}

TEST_F(UserEditsTest, ARowsNewNameWaitsUntilTheClipsThatWereOnItAreWrittenWithIt) {
    const std::string shot = add("Shot");
    (void)add("Pass");
    const auto clip = timeline->addInstance(shot, 1, 2);
    clip->setExternalId("moment");
    clip->didWrite(clip->editNumbers());
    save();
    timeline->renameRow(shot, "Goal");
    timeline->recolorRow(shot, Base::Color());
    timeline->addRow("Corner", grey, 1);
    (void)add("Shot");
    EXPECT_EQ(unsaved(), "Corner<Shot") << "The row has its old name in the list, so no other can have it.";
    EXPECT_EQ(timeline->rowEdits().unsaved("one", 1)[2].newAbove, "Goal") << "A first list has that.";
    timeline->appendRemoteInstance("Goal", "another", 3, 4, {}, grey);
    const auto partial = timeline->timelineFromModifyCount(0, false);  // an upload writes such copies
    const auto copies = partial->allRows()->front()->allInstances();
    const auto copy = std::dynamic_pointer_cast<TimelineInstance>(copies->front());
    copy->didWrite(copy->editNumbers());
    EXPECT_EQ(unsaved(), "Goal Goal Corner<Goal Shot<Pass") << "What came afterwards has the name already.";

    save();
    timeline->renameRow(shot, "Score");
    timeline->addRow("Foul", grey, 1);
    EXPECT_EQ(unsaved(), "Foul<Goal");
    timeline->codingTarget()->setRowNameWithRowNum(0, "Point");
    timeline->removeRow(shot);
    EXPECT_EQ(unsaved(), "Point Foul<Point Point")
        << "Others have renamed it since; and no clip of a removed row is written.";
}

TEST_F(UserEditsTest, ASessionIsSavedNothingThatWasDoneBeforeItAndTheNextOneNothingDoneBetween) {
    (void)add("Shot");
    timeline->beginPublishing(0);
    (void)add("Pass");
    timeline->leaveSession();
    (void)add("Goal");
    timeline->enterSession(1);
    (void)add("Corner");
    EXPECT_EQ(unsaved("one", 2), "Corner<Goal");
    EXPECT_EQ(unsaved(), "Pass<Shot Corner<Goal") << "It had not been saved when it was joined again.";
    timeline->leaveSession();
    timeline->enterSession(2);
    (void)add("Foul");
    EXPECT_EQ(unsaved("two", 3), "Foul<Corner");
}

TEST_F(UserEditsTest, WhatIsReceivedLeavesAsItIsWhatTheUserHasSetSince) {
    const auto receive = [&](bool retimes, bool notes, EditNumbers (*takenOf)(EditNumbers)) {
        const auto clip = timeline->addInstance(add(("Row " + std::to_string(lastId)).c_str()), 1, 2, "mine");
        const std::string id = clip->uniqueId();
        retimes ? (void)timeline->retimeInstance(id, 3, 4) : void();
        notes ? (void)timeline->setInstanceNotes(id, "later") : void();
        const EditNumbers first{clip->editNumbers().code, clip->editNumbers().code, clip->editNumbers().code};
        const EditNumbers taken = takenOf ? takenOf(clip->editNumbers()) : first;
        const auto row = clip->row()->uniqueId();
        EXPECT_EQ(timeline->updateRemoteInstance(id, row, ClipValues(7, 8, "theirs"), taken), clip);
        const auto [start, end, text] = clip->values();
        return std::to_string(std::lround(start)) + "-" + std::to_string(std::lround(end)) + " " + text;
    };
    EXPECT_EQ(receive(false, false, nullptr), "7-8 theirs");
    EXPECT_EQ(receive(true, false, nullptr), "3-4 theirs");
    EXPECT_EQ(receive(false, true, nullptr), "7-8 later");
    EXPECT_EQ(receive(true, true, nullptr), "3-4 later");
    EXPECT_EQ(receive(true, true, [](EditNumbers all) { return all; }), "7-8 theirs");
    const auto allButNotes = [](EditNumbers all) { return EditNumbers{all.code, all.times, all.code}; };
    EXPECT_EQ(receive(true, true, allButNotes), "7-8 later");
    EXPECT_EQ(receive(false, false, [](EditNumbers) { return EditNumbers(); }), "1-2 mine")
        << "The moment goes up to none of his edits.";
}

}  // namespace
