#pragma once

#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QWidget>
#include <cstddef>
#include <optional>
#include <vector>

#include "core/Csv.h"
#include "corridor/forms/CorridorDocument.h"
#include "statistics/forms/StatisticsTableView.h"

namespace vantor {

/// Where the selected run passes each node, how that is known, and what the user sets of it.
class CorridorRunPage : public QWidget {
public:
    CorridorRunPage(CorridorDocument& document, QWidget* parent);
    std::vector<SheetRow> Sheet() const;

private:
    QLayout* BuildPassage();
    QLayout* BuildBand();
    void ShowRun();
    void ShowNode();
    std::optional<std::size_t> ChosenNode() const;
    void SetPassageTo(std::optional<std::int32_t> sample);
    void SetBandTo(const std::optional<Band>& band);
    void ChangeRun(const QString& text, const std::function<void(CorridorRun&, std::size_t node)>& change);

    CorridorDocument& document_;
    QLabel* lblRun_ = nullptr;
    StatisticsTableView* vaMatch_ = nullptr;
    QSpinBox* spnSecond_ = nullptr;
    QSpinBox* spnUpstream_ = nullptr;
    QSpinBox* spnDownstream_ = nullptr;
    QLabel* lblBand_ = nullptr;
    std::vector<QWidget*> onNode_;
    QPushButton* btnAsMatched_ = nullptr;
    QPushButton* btnBandOfAll_ = nullptr;
    bool isFilling_ = false;
};

}  // namespace vantor
