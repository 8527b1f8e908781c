#include "statistics/BoundsProposal.h"

#include <gmock/gmock.h>

#include "Drives.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

/// Three runs over two nodes: "Two" and "Late" are held up at both, "Free" at the second alone.
class BoundsProposal : public testing::Test, protected TestProgram {
protected:
    BoundsProposal() {
        Files.CreateFolder("/g/");
        const auto stopAt = [](Drive& drive, int cruise, int stands) {
            drive.Cruise(cruise).To(0, 8).Cruise(stands, 0).Node().To(60, 5);
        };
        Drive two, late, none;
        stopAt(two, 40, 10);
        stopAt(two, 40, 10);
        stopAt(late, 44, 30);
        stopAt(late, 36, 5);
        stopAt(none.Cruise(45).Node(), 45, 10);
        for (auto& [name, drive] : {std::pair("Two", &two), {"Late", &late}, {"Free", &none}}) {
            RunRecord run = RunOfValues(drive->Cruise(40).Values());
            run.Header.SectionName[2] = "Elm St";
            PutRunFile(Files, run, "/g/", name);
            AppendRun(Street, name);
        }
        AppendRun(Street, "Gone");
    }
    std::vector<RunToPropose> Runs() { return ReadRunsToPropose(Street, Files, "/g/", MphSettings()); }
    std::vector<BoundsPreview> Preview(int node, ProposalKind kind) {
        return PreviewProposals(Street, ProposeBounds(Runs(), node, kind), Files, "/g/", MphSettings());
    }

    Study Street;
};

TEST_F(BoundsProposal, TheNodeIsThatOfTheBoundariesElseThatOfMostEvents) {
    EXPECT_EQ(NodeReason(Runs(), NodeOf(Runs())), "Node 2, Elm St: most runs slow down there, 3 of 3 runs.");
    const DelayEvent first = Runs()[0].Found.Events[0];
    Street.Entries[1].CDStartDist = first.OnsetDistance;
    Street.Entries[1].CDEndDist = first.EndDistance;
    EXPECT_EQ(NodeOf(Runs()).Node, 1);
    Street.Entries[1].CDEndDist = 9000;
    EXPECT_EQ(NodeOf(Runs()).Node, 2) << "boundaries around several nodes speak for none";
    EXPECT_EQ(NodeOf({}).Node, 0);
}

TEST_F(BoundsProposal, EachRunGetsItsOwnOrAllTheSame) {
    const auto own = Preview(1, ProposalKind::Own);
    ASSERT_EQ(own.size(), 4U);
    EXPECT_EQ(own[2].Problem, "passed without delay: no boundaries");
    EXPECT_EQ(own[2].Then, Street.Entries[3]);
    EXPECT_THAT(own[3].Problem, testing::StartsWith("Missing Run File: Gone"));
    const auto common = Preview(1, ProposalKind::Common);
    EXPECT_THAT(common[2].Note, testing::StartsWith("passed without delay"));
    EXPECT_THAT(common[2].Warnings, testing::IsEmpty()) << "a delay of about 0 is no matter";
    EXPECT_NEAR(common[2].Then.ControlDelay, 0, 1) << "at ideal speed the common part adds nothing";
    for (const std::size_t run : {0U, 1U}) {
        EXPECT_LE(common[run].Then.CDStartDist, own[run].Then.CDStartDist);
        EXPECT_GE(common[run].Then.CDEndDist, own[run].Then.CDEndDist);
        EXPECT_NEAR(common[run].Then.ControlDelay, own[run].Then.ControlDelay, 1);
        EXPECT_EQ(common[run].Then.CDEndDist - common[run].Then.CDStartDist,
                  common[2].Then.CDEndDist - common[2].Then.CDStartDist);
    }
    for (const auto& preview : Preview(3, ProposalKind::Own)) EXPECT_NE(preview.Problem, "");
}

}  // namespace
}  // namespace vantor
