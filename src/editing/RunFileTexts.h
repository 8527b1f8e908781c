#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/IndexedArray.h"
#include "core/RunRecords.h"

namespace vantor {

/// Keys and nodes whose texts are shown.
inline constexpr int ShownKeys = 16;
inline constexpr int ShownNodes = 16;
/// Characters that a run keeps of a label or a name, and of its notes.
inline constexpr std::size_t RunTextWidth = 32;
inline constexpr std::size_t RunNotesWidth = 128;

/// The values of a run's header as plain texts, in stored units.
struct RunFileTexts {
    std::string RunName;
    std::string RunDate;  ///< "mm/dd/yy"
    std::string RunTime;  ///< "hh:mm"
    std::string CountNumber;
    std::string RunNumber;
    std::string SiteCode;
    std::string CalConstant;    ///< feet per 1000 pulses
    std::string BeforeOrAfter;  ///< "Before" or "After"
    std::string RunType;        ///< "Primary" or "Secondary"
    std::string Length;         ///< feet
    std::string Duration;       ///< seconds
    std::string NumberOfSections;
    IndexedArray<std::string, 1, ShownKeys> ButtonLabel;  ///< empty for a key that is not used
    IndexedArray<std::string, 0, ShownNodes - 1> SectionName;
    IndexedArray<std::string, 0, ShownNodes - 1> SectionDist;  ///< pulses of the section that ends at the node
    std::string Notes;

    bool operator==(const RunFileTexts&) const = default;
};

/// One value of the header that is shown as a text alone: how it is shown and how it is taken.
struct RunTextField {
    const char* Name;     ///< the record's, and the control's
    const char* Caption;  ///< with its access key
    const char* Unit;     ///< what stands behind the field; nothing behind a long one
    std::string RunFileTexts::*Text;
    std::string (*ToText)(const RunHeader& header);
    /// Throws what a text that is none of this value is an error of.
    void (*FromText)(const std::string& text, RunHeader& header);
    const char* MustHold;  ///< what the text must be, for a message
};
/// In the order of the screen, which is the order the texts are taken in.
std::span<const RunTextField> RunTextFields();

/// The texts of a header, trailing blanks removed. A node 0 without a name is "[Start]", the node whose number is
/// NumberOfSections "[End]".
RunFileTexts TextsOf(const RunHeader& header);

/// The run with its header's values as `texts` say, taken in the order of the texts. A value whose text is that of
/// TextsOf stays as it is to the last bit, but "[Start]" and "[End]" become names, and a start time loses the seconds
/// that its text does not have.
///
/// Whole numbers are rounded, halves to even; CalConstant is its text's leading number, 0 where there is none; any text
/// but "Before" is "After", any but "Primary" is "Secondary"; texts are cut at their widths. Duration is the number of
/// samples, too: a smaller one drops the last samples, a larger one adds empty ones. Nothing else is derived anew.
/// SectionDist is not taken.
///
/// The first text that cannot be converted is an error whose place names the field: 13 for no date, time or number,
/// 6 for a number that does not fit (Duration: at most 32767), 9 for a Duration below 0.
RunRecord WithTexts(const RunRecord& run, const RunFileTexts& texts);

/// The names of the fields that a save changes, in the order of the file, each with what can be said of it in short:
/// "CalConstant (1000 to 1100)", "RunTime (without its seconds)", "SectionName (\"[Start]\")".
std::vector<std::string> ChangesOf(const RunHeader& stored, const RunHeader& edited);

}  // namespace vantor
