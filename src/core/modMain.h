#pragma once

#include <cstdint>
#include <string>

#include "core/Date.h"
#include "core/HelpTopics.h"
#include "core/StudyRecords.h"
#include "core/ports/Desktop.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The label of a key number; empty for 1, 5 and any number outside 1 to 16. Stored runs carry these numbers: the
/// delay keys count downwards on purpose.
std::string EventCodeLabel(std::int16_t code);

/// "Primary" for a set run type flag, else "Secondary".
std::string RunTypeText(std::int16_t runTypeFlag);
/// "Before" for a set before/after flag, else "After".
std::string BeforeAfterText(std::int16_t beforeFlag);

/// The level of service of a delay in seconds, "A" to "F" (Highway Capacity Manual, signalized intersections).
/// A negative delay grades "A".
std::string LOSGradeOf(std::int32_t delay);
/// Grades entry `runIndex` of the study, 0 (the study's average) to RunCount; any other index is error 9.
void SetRunLOSGrade(Study& study, std::int32_t delay, std::int16_t runIndex);

/// Packed decimal numbers of the counter. A value up to 100000 goes whole into `middle`, `high` and `low` stay as
/// they are; error 6 when a part does not fit.
void SplitPacked5(std::int32_t value, std::int32_t& middle, std::int16_t& high, std::int16_t& low);
void SplitPacked4(std::int32_t value, std::int16_t& whole, float& tenths);
void SplitPacked3(std::int32_t value, std::int16_t& high, std::int16_t& low);

Date AddHours(std::int16_t hours, Date date);

bool FileExists(const FileSystem& files, const std::string& path);
bool FolderExists(const FileSystem& files, const std::string& path);

/// The path with each component as the file system lists it (its stored letter case), without a final separator;
/// empty when a component does not exist. The drive, or the root, is taken over unchanged.
std::string LongPathName(const FileSystem& files, const std::string& path);

/// Opens the help file "VANTOR.HLP" of the program at a topic.
void ShowHelp(Desktop& desktop, const FileSystem& files, HelpTopic topic = HelpTopic::Contents);

}  // namespace vantor
