#pragma once

#include <QLabel>
#include <QPushButton>
#include <functional>

#include "core/AppContext.h"

namespace vantor {

/// What the status bar says of the study's file, with a button for what can be done about it: a file that was cut
/// short, one that the last save replaced, a name that is not the study's.
class StudyNotice : public QWidget {
public:
    StudyNotice(AppContext& context, QWidget* parent);

    void ShowStudy();
    /// The button has changed the study.
    std::function<void()> OnChanged;

private:
    /// Caption and action may be empty.
    struct Notice {
        QString Text;
        QString Caption;
        std::function<void()> Action;
    };
    Notice Current();
    void UseNameOfFile();

    AppContext& context_;
    QLabel* lblNotice_ = nullptr;
    QPushButton* btnNotice_ = nullptr;
};

}  // namespace vantor
