#include "core/modMain.h"

#include <array>

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr std::array<const char*, 17> EventLabels = {"",           "",        "Movement 1", "Movement 2", "Movement 3",
                                                     "",           "U-Turn",  "Right Turn", "Left Turn",  "Delay 4",
                                                     "Delay 3",    "Delay 2", "Delay 1",    "Peds",       "Stop Sign",
                                                     "Congestion", "Signal"};

struct GradeBand {
    std::int32_t Below;
    const char* Grade;
};
constexpr std::array<GradeBand, 5> GradeBands = {{{10, "A"}, {20, "B"}, {35, "C"}, {55, "D"}, {80, "E"}}};

}  // namespace

std::string EventCodeLabel(std::int16_t code) {
    return code >= 0 && static_cast<std::size_t>(code) < EventLabels.size()
               ? EventLabels[static_cast<std::size_t>(code)]
               : "";
}

std::string RunTypeText(std::int16_t runTypeFlag) { return runTypeFlag != 0 ? "Primary" : "Secondary"; }
std::string BeforeAfterText(std::int16_t beforeFlag) { return beforeFlag != 0 ? "Before" : "After"; }

std::string LOSGradeOf(std::int32_t delay) {
    for (const GradeBand& band : GradeBands)
        if (delay < band.Below) return band.Grade;
    return "F";
}

void SetRunLOSGrade(Study& study, std::int32_t delay, std::int16_t runIndex) {
    study.Entries[runIndex].LOSGrade = LOSGradeOf(delay);
}

void SplitPacked5(std::int32_t value, std::int32_t& middle, std::int16_t& high, std::int16_t& low) {
    if (value <= 100000) {
        middle = value;
        return;
    }
    high = To16(value / 100000);
    middle = (value - high * 100000) / 1000;
    low = To16(value - high * 100000 - middle * 1000);
}

void SplitPacked4(std::int32_t value, std::int16_t& whole, float& tenths) {
    whole = To16(value / 10000);
    tenths = static_cast<float>(value % 10000) / 10.0F;
}

void SplitPacked3(std::int32_t value, std::int16_t& high, std::int16_t& low) {
    high = To16(value / 1000);
    low = To16(value % 1000);
}

Date AddHours(std::int16_t hours, Date date) { return {date.Days + hours / 24.0}; }

bool FileExists(const FileSystem& files, const std::string& path) {
    const auto info = files.Find(path);
    return info && !info->IsFolder;
}

bool FolderExists(const FileSystem& files, const std::string& path) {
    const auto info = files.Find(path);
    return info && info->IsFolder;
}

std::string LongPathName(const FileSystem& files, const std::string& path) {
    const bool hasDrive = path.size() >= 2 && path[1] == ':';
    const std::string drive = hasDrive ? path.substr(0, 2) : "";
    std::string result = drive;
    const std::string separators{'/', PathSeparator};
    std::size_t start = drive.size();
    while (start < path.size()) {
        const std::size_t end = std::min(path.find_first_of(separators, start), path.size());
        if (end > start) {
            const auto info = files.Find(path.substr(0, end));
            if (!info) return {};
            result += PathSeparator + info->Name;
        }
        start = end + 1;
    }
    return result;
}

void ShowHelp(Desktop& desktop, const FileSystem& files, HelpTopic topic) {
    desktop.OpenHelp(files.ProgramFile("VANTOR.HLP"), static_cast<int>(topic));
}

}  // namespace vantor
