#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/RunFile.h"
#include "fakes/FakePorts.h"

namespace vantor {

/// Answers every question with the button that goes on with the work and keeps what was told.
struct AgreeingMessageBoxes : MessageBoxes {
    std::vector<std::string> Problems;
    MessageAnswer Ask(const Prompt& prompt) override {
        if (prompt.Buttons == MessageButtons::YesNo || prompt.Buttons == MessageButtons::YesNoCancel)
            return MessageAnswer::Yes;
        if (prompt.Icon == MessageIcon::Warning || prompt.Icon == MessageIcon::Critical)
            Problems.push_back(prompt.Text);
        return prompt.Buttons == MessageButtons::RetryCancel ? MessageAnswer::Cancel : MessageAnswer::Ok;
    }
};

/// A program with two runs in the Study Group "Main", where the study "AM" has them, and two in the temporary folder.
struct FaultScene : TestProgram {
    const std::string Group = "/start/Study Groups/Main/";
    const std::string Temp = "/start/Temp/";
    AgreeingMessageBoxes Told;
    AppContext Program{State,  Files,  Told,      OtherScreens, DesktopServices, Time,          End,  Memory,
                       Serial, Device, Databases, Sheets,       Documents,       OtherPrograms, Work, Tiles};
    /// What an operation works on besides the state of the program; it lives until its checks are done.
    std::shared_ptr<void> Object;

    FaultScene();
    template <class Type>
    Type& As() {
        return *static_cast<Type*>(Object.get());
    }
    RunRecord StoredRun(const std::string& folder, const std::string& name);
};

/// One thing the program stores.
struct Operation {
    std::string Name;
    /// Makes the scene and carries the operation out. Run-time errors may leave it.
    std::function<void(FaultScene&)> Prepare;
    std::function<void(FaultScene&)> Run;
    /// Expects that what the program holds and shows is what lies on the disk, after a failure as after a success.
    std::function<void(FaultScene&)> Agrees;
    bool Deletes = false;      ///< files may go without being kept under another name
    bool IsSilent = false;     ///< a failure is not told on purpose
    std::string PartsIn = {};  ///< files of this extension hold what came before the failure
};

/// Each run of the study is on the disk.
void ExpectEntriesAgree(FaultScene& scene);
/// The study of the state is the one on the disk, or it is marked as changed.
void ExpectStudyAgrees(FaultScene& scene);
/// The run of the state is the one on the disk.
void ExpectRunAgrees(FaultScene& scene);

/// Lets each change of the disk that the operation makes fail in turn, for each of the usual reasons: no space, no
/// permission, gone. Expects after each failure: every file is whole, the old or the new one; none is gone but under
/// its new name; no new file is cut short; the user was told; what the program holds agrees with the disk.
class FaultTest : public testing::TestWithParam<Operation> {};
inline std::string NameOfOperation(const testing::TestParamInfo<Operation>& info) { return info.param.Name; }

}  // namespace vantor
