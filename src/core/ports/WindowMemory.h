#pragma once

#include <string>

namespace vantor {

/// Keeps sizes, positions and column widths of screens, and a user's own choices, between starts. Values are opaque to
/// everyone but the screen that stored them.
class WindowMemory {
public:
    virtual ~WindowMemory() = default;
    /// Empty when nothing was stored under the key.
    virtual std::string Recall(const std::string& key) const = 0;
    virtual void Store(const std::string& key, const std::string& value) = 0;
};

}  // namespace vantor
