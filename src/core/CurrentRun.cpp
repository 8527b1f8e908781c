#include "core/CurrentRun.h"

#include "core/Paths.h"
#include "core/StudyFile.h"

namespace vantor {

RunReading ReadCurrentRun(ApplicationState& state, const FileSystem& files, const std::string& name) {
    const std::string folder = StudyGroupFolder(state);
    // The stamp first: what another program writes in between is not written over then.
    const auto stamp = IsSafeName(name) ? AsItStands(files, folder + name + RunExtension).File : std::nullopt;
    RunReading reading = ReadRun(files, folder, name, RunPart::Whole);
    if (!reading) return reading;
    state.CurrentRun = std::move(reading.Run);
    state.CurrentRunStamp = stamp;
    return reading;
}

}  // namespace vantor
