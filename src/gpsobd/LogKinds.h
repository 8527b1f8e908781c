#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/LogKind.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// What a column of a selection screen shows.
enum class LogColumn { FileName, StudyDate, StartTime, EndTime, Runs, FileType, Extension };

struct LogColumnHead {
    const char* Caption;
    LogColumn Shows;
};

/// Files that a selection screen lists, and what stands in their FileType column.
struct LogFileType {
    const char* Extension;
    const char* Mark;
};

/// How start and end times are shown.
enum class LogTimeLook {
    Minutes,         ///< "hh:mm"
    Seconds,         ///< "hh:mm:ss"
    DateAndSeconds,  ///< "MM/DD/YY hh:mm:ss"
    SecondsOfADay,   ///< as Seconds, of a log that goes over several days as DateAndSeconds
};

/// Where the program of a handheld keeps its log.
struct LogDevice {
    const char* Program;
    const char* File;
};

/// A selection screen: all that one kind of log makes different.
struct LogScreen {
    LogKind Kind;
    const char* FormName;
    const char* Caption;
    const char* TreeName;
    const char* GridName;
    std::span<const LogColumnHead> Columns;
    bool IsFileTypeHidden;
    std::span<const LogFileType> FileTypes;  ///< the first one stands where no file is chosen
    LogTimeLook Times;
    const char* FilesListed;  ///< "laptop GPS logs (.gdf, .gd2)"
    const LogDevice* Device;  ///< of the handheld kinds; otherwise null
};
const LogScreen& ScreenOf(LogKind kind);

/// The type of a file by its extension; the first one for a file that the screen does not list.
const LogFileType& FileTypeOf(const LogScreen& screen, const std::string& fileName);

/// The names of the files in a folder that a screen lists, in name order. Error 76 when there is no such folder.
std::vector<std::string> LogFilesIn(const FileSystem& files, const std::string& folder, const LogScreen& screen);

/// Empty for no valid date.
std::string TimeText(LogTimeLook look, Date time, bool isOverDays);

}  // namespace vantor
