#include "editing/SensorEdits.h"

#include <utility>

namespace vantor {

void SensorEdits::Do(WordChanges changes) {
    if (changes.empty()) return;
    if (saved_ && *saved_ > done_) saved_.reset();
    steps_.resize(done_);
    steps_.push_back(std::move(changes));
    Redo();
}

const WordChanges& SensorEdits::Undo() {
    if (!CanUndo()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    const WordChanges& step = steps_[--done_];
    for (const WordChange& change : step) words_[change.Point] = change.Old;
    return step;
}

const WordChanges& SensorEdits::Redo() {
    if (!CanRedo()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    const WordChanges& step = steps_[done_++];
    for (const WordChange& change : step) words_[change.Point] = change.New;
    return step;
}

}  // namespace vantor
