#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/LogKind.h"
#include "core/ports/FileSystem.h"
#include "gpsobd/LogFormat.h"

namespace vantor {

/// What a column of a selection screen shows.
enum class LogColumn { FileName, StudyDate, StartTime, EndTime, Runs, FileType, Extension };

struct LogColumnHead {
    const char* Caption;
    LogColumn Shows;
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

/// A selection screen, where logs of one format are chosen.
struct LogScreen {
    LogKind Kind;
    const char* FormName;
    const char* Caption;
    const char* TreeName;
    const char* GridName;
    std::span<const LogColumnHead> Columns;
    bool IsFileTypeHidden;
    LogTimeLook Times;
    const char* FilesListed;  ///< "laptop GPS logs (.gdf, .gd2)"
    const LogDevice* Device;  ///< of the handheld kinds; otherwise null
};
const LogScreen& ScreenOf(LogKind kind);

/// A review screen.
struct ReviewScreen {
    const char* FormName;
    const char* Caption;
    const char* GridName;
    const char* ExportTip;
};
/// By the halves that its points have.
const ReviewScreen& ReviewScreenOf(bool hasGps, bool hasObd);

/// The names of the files of a format in a folder, in name order. Error 76 when there is no such folder.
std::vector<std::string> LogFilesIn(const FileSystem& files, const std::string& folder, const LogFormat& format);

/// Empty for no valid date.
std::string TimeText(LogTimeLook look, Date time, bool isOverDays);

}  // namespace vantor
