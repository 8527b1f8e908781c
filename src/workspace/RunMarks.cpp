#include "workspace/RunMarks.h"

#include <algorithm>

#include "core/Paths.h"
#include "core/RunFile.h"

namespace vantor {

std::vector<RunMark> WriteRunMarks(FileSystem& files, const std::string& folder, const std::vector<RunMark>& marks,
                                   const Progress& progress) {
    std::vector<RunMark> replaced;
    const auto lock = files.Lock(folder);
    const auto batch = files.BeginWrites();
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (!progress.PartOf(0, 2)(i, marks.size())) return {};
        RunReading reading = ReadRun(files, folder, marks[i].RunName, RunPart::Header);
        if (!reading) throw RunTimeError(*reading.Fault);
        if (reading.Run.Header.Before == marks[i].Before && reading.Run.Header.After == marks[i].After) continue;
        const std::string path = folder + marks[i].RunName + RunExtension;
        std::vector<std::byte> bytes = ReadWholeFile(files, path);
        const Expected asRead = Expected::Unchanged(StampOf(bytes));
        auto header = DecodeRecord<RunHeader>(RunHeaderFields, bytes);
        replaced.push_back({marks[i].RunName, header.Before, header.After});
        header.Before = marks[i].Before;
        header.After = marks[i].After;
        std::ranges::copy(EncodeRecord(header, RunHeaderFields), bytes.begin());
        batch->Add(path, bytes, asRead);
    }
    if (replaced.empty() || !batch->Commit(progress.PartOf(1, 2))) return {};
    return replaced;
}

}  // namespace vantor
