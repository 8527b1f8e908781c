#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/Progress.h"
#include "core/RunRecords.h"
#include "core/ports/ApplicationEnd.h"
#include "core/ports/FileSystem.h"

namespace vantor {

inline constexpr const char* CounterFileExtension = ".tdc";
/// The record start that ends a counter file.
inline constexpr std::string_view CounterEndMark = "::::::::::::::::::::";

/// One study of a counter file: what its first record tells, and the number of its runs.
struct CounterStudy {
    std::string Study;     ///< the study number as the counter wrote it, "001"
    std::string SiteCode;  ///< without trailing blanks
    std::string Date;      ///< "MM/DD/YY"
    std::string Time;      ///< "HH:MM"
    int Runs = 0;

    bool operator==(const CounterStudy&) const = default;
};

/// The studies of a counter file in file order: a "T" record whose study number differs from the one of the record
/// before it begins a study. A record that begins with neither "T" nor ":" ends the application. A file without its end
/// mark is error 62; errors name the file and the record.
std::vector<CounterStudy> CounterStudies(const FileSystem& files, const std::string& path, ApplicationEnd& end);

class DelimitedReader;
/// How the reading of one record ended.
enum class CounterRecord { Whole, EndMark, NoRecord };
/// Reads one record of a counter file into `scratch`, as a run. A record that begins with neither "T" nor ":" is none,
/// and its first field goes into `start`. The errors are those of ConvertCounterFile.
CounterRecord ReadCounterRecord(DelimitedReader& fields, RunRecord& scratch, std::string& start);

/// Makes a run file in `toFolder` of every record of a counter file and returns the runs' names in order. No run file
/// is replaced: a name that exists gets the next number. All run files appear together (WriteBatch::Commit); when one
/// cannot be written, or the conversion is stopped (the list is empty then), none does. A fault in the file (error 62
/// without the end mark, 13 for an impossible date or time, 6 for a number too large or more than 32767 words) keeps
/// the runs before the faulty record and names that record. `currentRun` is the run worked on last; memory does not
/// depend on the file's length.
std::vector<std::string> ConvertCounterFile(FileSystem& files, const std::string& path, const std::string& toFolder,
                                            RunRecord& currentRun, const Progress& progress = {});

}  // namespace vantor
