#include "editing/forms/frmUseBoundaries.h"

#include <gmock/gmock.h>

#include "fakes/FormScene.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class frmUseBoundariesTest : public FormScene<frmUseBoundaries> {
protected:
    std::vector<int> ChosenRuns() {
        std::vector<int> runs;
        for (const BoundsPreview& preview : Window->Chosen()) runs.push_back(preview.Run);
        return runs;
    }
};

TEST_F(frmUseBoundariesTest, OnlyTickedRunsAreTaken) {
    const StudyRunEntry now{
        .EntryRunName = "B", .CDStartDist = 10, .CDEndDist = 20, .ControlDelay = 7, .LOSGrade = "A"};
    const StudyRunEntry then{
        .EntryRunName = "B", .CDStartDist = 500, .CDEndDist = 900, .ControlDelay = 19, .LOSGrade = "B"};
    const StudyRunEntry without{.EntryRunName = "A"};
    Open(
        std::vector<BoundsPreview>{
            {2, now, then}, {3, without, then, "", {"end not reached"}}, {5, without, without, "Gone: it is\nmissing"}},
        Bounds{500, 900, std::nullopt});
    EXPECT_THAT(Rows(*Window, "vaRuns"),
                ElementsAre("B|7|19|B|", "A|–|19|B|end not reached", "A|–|–||Gone: it is missing"));
    EXPECT_THAT(ChosenRuns(), ElementsAre(2));
    PressKey(Qt::Key_Space);
    EXPECT_FALSE(IsEnabled("btnOk"));
    Press("btnTickAll");
    EXPECT_THAT(ChosenRuns(), ElementsAre(2, 3));
    EXPECT_EQ(Text("lblCount"), "2 of 3 runs");
    Get<QTableWidget>("vaRuns").sortItems(0);
    EXPECT_THAT(ChosenRuns(), ElementsAre(2, 3));
    Press("btnOk");
    EXPECT_TRUE(IsAccepted());
}

}  // namespace
}  // namespace vantor
