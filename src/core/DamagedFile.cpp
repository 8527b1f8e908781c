#include "core/DamagedFile.h"

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr const char* FileKey = "DamagedFile";
constexpr const char* RecordKey = "DamagedFileRecord";
constexpr const char* ExpectedKey = "DamagedFileExpected";

}  // namespace

void NoteDamagedFile(FileSystem& files, const FatalFormatFault& fault) {
    StoreUserChoices(files,
                     {{FileKey, fault.File}, {RecordKey, std::to_string(fault.Record)}, {ExpectedKey, fault.Expected}});
}

std::optional<FatalFormatFault> NotedDamagedFile(const UserChoices& choices) {
    const std::string file = ChoiceOf(choices, FileKey);
    if (file.empty()) return std::nullopt;
    return FatalFormatFault{file, Round32(Val(ChoiceOf(choices, RecordKey))), ChoiceOf(choices, ExpectedKey)};
}

UserChoices ForgetDamagedFile(FileSystem& files) {
    return StoreUserChoices(files, {{FileKey, ""}, {RecordKey, ""}, {ExpectedKey, ""}});
}

}  // namespace vantor
