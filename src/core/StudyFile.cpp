#include "core/StudyFile.h"

#include "core/Backup.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/StudyBytes.h"
#include "core/StudyCompanion.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// Far above what the entries of a study can need.
constexpr std::uint64_t LongestCompanion = std::uint64_t{64} << 20;

struct StudyBytes {
    StudyRecord Header;
    std::vector<std::byte> File;
};

std::optional<StudyBytes> ReadStudyBytes(const FileSystem& files, const std::string& path) {
    const auto info = files.Find(path);
    if (!info) return std::nullopt;
    if (info->IsFolder)
        throw RunTimeError(ErrorNumber::PathFileAccessError, path + "\nThis is a folder, no study file.");
    constexpr std::size_t LongestStudy = StudyRecordSize + 32767 * StudyRunEntrySize;
    StudyBytes study;
    study.File = ReadFirstBytes(files, path, LongestStudy);
    study.Header = DecodeRecord<StudyRecord>(StudyRecordFields, study.File);
    if (study.Header.RunCount < 0)
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange, path + "\nThe file tells of " +
                                                                 std::to_string(study.Header.RunCount) +
                                                                 " runs. It is damaged or no study file.");
    return study;
}

void MarkUnchanged(ApplicationState& state) {
    state.StudyLoaded = true;
    state.StudyUnchanged = true;
    state.StudyFieldsEdited = false;
}

}  // namespace

std::string StudyGroupFolder(const ApplicationState& state) { return AsFolder(state.Paths.LastStudyGroupPath); }

void NewStudy(ApplicationState& state, const Clock& clock) {
    state.CurrentStudy = Study{};
    StudyRecord& record = state.CurrentStudy.Record;
    record.StudyDate = clock.Now();
    record.CritLane = -1;
    record.Direction = -1;
    MarkUnchanged(state);
    if (state.Paths.LastStudyGroupPath.empty()) {
        state.Paths.LastStudyGroupPath = Trim(state.Settings.StudyGroupRootPath);
        state.Paths.LastStudyName = Trim(record.StudyName);
    }
}

std::optional<Study> LoadStudy(const FileSystem& files, const std::string& folder, const std::string& name) {
    const auto bytes = ReadStudyBytes(files, folder + name + StudyExtension);
    if (!bytes) return std::nullopt;
    Study study = DecodeStudy(bytes->File);
    const std::string companion = folder + name + CompanionExtension;
    if (FileExists(files, companion))
        study.HasDamagedCompanion = !DecodeCompanion(ReadFirstBytes(files, companion, LongestCompanion), study);
    return study;
}

bool ReadStudyFile(ApplicationState& state, const FileSystem& files, Desktop& desktop, const Clock& clock,
                   const std::string& folder, const std::string& name) {
    auto study = LoadStudy(files, folder, name);
    if (!study) {
        desktop.Beep();
        NewStudy(state, clock);
        return false;
    }
    state.CurrentStudy = std::move(*study);
    MarkUnchanged(state);
    return true;
}

bool ReadStudyRunNames(const FileSystem& files, Desktop& desktop, const std::string& folder, const std::string& name,
                       StudyRecord& header, OneBased<std::string>& names) {
    const auto bytes = ReadStudyBytes(files, folder + name + StudyExtension);
    names.Clear();
    if (!bytes) {
        desktop.Beep();
        header = {};
        return false;
    }
    header = bytes->Header;
    for (int i = 1; i <= header.RunCount; ++i)
        names.Append(std::string(Trim(Utf8FromWindows1252(StoredRunName(bytes->File, i)))));
    return true;
}

void WriteStudyFile(FileSystem& files, Study& study, const std::string& folder, const std::string& name) {
    study.Record.StudyFileVersion = 1;
    const std::string companion = folder + name + CompanionExtension;
    const auto batch = files.BeginWrites();
    batch->Add(folder + name + StudyExtension, EncodeStudy(study), OldTail::Dropped);
    // One that is there tells of the study that stood here before.
    if (NeedsCompanion(study) || FileExists(files, companion)) {
        if (study.HasDamagedCompanion) AddBackup(*batch, files, companion);
        batch->Add(companion, EncodeCompanion(study), OldTail::Dropped);
    }
    batch->Commit();
    study.MissingEntries = 0;
    study.HasDamagedCompanion = false;
}

std::string CutShortText(const Study& study) {
    return std::to_string(study.Record.RunCount - study.MissingEntries) + " of " +
           std::to_string(study.Record.RunCount) + " entries are there: the study file was cut short.";
}

void AppendRun(Study& study, const std::string& runName) {
    study.Record.RunCount = Add16(study.Record.RunCount, 1);
    StudyRunEntry entry;
    entry.EntryRunName = FirstCharacters(runName, EntryNameWidth);
    study.RunNames.Append(entry.EntryRunName);
    study.Entries.Append(std::move(entry));
}

void RemoveRun(Study& study, int index) {
    if (index < 1) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    study.Entries.Remove(index);
    study.RunNames.Remove(index);
    --study.Record.RunCount;
}

int FindRun(const Study& study, std::string_view runName) {
    const std::string wanted = FoldCase(Trim(runName));
    for (int i = 1; i <= study.RunNames.LastIndex(); ++i)
        if (FoldCase(Trim(study.RunNames[i])) == wanted) return i;
    return 0;
}

std::string RunNameProblem(const ApplicationState& state, const FileSystem& files, const std::string& name) {
    std::string problem = NameProblem(name, RunNameWidth);
    if (!problem.empty()) return problem;
    const std::string folder = StudyGroupFolder(state);
    const std::string sorry = "The run keeps its name. A run \"" + name + "\" is already in ";
    if (FindRun(state.CurrentStudy, name) != 0) return sorry + "this study.";
    if (FileExists(files, folder + name + RunExtension) || FileExists(files, folder + name + Ver1RunExtension))
        return sorry + "Study Group " + LastComponent(folder) + ".";
    return {};
}

std::string RunFileName(const StudyRunEntry& entry) {
    return std::string(Trim(FirstCharacters(Trim(entry.EntryRunName), RunNameWidth)));
}

}  // namespace vantor
