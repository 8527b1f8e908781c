#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QWidget>
#include <functional>

#include "core/AppContext.h"

namespace vantor {

/// The fields of the current study. What the user changes is in the study's record at once.
class StudyDetailsPanel : public QWidget {
public:
    StudyDetailsPanel(AppContext& context, QWidget* parent);

    /// Fills the direction and critical lane lists.
    void FillLists();
    /// Shows the current study's fields; counts as no change.
    void ShowStudy();
    void FocusStudyName();
    QWidget* LastField() const { return studyNotes_; }
    /// Called after each change by the user, with the study as it was before and the number of the field, from 1.
    std::function<void(const QString& what, StudyContents before, int field)> OnEdited;

private:
    QLineEdit* AddTextField(const char* name, std::string StudyRecord::*field, int width);
    QComboBox* AddListField(const char* name, std::int16_t StudyRecord::*field);
    template <class Value>
    void TakeEdit(QWidget& control, Value StudyRecord::*field, const Value& value);

    AppContext& context_;
    bool showing_ = false;
    QLineEdit* txtStudyName_ = nullptr;
    QLineEdit* txtStreetName_ = nullptr;
    QLineEdit* studyNotes_ = nullptr;
    QComboBox* cmbDir_ = nullptr;
    QComboBox* cmbCritLane_ = nullptr;
};

}  // namespace vantor
