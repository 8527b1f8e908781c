#pragma once

#include <QUndoStack>
#include <functional>

#include "core/ApplicationState.h"

namespace vantor {

/// What a study holds, for a copy without where it is stored.
inline const StudyContents& ContentsOf(const Study& study) { return study; }

/// The changes of the current study that can be taken back and done again.
class StudyHistory : public QObject {
public:
    StudyHistory(ApplicationState& state, QObject* parent);

    /// Keeps a change that was made; `before` is the study as it was then. Nothing where it is as it was. Changes of
    /// one gesture, from 1, that follow each other become one.
    void Note(const QString& text, StudyContents before, int gesture = 0);
    /// Keeps a change of something else, as of run files.
    void Note(QUndoCommand* change) { changes_.push(change); }
    /// Forgets all changes: another study is the current one, or what its runs were fits them no more.
    void Forget();
    /// To be called after whatever may have saved or changed the study.
    void NoteSaved();

    const QUndoStack& Changes() const { return changes_; }
    void Undo() { Step(&QUndoStack::undo); }
    void Redo() { Step(&QUndoStack::redo); }

    /// The study was made as it was, or as it was then.
    std::function<void()> OnStep;

private:
    void Step(void (QUndoStack::*step)());

    ApplicationState& state_;
    QUndoStack changes_;
};

}  // namespace vantor
