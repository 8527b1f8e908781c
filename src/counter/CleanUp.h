#pragma once

#include <string>
#include <vector>

#include "core/ports/LongWork.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

/// Files of one folder that the user took off a list. They stay on the disk until they are deleted all together.
class PendingDeletions {
public:
    /// `folder` ends in a separator, `extension` begins with its dot.
    PendingDeletions(std::string folder, std::string extension);

    const std::string& Folder() const { return folder_; }
    /// Names without extension, in the order the files were taken off.
    const std::vector<std::string>& Names() const { return names_; }
    void Take(const std::string& name) { names_.push_back(name); }

    /// Deletes the files and empties the list. Those that cannot be deleted are told to the user in one message and
    /// do not keep the others. A stop leaves the rest.
    void DeleteAll(LongWork& work, MessageBoxes& messages);

private:
    std::string folder_;
    std::string extension_;
    std::vector<std::string> names_;
};

}  // namespace vantor
