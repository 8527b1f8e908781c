#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/RunRecords.h"
#include "core/ports/FileSystem.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

// In all of these `folder` ends in a separator and `name` has no extension. A name that would leave its folder is
// error 75 before any file is touched.

/// "Missing Run File: NB-001".
std::string MissingRunText(const std::string& name);
/// Shows the message that a run's file is missing.
void TellMissingRun(MessageBoxes& messages, const std::string& name);

/// What came of reading a run's file.
enum class RunOutcome {
    Run,
    Missing,     ///< no file has its name
    Unreadable,  ///< the system refuses it, or what has its name is no file
    Damaged,     ///< shorter than its header, or with a sample count that no run has
};

struct RunReading {
    RunOutcome Outcome = RunOutcome::Missing;
    /// Why there is no run: the reason, then the file and the remedy where they are known. Nothing for a run.
    std::optional<RunTimeError> Fault;
    RunRecord Run;
    std::int32_t SamplesInFile = 0;  ///< whole ones; a run with fewer than it tells of is cut, the others read as zero

    explicit operator bool() const { return Outcome == RunOutcome::Run; }
    bool IsCut() const { return SamplesInFile < Run.Header.SampleCount; }
};

/// "cut (120 of 300 samples)".
std::string CutText(std::int32_t samplesInFile, std::int32_t sampleCount);

/// Values: what lists need of a run, its header without labels and sections and the samples' values without the event
/// record of each.
enum class RunPart { Header, Values, Whole };

/// Reads a run file (".rd2"), whole or a part of it; the file's name is the RunName. The one way to read a
/// run: every list, figure and editor has the same outcome. No error of the file is thrown.
RunReading ReadRun(const FileSystem& files, const std::string& path, RunPart part = RunPart::Whole);
/// Of a name that would leave the folder: Unreadable.
RunReading ReadRun(const FileSystem& files, const std::string& folder, const std::string& name, RunPart part);

/// Reads folder + name + ".rd2". A missing file is told to the user and gives nothing. Missing samples at the end read
/// as zero. A file that is unreadable or damaged is the fault of ReadRun (6 for more than 32767 samples, 9 for fewer
/// than none, 62 without a whole header).
[[nodiscard]] std::optional<RunRecord> ReadRunFile(const FileSystem& files, MessageBoxes& messages,
                                                   const std::string& folder, const std::string& name);

/// A backup of a run's file.
struct RunBackup {
    std::string Path;
    Date Kept;         ///< when it became one
    RunHeader Header;  ///< with the name of the run
};
/// The backups of folder + name + ".rd2", the newest first; files that cannot be runs are left out.
std::vector<RunBackup> RunBackupsOf(const FileSystem& files, const std::string& folder, const std::string& name);
/// The run of a backup. The errors are those of ReadRunFile, 53 when the backup is missing.
RunRecord ReadRunBackup(const FileSystem& files, const RunBackup& backup);

/// Sets FileVersion and RunName and writes the run to folder + name + ".rd2". A longer file of that name keeps its
/// old bytes behind the new samples. Error 9 when the lists are shorter than SampleCount.
void WriteRunFile(FileSystem& files, RunRecord& run, const std::string& folder, const std::string& name,
                  const Expected& expected);

/// Sets FileVersion and RunName and gives the bytes of the run's file; to be added to a batch by AddRunBytes. Error 9
/// as of WriteRunFile.
std::vector<std::byte> RunBytes(RunRecord& run, const std::string& name);
void AddRunBytes(WriteBatch& batch, std::span<const std::byte> bytes, const std::string& folder,
                 const std::string& name, const Expected& expected);

/// Writes the run over its file folder + name + ".rd2", which stays as it was as a numbered backup beside it; both or
/// none. Returns the backup's name. Error 53 when there is no such file.
std::string ReplaceRunFile(FileSystem& files, RunRecord& run, const std::string& folder, const std::string& name,
                           const Expected& expected);

/// As WriteRunFile, the file appearing with the others of the batch.
void AddRunFile(WriteBatch& batch, RunRecord& run, const std::string& folder, const std::string& name,
                const Expected& expected);

/// Reads folder + name + ".rdf", writes the run as ".rd2" and renames the old file to ".rdx". A missing file is told to
/// the user and gives nothing. Error 58 before anything is written when the ".rdx" exists. A ".rd2" that is replaced is
/// kept as a numbered backup, which is told to the user. After an error all files are as they were; where the disk
/// refuses that too, ".rdf" and ".rd2" lie side by side, both whole.
std::optional<RunRecord> ConvertVer1RunFile(FileSystem& files, MessageBoxes& messages, const std::string& folder,
                                            const std::string& name);

/// A version 1 run as it stands in its file, with the stored FileVersion.
RunRecord ReadVer1Run(const FileSystem& files, const std::string& folder, const std::string& name);

/// Deletes folder + name + ".rd2" if it exists.
void DeleteRunFile(FileSystem& files, const std::string& folder, const std::string& name);

}  // namespace vantor
