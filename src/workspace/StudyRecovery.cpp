#include "workspace/StudyRecovery.h"

#include <optional>

#include "core/Paths.h"
#include "core/StudyCompanion.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "workspace/StudyGroups.h"

namespace vantor {
namespace {

constexpr const char* NewStudyName = "New study";
/// Changes of a running program are kept anew every minute, whether there are further ones or not.
constexpr double MinuteDays = 1.0 / (24 * 60);
constexpr double RecentDays = 2 * MinuteDays;

std::string FreePath(const FileSystem& files, const std::string& folder, const std::string& studyName) {
    for (int number = 1;; ++number) {
        const std::string path = folder + studyName + "." + std::to_string(number) + RecoveryExtension;
        if (!files.Find(path)) return path;
    }
}

}  // namespace

void StudyRecovery::Keep() {
    if (context_.Work.IsBusy()) return;
    if (!context_.Work.Finish()) kept_.clear();
    if (context_.State.StudyUnchanged) return Settle();
    try {
        std::vector<std::byte> study = EncodeWholeStudy(context_.State.CurrentStudy);
        if (!IsKept(study)) BeginToKeep(std::move(study));
    } catch (const RunTimeError&) {
        // It is tried again soon.
    }
}

bool StudyRecovery::KeepNow() {
    context_.Work.Finish();
    kept_.clear();
    Keep();
    return context_.Work.Finish() && (context_.State.StudyUnchanged || !kept_.empty());
}

bool StudyRecovery::IsKept(const std::vector<std::byte>& study) const {
    return study == kept_ && context_.Time.Now().Days - keptAt_.Days < MinuteDays &&
           IsSameFolder(FolderOf(path_), FolderForKeeping()) && FileExists(context_.Files, path_);
}

void StudyRecovery::BeginToKeep(std::vector<std::byte> study) {
    const std::string folder = FolderForKeeping();
    const std::string name = studyName_.empty() ? NewStudyName : studyName_;
    const bool staysThere = !path_.empty() && IsSameFolder(FolderOf(path_), folder);
    const std::string old = staysThere ? std::string() : path_;
    if (!staysThere) path_ = FreePath(context_.Files, folder, name);
    kept_ = study;
    keptAt_ = context_.Time.Now();
    context_.Work.Begin([path = path_, old, study = std::move(study)](FileSystem& files, const Progress&) {
        WriteFile(files, path, study, AsItStands(files, path));
        if (!old.empty() && FileExists(files, old)) files.Delete(old);
    });
}

void StudyRecovery::Settle() {
    Discard();
    const ApplicationState& state = context_.State;
    const bool isNew = Trim(state.CurrentStudy.Record.StudyName).empty();
    studyName_ = isNew ? std::string() : state.Paths.LastStudyName;
}

void StudyRecovery::Discard() {
    if (path_.empty()) return;
    // What is being written would come back.
    context_.Work.Finish();
    Remove(path_);
    path_.clear();
    kept_.clear();
}

bool StudyRecovery::OfferAll() {
    const WorkingPaths& paths = context_.State.Paths;
    const std::string current = StudyGroupFolder(context_.State);
    std::vector<std::string> folders = {current};
    for (const std::string& group : ListStudyGroups(context_.Files, paths.StudyGroupRootPath))
        if (!IsSameFolder(group, current)) folders.push_back(group);
    folders.push_back(AsFolder(paths.TempRunsPath));
    for (const std::string& folder : folders)
        for (const Kept& kept : KeptIn(folder))
            if (Offer(kept)) return true;
    return false;
}

void StudyRecovery::OfferForOpened() {
    Settle();
    for (const Kept& kept : KeptIn(StudyGroupFolder(context_.State)))
        if (EqualIgnoringCase(kept.StudyName, studyName_) && Offer(kept)) return;
}

/// A study that was never saved may belong to a Study Group that was never made.
std::string StudyRecovery::FolderForKeeping() const {
    const std::string group = StudyGroupFolder(context_.State);
    return FolderExists(context_.Files, group) ? group : AsFolder(context_.State.Paths.TempRunsPath);
}

std::vector<StudyRecovery::Kept> StudyRecovery::KeptIn(const std::string& folder) const {
    std::vector<Kept> found;
    try {
        for (const FileInfo& info : FilesWithExtension(context_.Files, folder, RecoveryExtension)) {
            const std::string path = folder + info.Name;
            if (auto study = DecodeWholeStudy(ReadWholeFile(context_.Files, path)))
                found.push_back({path, BaseName(BaseName(info.Name)), info.Modified, std::move(*study)});
        }
    } catch (const RunTimeError&) {
        // What cannot be read now is offered another time.
    }
    return found;
}

bool StudyRecovery::Offer(const Kept& kept) {
    const auto answer = context_.Messages.AskToSave(Question(kept));
    if (answer == MessageAnswer::No) Remove(kept.Path);
    if (answer != MessageAnswer::Yes) return false;
    Restore(kept);
    return true;
}

std::string StudyRecovery::Question(const Kept& kept) const {
    const double age = context_.Time.Now().Days - kept.At.Days;
    const bool isRecent = age < RecentDays;
    return "Study \"" + kept.StudyName + "\" in Study Group: " + LastComponent(FolderOf(kept.Path)) +
           "\nwas not closed properly" + (isRecent ? ", or it is still open in another window" : "") +
           ". Its changes were kept on " + ShortDate(kept.At) + " at " + ShortTime(kept.At) +
           ".\n\nDo you want to restore the changes?\nNo deletes them, Cancel leaves them for another time.";
}

void StudyRecovery::Restore(const Kept& kept) {
    ApplicationState& state = context_.State;
    const std::string folder = FolderOf(kept.Path);
    const bool hasFile = FileExists(context_.Files, folder + kept.StudyName + StudyExtension);
    if (!IsSameFolder(folder, state.Paths.TempRunsPath)) state.Paths.LastStudyGroupPath = folder;
    if (hasFile) state.Paths.LastStudyName = kept.StudyName;
    state.CurrentStudy = kept.Changed;
    state.StudyUnchanged = false;
    state.StudyFieldsEdited = true;
    studyName_ = hasFile ? kept.StudyName : std::string();
    // Under a number of this program's own, for the other program may be running still.
    if (KeepNow()) Remove(kept.Path);
}

void StudyRecovery::Remove(const std::string& path) {
    try {
        if (FileExists(context_.Files, path)) context_.Files.Delete(path);
    } catch (const RunTimeError&) {
        // It is offered again, which is the lesser evil.
    }
}

}  // namespace vantor
