#pragma once

#include <QAction>
#include <QToolButton>
#include <QUndoCommand>
#include <QUndoStack>
#include <array>
#include <functional>
#include <utility>

#include "core/forms/Theme.h"

namespace vantor {

/// A change of a document that can be taken back: it keeps the document as it was before and as it is after, and shows
/// the one or the other. Changes of one gesture, as the steps of a line that is dragged, become one.
template <class Document>
class DocumentChange : public QUndoCommand {
public:
    using Show = std::function<void(const Document&)>;

    /// `text` is what "Undo" is followed by: "Move end boundary". Changes that follow each other and have the same
    /// gesture, from 1, and text become one; 0 for a change that stays on its own. `show` must outlive the stack's use.
    DocumentChange(const QString& text, Document before, Document after, Show show, int gesture = 0)
        : QUndoCommand(text),
          before_(std::move(before)),
          after_(std::move(after)),
          show_(std::move(show)),
          gesture_(gesture) {}

    void undo() override { show_(before_); }
    /// What was changed already is not shown once more.
    void redo() override {
        if (std::exchange(isDone_, true)) show_(after_);
    }
    int id() const override { return gesture_ == 0 ? -1 : 1; }
    bool mergeWith(const QUndoCommand* other) override {
        const auto* next = dynamic_cast<const DocumentChange*>(other);
        if (next == nullptr || next->gesture_ != gesture_ || next->text() != text()) return false;
        after_ = next->after_;
        setObsolete(after_ == before_);
        return true;
    }

private:
    Document before_;
    Document after_;
    Show show_;
    int gesture_;
    bool isDone_ = false;
};

/// Undo and Redo of a stack, or of a group of stacks, with their keys, on two buttons of a screen.
template <class Steps>
std::array<QAction*, 2> AddStepActions(Steps& steps, QObject& screen, QToolButton& undo, QToolButton& redo) {
    const auto add = [](QAction* action, const char* name, const char* keys, const char* icon, QToolButton& button) {
        action->setObjectName(QLatin1String(name));
        action->setShortcut(QKeySequence(QLatin1String(keys)));
        action->setIcon(LineIcon(QLatin1String(icon)));
        button.setDefaultAction(action);
        return action;
    };
    return {add(steps.createUndoAction(&screen), "mnuUndo", "Ctrl+Z", "undo", undo),
            add(steps.createRedoAction(&screen), "mnuRedo", "Ctrl+Shift+Z", "redo", redo)};
}

}  // namespace vantor
