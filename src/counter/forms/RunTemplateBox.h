#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <functional>
#include <string>

#include "core/ports/MessageBoxes.h"
#include "counter/modUpload.h"

namespace vantor {

/// The frame in which the names of a set of runs are put together.
class RunTemplateBox : public QGroupBox {
public:
    RunTemplateBox(QWidget* parent, MessageBoxes& messages);

    RunNameTemplate Template() const;
    void SetRunNumber(const std::string& number);

    /// Called when a field was changed.
    std::function<void()> OnChanged;
    /// Looks for the number that is offered anew, when the user takes it; empty for none.
    std::function<std::string()> FreeNumberNow;

    /// Offers the lowest number from which `count` are free, empty for none, in the places told.
    void OfferNumber(const std::string& number, std::size_t count, const QString& places);
    /// Offers the direction that the logs of the runs tell; empty where they tell none or several. Without any log
    /// there is no such button.
    void OfferDirection(const std::string& direction);
    void ShowDirectionOffer(bool isShown) { btnDirection_->setVisible(isShown); }

private:
    void ShowNextName();

    std::string direction_;  ///< on offer
    QLineEdit* txtTemplateBaseName_;
    QLineEdit* txtTemplateDir_;
    QLineEdit* txtTemplateRunNumber_;
    QPushButton* btnDirection_;
    QPushButton* btnFreeNumber_;
    QLabel* lblNextName_;
    QPushButton* BtnEditTemplate_;
};

}  // namespace vantor
