#pragma once

#include <gtest/gtest.h>

#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "plots/Profiles.h"

namespace vantor {

inline const std::string Group = "/start/Study Groups/Main/";

class ProgramScene : public testing::Test, protected TestProgram {};

/// A program whose current run is run "A" of the study. Scene is a ProgramScene or a FormScene.
template <class Scene>
class RunScene : public Scene {
protected:
    using Scene::Files, Scene::Messages, Scene::State;

    explicit RunScene(RunRecord run) {
        Files.CreateFolder(Group);
        State.Paths.LastStudyGroupPath = Group;
        AppendRun(State.CurrentStudy, "A");
        EntryBefore = Entry();
        State.StudyUnchanged = true;
        Use(std::move(run));
    }
    void Use(RunRecord run) {
        State.CurrentRun = std::move(run);
        State.CurrentRunStamp.reset();
        PutRunFile(Files, State.CurrentRun, Group, "A");
        Before = State.CurrentRun;
        FileBefore = Files.Bytes(Group + "A.rd2");
    }
    void SetBoundaries(std::int32_t start, std::int32_t end) {
        Entry().CDStartDist = start;
        Entry().CDEndDist = end;
        EntryBefore = Entry();
    }
    StudyRunEntry& Entry() { return State.CurrentStudy.Entries[1]; }
    RunRecord OnDisk(const std::string& name) { return ReadRunFile(Files, Messages, Group, name).value(); }
    /// Presses a button of the screen, which asks or tells that then.
    void PressTold(const char* button, const std::string& text, MessageAnswer answer = MessageAnswer::Ok) {
        Messages.Expect(text, answer);
        this->Press(button);
    }
    /// Whether the screen closes when it is to be closed and its question gets that answer.
    bool Leaves(const std::string& question, MessageAnswer answer) {
        Messages.Expect(question, answer);
        this->Window->close();
        return this->Window->isHidden();
    }
    /// The run's file as it was before the last change that keeps a copy.
    auto Backup() { return Files.Bytes(Group + "A.rd2.bak"); }
    /// Neither the run nor its file nor its entry is another than it was.
    void ExpectNothingStored() {
        EXPECT_EQ(State.CurrentRun, Before);
        EXPECT_EQ(Entry(), EntryBefore);
        EXPECT_EQ(Files.Bytes(Group + "A.rd2"), FileBefore);
        EXPECT_TRUE(State.StudyUnchanged);
    }

    RunRecord Before;
    StudyRunEntry EntryBefore;
    std::optional<std::vector<std::byte>> FileBefore;
};

}  // namespace vantor
