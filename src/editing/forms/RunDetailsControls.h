#pragma once

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QToolButton>
#include <map>

#include "editing/forms/NodeTable.h"

namespace vantor {

/// The controls of the run details screen, laid out in its window, which owns them.
struct RunDetailsControls {
    explicit RunDetailsControls(QDialog& window);

    void ShowTexts(const RunDetailTexts& texts);
    RunDetailTexts TypedTexts() const;
    /// A row for each key that was used, with the labels of `texts`.
    void ShowButtons(const RunHeader& header, const RunDetailTexts& texts);
    void ShowSummary(const RunHeader& header, std::size_t nodes, Units units);

    QLineEdit* RunDetailsName;
    QLineEdit* RunDetailsDate;
    QLabel* RunDetailsDay;
    QLineEdit* RunDetailsTime;
    QLineEdit* RunDetailsCalConst;
    QRadioButton* optPrimary;
    QRadioButton* optSecondary;
    QRadioButton* optBefore;
    QRadioButton* optAfter;
    QLineEdit* RunDetailsNotes;
    QLabel* RunDetailsNumberOfSections;
    QLabel* RunDetailsDuration;
    QLabel* RunDetailsLength;
    QScrollArea* DelayButtons;
    std::map<int, QLineEdit*> ButtonLabels;  ///< by key
    NodeTable* vaSectionNames;
    QPushButton* BtnInsert;
    QPushButton* BtnDelete;
    QPushButton* BtnReverse;
    QPushButton* BtnCopy;
    QPushButton* btnTrimStart;
    QPushButton* btnTrimEnd;
    QPushButton* btnRestore;
    QToolButton* btnUndo;
    QToolButton* btnRedo;
    QPushButton* BtnShowPlot;
    QPushButton* BtnEditRunData;
    QPushButton* BtnShowStats;
    QPushButton* RunDetailsSave;
    QPushButton* RunDetailsCancel;
    QPushButton* cmdHelp;

private:
    QLineEdit& TextField(const RunDetailField& field) const;
    QLayout* LayOutHeader();
    QWidget* LayOutSummary();
    QWidget* LayOutButtonsUsed();
    QWidget* LayOutNodes();
    QLayout* LayOutFoot();
    void SetTabOrder();

    QDialog& window_;
};

}  // namespace vantor
