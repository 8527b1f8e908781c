#include "statistics/ComparedStudy.h"

#include <algorithm>
#include <utility>

#include "core/Counted.h"
#include "core/Paths.h"
#include "core/RunRecords.h"
#include "core/StudyFile.h"
#include "core/Text.h"

namespace vantor {
namespace {

constexpr std::size_t MostProblems = 5;

std::string WithoutDelays(const ComparedStudy& study) {
    if (study.IsGroup)
        return "There are no control delays: a Study Group alone has no boundaries. Make a study of its runs, set "
               "their "
               "boundaries, and compare that study.";
    return "There are no control delays: no run has both boundaries set. Set them in the speed profile.";
}

}  // namespace

std::optional<ComparedStudy> OpenStudy(const FileSystem& files, const std::string& folder, const std::string& name) {
    auto study = LoadStudy(files, folder, name);
    if (!study) return std::nullopt;
    return ComparedStudy{folder, name, std::move(*study), false};
}

ComparedStudy OpenStudyGroup(const FileSystem& files, const std::string& folder) {
    ComparedStudy group{folder, LastComponent(folder), {}, true};
    std::vector<std::string> names;
    for (const FileInfo& file : FilesWithExtension(files, folder, RunExtension)) names.push_back(BaseName(file.Name));
    std::ranges::sort(names);
    for (const std::string& name : names) AppendRun(group.Contents, name);
    return group;
}

Condition ConditionOf(const ComparedStudy& study, StudyRuns runs) {
    Condition condition;
    condition.Name = study.Name;
    const std::int16_t direction = study.Contents.Record.Direction;
    if (!study.IsGroup && direction >= 0 && direction < std::ssize(DirectionItems))
        condition.Direction = DirectionItems[static_cast<std::size_t>(direction)];
    if (study.Contents.MissingEntries != 0) condition.Remarks.push_back(CutShortText(study.Contents));
    std::vector<std::string> problems;
    for (const RunLeftOut& run : runs.LeftOut) problems.push_back(run.Problem);
    if (!problems.empty())
        condition.Remarks.push_back(Counted(problems.size(), "run") +
                                    " left out: " + FirstOf(problems, MostProblems, " "));
    if (std::ranges::none_of(runs.Runs, &MeasuredRun::IsCounted)) condition.Remarks.push_back(WithoutDelays(study));
    condition.Runs = std::move(runs.Runs);
    return condition;
}

}  // namespace vantor
