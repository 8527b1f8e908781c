#pragma once

#include <string>

#include "core/RunRecords.h"
#include "core/ports/FileSystem.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

// In all of these `folder` ends in a separator and `name` has no extension. A name that would leave its folder is
// error 75 before any file is touched.

/// Shows the message that a run's file is missing.
void TellMissingRun(MessageBoxes& messages, const std::string& name);

/// The header of folder + name + ".rd2" with `name` as its RunName; nothing when there is no such file.
std::optional<RunHeader> ReadRunHeader(const FileSystem& files, const std::string& folder, const std::string& name);

/// Reads folder + name + ".rd2", with its samples or, without them, both lists left as they are. A missing file is
/// told to the user and gives false, with `run` untouched. Missing bytes at the end read as zero. More than 32767
/// samples are error 6, fewer than none error 9; `run` is untouched then too.
bool ReadRunFile(const FileSystem& files, MessageBoxes& messages, RunRecord& run, const std::string& folder,
                 const std::string& name, bool withSamples);

/// Sets FileVersion and RunName and writes the run to folder + name + ".rd2". A longer file of that name keeps its
/// old bytes behind the new samples. Error 9 when the lists are shorter than SampleCount.
void WriteRunFile(FileSystem& files, RunRecord& run, const std::string& folder, const std::string& name);

/// Sets FileVersion and RunName and gives the bytes of the run's file; to be added to a batch by AddRunBytes. Error 9
/// as of WriteRunFile.
std::vector<std::byte> RunBytes(RunRecord& run, const std::string& name);
void AddRunBytes(WriteBatch& batch, std::span<const std::byte> bytes, const std::string& folder,
                 const std::string& name);
/// As WriteRunFile, the file appearing with the others of the batch.
void AddRunFile(WriteBatch& batch, RunRecord& run, const std::string& folder, const std::string& name);

/// Fills `run` from folder + name + ".rdf", writes it as ".rd2" and renames the old file to ".rdx". A missing file
/// is told to the user and gives false. Error 58 before anything is written when the ".rdx" exists. After an error all
/// files are as they were; where the disk refuses that too, ".rdf" and ".rd2" lie side by side, both whole.
bool ConvertVer1RunFile(FileSystem& files, MessageBoxes& messages, RunRecord& run, const std::string& folder,
                        const std::string& name);

/// A version 1 run as it stands in its file, with the stored FileVersion.
RunRecord ReadVer1Run(const FileSystem& files, const std::string& folder, const std::string& name);

/// Deletes folder + name + ".rd2" if it exists.
void DeleteRunFile(FileSystem& files, const std::string& folder, const std::string& name);

/// Adds a copy of the run's file as it stands, name + ".bak" beside it, so that a run whose samples are changed can be
/// had back; it replaces an older one. Error 53 when the file is missing.
void AddBackup(WriteBatch& batch, const FileSystem& files, const std::string& folder, const std::string& name);

}  // namespace vantor
