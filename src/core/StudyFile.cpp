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

struct StudyBytes {
    StudyRecord Header;
    std::vector<std::byte> File;
};

std::optional<StudyBytes> ReadStudyBytes(const FileSystem& files, const std::string& path) {
    const auto info = files.Find(path);
    if (!info) return std::nullopt;
    if (info->IsFolder)
        throw RunTimeError(ErrorNumber::PathFileAccessError, path + "\nThis is a folder, no study file.");
    StudyBytes study;
    study.File = ReadWholeFile(files, path);
    study.Header = DecodeRecord<StudyRecord>(StudyRecordFields, study.File);
    if (study.Header.RunCount < 0)
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange, path + "\nThe file tells of " +
                                                                 std::to_string(study.Header.RunCount) +
                                                                 " runs. It is damaged or no study file.");
    return study;
}

void MarkUnchanged(ApplicationState& state) {
    state.StudyUnchanged = true;
    state.StudyFieldsEdited = false;
    state.Replaced = {};
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
    study.Stored = StoredStudy{folder + name + StudyExtension, StampOf(bytes->File), std::nullopt};
    const std::string companion = folder + name + CompanionExtension;
    if (FileExists(files, companion)) {
        const std::vector<std::byte> beside = ReadWholeFile(files, companion);
        study.Stored->Companion = StampOf(beside);
        study.HasDamagedCompanion = !DecodeCompanion(beside, study);
    }
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

std::optional<StudyRunNames> ReadStudyRunNames(const FileSystem& files, const std::string& folder,
                                               const std::string& name) {
    auto bytes = ReadStudyBytes(files, folder + name + StudyExtension);
    if (!bytes) return std::nullopt;
    StudyRunNames study{std::move(bytes->Header), {}};
    for (int i = 1; i <= study.Header.RunCount; ++i)
        study.RunNames.Append(std::string(Trim(Utf8FromWindows1252(StoredRunName(bytes->File, i)))));
    return study;
}

StudyTarget TargetOfStudy(const FileSystem& files, const Study& study, const std::string& folder,
                          const std::string& name) {
    const std::string path = folder + name + StudyExtension;
    const std::string companion = folder + name + CompanionExtension;
    if (!files.Find(path)) return StudyTarget::New;
    if (!study.Stored || !EqualIgnoringCase(study.Stored->Path, path)) return StudyTarget::Other;
    const bool isOwn = AsItStands(files, path).File == study.Stored->Stamp &&
                       AsItStands(files, companion).File == study.Stored->Companion;
    return isOwn ? StudyTarget::Own : StudyTarget::Changed;
}

ReplacedStudy WriteStudyFile(FileSystem& files, Study& study, const std::string& folder, const std::string& name,
                             Replacing replacing) {
    const std::string path = folder + name + StudyExtension;
    const std::string companion = folder + name + CompanionExtension;
    const auto lock = files.Lock(folder);
    const auto batch = files.BeginWrites();
    const bool isOwn = study.Stored && EqualIgnoringCase(study.Stored->Path, path);
    Expected expected{isOwn ? std::optional(study.Stored->Stamp) : std::nullopt};
    Expected expectedBeside{isOwn ? study.Stored->Companion : std::nullopt};
    // What the file holds is more than was read of it, or less.
    const bool isHurt = study.MissingEntries != 0;
    ReplacedStudy replaced;
    const bool keepsOld = replacing == Replacing::AnyFile && files.Find(path) &&
                          TargetOfStudy(files, study, folder, name) != StudyTarget::Own;
    if (keepsOld || isHurt) {
        const KeptFile kept = AddBackup(*batch, files, path);
        replaced.Path = kept.Backup;
        expected = kept.Original;
    }
    // One that lies beside no study tells of nothing.
    if (keepsOld || (!isOwn && !files.Find(path))) expectedBeside = AsItStands(files, companion);
    if ((keepsOld || study.HasDamagedCompanion) && files.Find(companion)) {
        const KeptFile kept = AddBackup(*batch, files, companion);
        replaced.Companion = kept.Backup;
        if (keepsOld) expectedBeside = kept.Original;
    }

    study.Record.StudyFileVersion = 1;
    const std::vector<std::byte> bytes = EncodeStudy(study);
    const std::vector<std::byte> bytesBeside = EncodeCompanion(study);
    const bool hasCompanion = NeedsCompanion(study) || expectedBeside.File;
    batch->Add(path, bytes, expected);
    if (hasCompanion) batch->Add(companion, bytesBeside, expectedBeside);
    batch->Commit();
    study.MissingEntries = 0;
    study.HasDamagedCompanion = false;
    study.Stored = StoredStudy{path, StampOf(bytes), hasCompanion ? std::optional(StampOf(bytesBeside)) : std::nullopt};
    return replaced;
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

void InsertRun(Study& study, int index, const StudyRunEntry& entry) {
    if (index < 1 || index > study.Record.RunCount + 1) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    study.Record.RunCount = Add16(study.Record.RunCount, 1);
    study.RunNames.Insert(index, entry.EntryRunName);
    study.Entries.Insert(index, entry);
}

void RemoveRun(Study& study, int index) {
    if (index < 1) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    study.Entries.Remove(index);
    study.RunNames.Remove(index);
    --study.Record.RunCount;
}

int FindRun(const Study& study, std::string_view runName) {
    const std::string wanted = RunKey(runName);
    for (int i = 1; i <= study.RunNames.LastIndex(); ++i)
        if (RunKey(study.RunNames[i]) == wanted) return i;
    return 0;
}

std::string RunKey(std::string_view runName) { return FoldCase(Trim(runName)); }

std::unordered_map<std::string, int> RunsByKey(const Study& study) {
    std::unordered_map<std::string, int> runs;
    for (int i = 1; i <= study.RunNames.LastIndex(); ++i) runs.try_emplace(RunKey(study.RunNames[i]), i);
    return runs;
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
