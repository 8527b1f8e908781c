#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>

#include "core/forms/FigureLabel.h"
#include "editing/forms/NumberBox.h"
#include "editing/forms/ProposalBar.h"
#include "editing/forms/SpeedProfilePlot.h"

namespace vantor {

/// The controls of the speed profile screen, laid out in its window, which owns them.
struct SpeedProfileControls {
    explicit SpeedProfileControls(QDialog& window);

    void ShowName(const QString& runName);
    /// The title of the plot.
    std::string Title() const;

    ProposalBar* Proposal;
    SpeedProfilePlot* Plot;
    QScrollBar* HScroll1;
    FigureLabel* lblReadOut;
    QLabel* lblWarning;
    FigureLabel* lblContDelay;
    FigureLabel* lblLOS;
    NumberBox* txtStart;
    QLabel* lblStartUnit;
    NumberBox* txtEnd;
    QLabel* lblEndUnit;
    FigureLabel* lblBetween;
    QToolButton* btnUndo;
    QToolButton* btnRedo;
    QPushButton* btnPreviousRun;
    QPushButton* btnNextRun;
    QPushButton* btnPropose;
    QPushButton* btnUseFor;
    NumberBox* txtIdealSpeed;
    FigureLabel* lblIdealSpeedSource;
    QComboBox* cmbPlotScaleList;
    FigureLabel* PlotScale;
    QPushButton* btnToggleSpdTime;
    QPushButton* btnTrim;
    QPushButton* BtnPlotSpeedExit;
    QPushButton* cmdHelp;
    QLineEdit* txtEditRunName;

private:
    QLayout* LayOutHead();
    QLayout* LayOutReadOut();
    QLayout* LayOutBoundaries();
    QLayout* LayOutFigures();
    QLayout* LayOutScale();
    QLayout* LayOutButtons();
    void SetTabOrder();

    NumberBox* NewNumberBox(const char* name);

    QDialog& window_;
    QLabel* lblPlotTitle_;
};

}  // namespace vantor
