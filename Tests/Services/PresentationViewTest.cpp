#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

constexpr Base::Color grey(10, 20, 30);
constexpr Base::Color red(200, 0, 0);
const std::string adding = "info Adding a new row from presentation view update";
const std::string recoloring = "info Updated row color from presentation view update";
const std::string removing = "info Removing empty row not found in presentation view update";

PresentationViewItem view(const std::string& name, Base::Color color = grey) {
    return PresentationViewItem(name, color);
}

class PresentationViewTest : public SynchroniserTest {
protected:
    /// Delivers a view and gives what was logged of it, without the line that every event begins with.
    Strings linesOf(const std::vector<PresentationViewItem>& views) {
        trace.clear();
        ann().deliver(views);
        Strings lines = log(ann());
        EXPECT_EQ(lines.front(), "info Received timeline update. ChangeType=presentationViewUpdated");
        lines.erase(lines.begin());
        return lines;
    }
    [[nodiscard]] bool isCached(const std::string& rowId) {
        return ann().service->momentCache().uploadedRow(rowId).has_value();
    }
};

TEST_F(PresentationViewTest, RowsFollowTheOrderAndColoursOfTheViewFromTheTopDown) {
    startAnn({"B", "A"});
    EXPECT_EQ(linesOf({view("A"), view("B")}),
              Strings({"info Moving row from position 1 to 0 from presentation view update"}));
    EXPECT_EQ(linesOf({view("A"), view("New", red), view("B", red)}), Strings({adding, recoloring}));
    EXPECT_EQ(pictureOf(*ann().timeline), "A(10,20,30):\nNew(200,0,0):\nB(200,0,0):\n");
    EXPECT_TRUE(isCached(ann().row("New")->uniqueId()));

    // The rows are read anew for each sub-view: what the earlier ones moved and inserted counts.
    const std::vector<PresentationViewItem> views{view("B", red), view("X"), view("New", red), view("A")};
    EXPECT_EQ(linesOf(views),
              Strings({"info Moving row from position 2 to 0 from presentation view update", adding,
                       "info Moving row from position 3 to 2 from presentation view update"}));
    EXPECT_EQ(pictureOf(*ann().timeline), "B(200,0,0):\nX(10,20,30):\nNew(200,0,0):\nA(10,20,30):\n");
    EXPECT_EQ(linesOf(views), Strings());
    runFor(3);
    EXPECT_EQ(cloudCalls(ann()), Strings());

    // Putting a row back to what was sent last, before the view came, is a change to be sent.
    ann().timeline->recolorRow(ann().row("B")->uniqueId(), grey);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"savePresentationView"}));
    expectAllEqual();
}

TEST_F(PresentationViewTest, OnlyEmptyRowsThatTheViewDoesNotNameAreRemoved) {
    startAnn({"Attack", "Empty", "Full", "attack"});
    auto rules = cloud.rules();
    rules.listsAreMerged = false;
    cloud.setRules(rules);
    ann().host.timelines().rules().rowNamesAreUnique = false;
    ann().timeline->addRow("Attack", grey, 1);
    ann().tag("Full", 1, 2);
    settle();
    const std::string empty = ann().row("Empty")->uniqueId();

    // Of two rows with one name only the first is moved and recoloured; the name keeps both.
    EXPECT_EQ(linesOf({view("New"), view("Attack", red)}), Strings({adding, recoloring, removing, removing}));
    EXPECT_EQ(
        pictureOf(*ann().timeline),
        "New(10,20,30):\nAttack(200,0,0):\nAttack(10,20,30):\nFull(10,20,30): 1-2/session-1.moment-1\n");
    EXPECT_FALSE(isCached(empty));

    // A view that names a row twice finds the same one each time.
    ann().deliver({view("Attack", red), view("Attack", red)});
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(200,0,0):\nAttack(10,20,30):\nFull(10,20,30): 1-2/session-1.moment-1\n");
    ann().deliver(std::vector<PresentationViewItem>());
    EXPECT_EQ(pictureOf(*ann().timeline), "Full(10,20,30): 1-2/session-1.moment-1\n");
}

TEST_F(PresentationViewTest, WithoutACodingTargetOnlyTheCacheForgetsTheRow) {
    startAnn({"A", "B"});
    ann().timeline->setCodingTargetAvailable(false);
    EXPECT_EQ(linesOf({view("New"), view("B", red)}), Strings());
    EXPECT_EQ(pictureOf(*ann().timeline), "A(10,20,30):\nB(10,20,30):\n");
    EXPECT_FALSE(isCached(ann().row("A")->uniqueId()));
    EXPECT_TRUE(isCached(ann().row("B")->uniqueId()));
}

TEST_F(PresentationViewTest, AnInsertionMayBeReportedWhenTheSynchroniserIsGone) {
    startAnn({"A"});
    ann().host.timelines().insertionCallbacksComeLater = true;
    ann().deliver({view("A"), view("Last")});
    ann().service->cancelSyncing();
    ann().service.reset();
    runFor(1);
    EXPECT_TRUE(ann().row("Last"));
}

}  // namespace
}  // namespace RemoteCoding
