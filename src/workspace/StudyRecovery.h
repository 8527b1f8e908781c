#pragma once

#include <string>
#include <vector>

#include "core/AppContext.h"

namespace vantor {

/// Extension of the files that keep unsaved changes: the study's name + "." + a number + this, laid out as a study
/// file. Each running program has a number of its own.
inline constexpr const char* RecoveryExtension = ".ldr";

/// Keeps the unsaved changes of the current study in a file of its Study Group, so that they outlast a crash, and
/// offers those that an earlier program left. Keeping and removing never fail aloud: they must not disturb the work,
/// in a folder that cannot be written either. The file is written beside the window, which does not wait for the disk.
class StudyRecovery {
public:
    explicit StudyRecovery(AppContext& context) : context_(context) {}

    /// To be called every second or two: begins to keep the changes that are not saved and not kept yet, unless the
    /// ones before are still being written.
    void Keep();
    /// Keeps the changes and returns when they are on the disk; for the end of the program. False when they could not
    /// be kept.
    bool KeepNow();
    /// To be called when the current study was begun, opened or saved: removes what was kept of it before.
    void Settle();
    /// To be called when the user leaves the study without its changes.
    void Discard();

    /// Asks about all changes left in the Study Groups and in the temporary runs folder until one is restored. A
    /// restored study is the current one, changed; true then. A file that is damaged is passed over and stays.
    bool OfferAll();
    /// Asks about the changes left of the study that was opened just now; restored they take its place.
    void OfferForOpened();

private:
    struct Kept {
        std::string Path;
        std::string StudyName;  ///< of the study's file; of a study without one as NewStudyName
        Date At;
        Study Changed;
    };

    std::string FolderForKeeping() const;
    /// Whether what is kept is what the study is now, and was kept not long ago.
    bool IsKept(const std::vector<std::byte>& study) const;
    void BeginToKeep(std::vector<std::byte> study);
    std::vector<Kept> KeptIn(const std::string& folder) const;
    /// True when the changes were restored.
    bool Offer(const Kept& kept);
    std::string Question(const Kept& kept) const;
    void Restore(const Kept& kept);
    void Remove(const std::string& path);

    AppContext& context_;
    std::string studyName_;  ///< of the current study's file; empty when it has none
    std::string path_;       ///< of what is kept; empty when nothing is
    std::vector<std::byte> kept_;
    Date keptAt_;
};

}  // namespace vantor
