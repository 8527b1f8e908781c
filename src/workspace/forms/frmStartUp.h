#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <QVBoxLayout>
#include <vector>

#include "core/AppContext.h"
#include "core/Choices.h"

namespace vantor {

/// What to begin with. The choice is carried out by the main window.
class frmStartUp : public QDialog {
public:
    explicit frmStartUp(AppContext& context);
    /// When it was accepted.
    StartUpChoice Choice() const { return choice_; }

private:
    struct Card;
    QLayout* BuildHead();
    QLayout* BuildChoices();
    /// A frame with a heading and its cards; the layout ends in a stretch.
    QVBoxLayout* BuildGroup(const char* name, const QString& heading, const std::vector<Card>& cards);
    std::vector<Card> StudyCards() const;
    void AddKey(Qt::Key key, StartUpChoice choice);
    /// For a low screen: what the cards explain becomes their tool tips, and of the head the question is left.
    void MakeLow();
    void Choose(StartUpChoice choice);

    AppContext& context_;
    QButtonGroup* choices_;
    StartUpChoice choice_ = StartUpChoice::None;
};

}  // namespace vantor
