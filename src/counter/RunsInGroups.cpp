#include "counter/RunsInGroups.h"

#include <set>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "counter/CounterFile.h"
#include "counter/DelimitedReader.h"

namespace vantor {

RunIdentity IdentityOf(const RunHeader& header) {
    return {header.RunDate.Days, header.RunTime.Days, header.CountNumber, header.RunNumber,
            std::string(TrimRight(header.SiteCode))};
}

RunsInGroups ListRunsInGroups(const FileSystem& files, const std::string& groupRoot, const Progress& progress) {
    RunsInGroups runs;
    try {
        const auto groups = files.List(groupRoot);
        for (std::size_t i = 0; i < groups.size(); ++i) {
            if (!groups[i].IsFolder || groups[i].IsHidden) continue;
            const std::string folder = AsFolder(AsFolder(groupRoot) + groups[i].Name);
            for (const FileInfo& info : FilesWithExtension(files, folder, RunExtension)) {
                if (!progress(i, groups.size())) return runs;
                if (const auto reading = ReadRun(files, folder, BaseName(info.Name), RunPart::Header))
                    runs.emplace(IdentityOf(reading.Run.Header), groups[i].Name);
            }
        }
    } catch (const RunTimeError&) {
        // A folder that cannot be listed now has none that could be told of.
    }
    return runs;
}

RunsFound FindRunsOf(const FileSystem& files, const std::string& counterFile, const RunsInGroups& runs,
                     const Progress& progress) {
    RunsFound found;
    std::set<std::string> groups;
    try {
        DelimitedReader fields(files.Open(counterFile));
        RunRecord scratch;
        std::string start;
        while (progress(fields.Position(), fields.Size()) &&
               ReadCounterRecord(fields, scratch, start) == CounterRecord::Whole) {
            ++found.All;
            const auto run = runs.find(IdentityOf(scratch.Header));
            if (run == runs.end()) continue;
            ++found.InGroups;
            groups.insert(run->second);
        }
    } catch (const RunTimeError&) {
        // The fault is told where the file is listed.
    }
    found.Groups.assign(groups.begin(), groups.end());
    return found;
}

}  // namespace vantor
