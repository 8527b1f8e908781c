#include "workspace/forms/StudyHistory.h"

#include "core/forms/DocumentChange.h"

namespace vantor {
namespace {

/// Each step keeps the whole study twice: of one of ten thousand runs some megabytes.
constexpr int MostSteps = 50;

}  // namespace

StudyHistory::StudyHistory(ApplicationState& state, QObject* parent) : QObject(parent), state_(state) {
    changes_.setUndoLimit(MostSteps);
}

void StudyHistory::Note(const QString& text, StudyContents before, int gesture) {
    if (before == ContentsOf(state_.CurrentStudy)) return;
    const auto show = [this](const StudyContents& study) {
        static_cast<StudyContents&>(state_.CurrentStudy) = study;
        state_.StudyUnchanged = false;
        state_.StudyFieldsEdited = true;
    };
    changes_.push(
        new DocumentChange<StudyContents>(text, std::move(before), ContentsOf(state_.CurrentStudy), show, gesture));
}

void StudyHistory::Forget() {
    changes_.clear();
    NoteSaved();
}

void StudyHistory::NoteSaved() {
    if (state_.StudyUnchanged)
        changes_.setClean();
    else if (changes_.isClean())
        changes_.resetClean();
}

void StudyHistory::Step(void (QUndoStack::*step)()) {
    (changes_.*step)();
    // Back where it was saved, it is the saved one again.
    if (changes_.isClean()) {
        state_.StudyUnchanged = true;
        state_.StudyFieldsEdited = false;
    }
    if (OnStep) OnStep();
}

}  // namespace vantor
