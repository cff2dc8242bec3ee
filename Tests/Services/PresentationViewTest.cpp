#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

using Strings = std::vector<std::string>;

constexpr Base::Color grey(10, 20, 30);
constexpr Base::Color red(200, 0, 0);

PresentationViewItem view(const std::string& name, Base::Color color = grey) {
    return PresentationViewItem(name, color);
}

class PresentationViewTest : public SynchroniserTest {
protected:
    void startAnn(const Strings& names) {
        add("Ann");
        for (const std::string& name : names) {
            ann().timeline->addRow(name, grey);
        }
        ann().start();
        settle();
        forgetTrace();
    }

    [[nodiscard]] Strings rowNames() {
        Strings names;
        const RowList rows = ann().timeline->allRows();
        for (const auto& row : *rows) {
            names.push_back(row->name());
        }
        return names;
    }

    /// What was logged since the last call, without the line that every event begins with.
    [[nodiscard]] Strings newLines() {
        Strings lines = log(ann());
        std::erase(lines, "info Received timeline update. ChangeType=presentationViewUpdated");
        forgetTrace();
        return lines;
    }
};

TEST_F(PresentationViewTest, RowsFollowTheOrderAndColoursOfTheViewFromTheTopDown) {
    startAnn({"B", "A"});
    deliver(ann(), {view("A"), view("B")});
    EXPECT_EQ(rowNames(), Strings({"A", "B"}));
    EXPECT_EQ(newLines(), Strings({"info Moving row from position 1 to 0 from presentation view update"}));

    deliver(ann(), {view("A"), view("New", red), view("B", red)});
    EXPECT_EQ(rowNames(), Strings({"A", "New", "B"}));
    EXPECT_EQ(newLines(), Strings({"info Adding a new row from presentation view update",
                                   "info Updated row color from presentation view update"}));
    EXPECT_EQ(ann().row("New")->color(), red);
    EXPECT_EQ(ann().row("B")->color(), red);
    const auto cached = ann().service->momentCache().uploadedRow(ann().row("New")->uniqueId());
    ASSERT_TRUE(cached);
    EXPECT_EQ(cached->rowNum, 1);

    // The rows are read anew for each sub-view: what the earlier ones moved and inserted counts.
    deliver(ann(), {view("B", red), view("X"), view("New", red), view("A")});
    EXPECT_EQ(rowNames(), Strings({"B", "X", "New", "A"}));
    EXPECT_EQ(newLines(), Strings({"info Moving row from position 2 to 0 from presentation view update",
                                   "info Adding a new row from presentation view update",
                                   "info Moving row from position 3 to 2 from presentation view update"}));
    deliver(ann(), {view("B", red), view("X"), view("New", red), view("A")});
    EXPECT_EQ(newLines(), Strings());
    runFor(3);
    EXPECT_EQ(cloudCalls(ann()), Strings());
}

TEST_F(PresentationViewTest, OnlyEmptyRowsThatTheViewDoesNotNameAreRemoved) {
    startAnn({"Attack", "Attack", "Empty", "Full", "attack"});
    ann().tag("Full", 1, 2);
    settle();
    forgetTrace();
    const std::string first = ann().timeline->rowAt(0)->uniqueId();
    const std::string second = ann().timeline->rowAt(1)->uniqueId();
    const std::string empty = ann().row("Empty")->uniqueId();

    // Of two rows with one name only the first is moved and recoloured; the name keeps both.
    deliver(ann(), {view("New"), view("Attack", red)});
    ASSERT_EQ(rowNames(), Strings({"New", "Attack", "Attack", "Full"}));
    EXPECT_EQ(ann().timeline->findRow(first)->color(), red);
    EXPECT_EQ(ann().timeline->findRow(second)->color(), grey);
    EXPECT_EQ(newLines(), Strings({"info Adding a new row from presentation view update",
                                   "info Updated row color from presentation view update",
                                   "info Removing empty row not found in presentation view update",
                                   "info Removing empty row not found in presentation view update"}));
    EXPECT_FALSE(ann().service->momentCache().uploadedRow(empty));

    // A view that names a row twice finds the same one each time.
    deliver(ann(), {view("Attack", red), view("Attack", red)});
    EXPECT_EQ(rowNames(), Strings({"Attack", "Attack", "Full"}));

    deliver(ann(), std::vector<PresentationViewItem>());
    ASSERT_EQ(rowNames(), Strings({"Full"}));
    EXPECT_EQ(ann().row("Full")->color(), grey);
}

TEST_F(PresentationViewTest, WithoutACodingTargetOnlyTheCacheForgetsTheRow) {
    startAnn({"A", "B"});
    const std::string removed = ann().row("A")->uniqueId();
    ann().timeline->setCodingTargetAvailable(false);
    deliver(ann(), {view("New"), view("B", red)});
    EXPECT_EQ(rowNames(), Strings({"A", "B"}));
    EXPECT_EQ(ann().row("B")->color(), grey);
    EXPECT_FALSE(ann().service->momentCache().uploadedRow(removed));
    EXPECT_TRUE(ann().service->momentCache().uploadedRow(ann().row("B")->uniqueId()));
    EXPECT_EQ(newLines(), Strings());
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
}

TEST_F(PresentationViewTest, ARowIsCachedWhenItsInsertionIsReportedHoweverLate) {
    startAnn({"A"});
    ann().host.timelines().insertionCallbacksComeLater = true;
    deliver(ann(), {view("A"), view("New")});
    const std::string added = ann().row("New")->uniqueId();
    EXPECT_FALSE(ann().service->momentCache().uploadedRow(added));
    runFor(0);
    EXPECT_TRUE(ann().service->momentCache().uploadedRow(added));

    deliver(ann(), {view("A"), view("New"), view("Last")});
    ann().service->cancelSyncing();
    const std::weak_ptr<TimelineUploadService> service = ann().service;
    ann().release();
    EXPECT_TRUE(service.expired());
    runFor(1);
    EXPECT_TRUE(ann().row("Last"));
}

}  // namespace
}  // namespace RemoteCoding
