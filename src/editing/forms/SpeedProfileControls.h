#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include "core/forms/FigureLabel.h"
#include "editing/forms/SpeedProfilePlot.h"

namespace vantor {

/// The controls of the speed profile screen, laid out in its window, which owns them.
struct SpeedProfileControls {
    SpeedProfileControls(QDialog& window, const QString& runName);

    SpeedProfilePlot* Plot;
    QScrollBar* HScroll1;
    FigureLabel* lblReadOut;
    QLabel* lblWarning;
    FigureLabel* lblContDelay;
    FigureLabel* lblLOS;
    QLineEdit* txtIdealSpeed;
    FigureLabel* lblIdealSpeedSource;
    QComboBox* cmbPlotScaleList;
    FigureLabel* PlotScale;
    QPushButton* btnToggleSpdTime;
    QPushButton* btnTrim;
    QPushButton* BtnPlotSpeedExit;
    QPushButton* cmdHelp;
    QLineEdit* txtEditRunName;

private:
    QLayout* LayOutHead(const QString& runName);
    QLayout* LayOutReadOut();
    QLayout* LayOutFigures();
    QLayout* LayOutScale();
    QLayout* LayOutButtons();
    void SetTabOrder();

    QDialog& window_;
};

}  // namespace vantor
