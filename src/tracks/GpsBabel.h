#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/ports/Programs.h"

namespace vantor {

/// A form of track file that the converter program reads.
struct BabelForm {
    std::string Word;                     ///< as the converter calls it
    std::vector<std::string> Extensions;  ///< in lower case, with their dots; of one without any its word
    std::string Name;

    bool operator==(const BabelForm&) const = default;
};

/// The forms of files with tracks that the converter on this computer reads; none where it is not installed.
std::vector<BabelForm> BabelForms(const Programs& programs);
/// From the list that the converter prints for other programs.
std::vector<BabelForm> BabelFormsOf(const std::string& list);
/// Those that files of this name may be of.
std::vector<BabelForm> FormsOf(const std::vector<BabelForm>& forms, const std::string& path);

/// What stands where a file would need the converter and it is not there.
std::string MissingBabelText(const std::string& path);

/// Why the converter failed or what it warns of, at most its first lines; empty where all went well.
std::string SaidBy(const ProgramEnd& end);

/// Starts reading the tracks of a file as GPX 1.0, which has speeds and courses. Nothing where the converter is not
/// there. What the converter had to say comes with the program's end.
std::unique_ptr<RunningProgram> ReadAsGpx(const Programs& programs, const BabelForm& form, const std::string& path,
                                          const ProgramLimits& limits = {});

}  // namespace vantor
