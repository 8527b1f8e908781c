#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "editing/SensorData.h"

namespace vantor {

/// The steps by which a run's data words were changed, to be undone and done again. A step keeps only the words that
/// it changed.
class SensorEdits {
public:
    /// `words`, as they are saved, must outlive the edits.
    explicit SensorEdits(OneBased<std::int16_t>& words) : words_(words) {}

    /// Makes the changes, as one step; what was undone cannot be done again afterwards. No changes are no step.
    void Do(WordChanges changes);
    bool CanUndo() const { return done_ > 0; }
    bool CanRedo() const { return done_ < steps_.size(); }
    /// Takes the last step back, or does the next one again, and returns it. Error 9 when there is none.
    const WordChanges& Undo();
    const WordChanges& Redo();

    void Saved() { saved_ = done_; }
    /// True when the words are not as they were saved last.
    bool IsUnsaved() const { return saved_ != done_; }

private:
    OneBased<std::int16_t>& words_;
    std::vector<WordChanges> steps_;
    std::size_t done_ = 0;                  ///< steps that are in force
    std::optional<std::size_t> saved_ = 0;  ///< steps that are in what was saved; nothing when they cannot come back
};

}  // namespace vantor
