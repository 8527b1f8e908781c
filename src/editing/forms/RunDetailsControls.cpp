#include "editing/forms/RunDetailsControls.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QScrollBar>
#include <QVBoxLayout>

#include "core/Numeric.h"
#include "core/forms/Accessible.h"
#include "core/forms/FigureLabel.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

QLineEdit* NewField(QWidget* parent, const char* name, std::size_t width) {
    auto* field = Named<QLineEdit>(parent, name);
    field->setMaxLength(static_cast<int>(width));
    return field;
}

/// A short field, as wide as `text`.
QLineEdit* ShortField(QWidget* parent, const char* name, const char* text) {
    auto* field = NewField(parent, name, 10);
    field->setFixedWidth(field->fontMetrics().horizontalAdvance(QLatin1String(text)) + 24);
    return field;
}

QPushButton* Button(QWidget* parent, const char* name, const char* caption, const char* tip, const char* icon = "") {
    auto* button = Named<QPushButton>(parent, name, QLatin1String(caption));
    button->setToolTip(QLatin1String(tip));
    if (*icon != '\0') button->setIcon(LineIcon(QLatin1String(icon)));
    button->setAutoDefault(false);
    return button;
}

/// Two options beside each other, name(0) and name(1); their frame bears the name alone.
QWidget* Options(QWidget* parent, const char* name, const char* first, const char* second, QRadioButton*& one,
                 QRadioButton*& other) {
    auto* frame = Named<QWidget>(parent, name);
    SetAccessibleRole(*frame, QAccessible::Grouping);
    one = Named<QRadioButton>(frame, "", QLatin1String(first));
    other = Named<QRadioButton>(frame, "", QLatin1String(second));
    one->setObjectName(QStringLiteral("%1(0)").arg(QLatin1String(name)));
    other->setObjectName(QStringLiteral("%1(1)").arg(QLatin1String(name)));
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(one);
    row->addWidget(other);
    row->addStretch();
    return frame;
}

QLabel* LabelForOptions(QWidget* options, QRadioButton* first, const char* caption) {
    QLabel* label = LabelFor(options, QLatin1String(caption));
    label->setBuddy(first);
    return label;
}

/// A figure in a row of the grid, behind its caption.
QLabel* AddFigure(QGridLayout& grid, const char* name, const QString& caption) {
    QWidget* frame = grid.parentWidget();
    auto* figure = Figure(frame, name, caption);
    figure->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const int row = grid.rowCount();
    grid.addWidget(new QLabel(caption, frame), row, 0);
    grid.addWidget(figure, row, 1);
    return figure;
}

}  // namespace

RunDetailsControls::RunDetailsControls(QDialog& window) : window_(window) {
    auto* left = new QVBoxLayout;
    left->addLayout(LayOutHeader());
    left->addWidget(LayOutSummary());
    left->addWidget(LayOutButtonsUsed(), 1);
    auto* columns = new QHBoxLayout;
    columns->addLayout(left, 2);
    columns->addWidget(LayOutNodes(), 3);
    auto* layout = new QVBoxLayout(&window);
    layout->addLayout(columns, 1);
    layout->addLayout(LayOutFoot());
    window.resize(1000, 620);
}

QLayout* RunDetailsControls::LayOutHeader() {
    RunDetailsName = NewField(&window_, "RunDetailsName", RunNameWidth);
    RunDetailsName->setMinimumWidth(RunDetailsName->fontMetrics().averageCharWidth() * 32);
    RunDetailsDate = ShortField(&window_, "RunDetailsDate", "00/00/0000");
    RunDetailsDay = Figure(&window_, "RunDetailsDay", QStringLiteral("Day"), QStringLiteral("Wednesday"));
    RunDetailsTime = ShortField(&window_, "RunDetailsTime", "00/00/0000");
    RunDetailsCalConst = ShortField(&window_, "RunDetailsCalConst", "00/00/0000");
    RunDetailsCalConst->setAlignment(Qt::AlignRight);
    QWidget* type = Options(&window_, "RunDetailsType", "Primary", "Secondary", optPrimary, optSecondary);
    QWidget* beforeOrAfter = Options(&window_, "RunDetailsBeforeOrAfter", "Before", "After", optBefore, optAfter);
    RunDetailsNotes = NewField(&window_, "RunDetailsNotes", NotesWidth);

    auto* date = new QHBoxLayout;
    date->addWidget(RunDetailsDate);
    date->addWidget(RunDetailsDay, 1);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(LabelFor(RunDetailsName, QStringLiteral("&Name")), RunDetailsName);
    form->addRow(LabelFor(RunDetailsDate, QStringLiteral("&Date")), date);
    form->addRow(LabelFor(RunDetailsTime, QStringLiteral("&Time")), RunDetailsTime);
    form->addRow(LabelFor(RunDetailsCalConst, QStringLiteral("&Calibration Constant")), RunDetailsCalConst);
    form->addRow(LabelForOptions(type, optPrimary, "R&un Type"), type);
    form->addRow(LabelForOptions(beforeOrAfter, optBefore, "&Before or After?"), beforeOrAfter);
    form->addRow(LabelFor(RunDetailsNotes, QStringLiteral("N&otes")), RunDetailsNotes);
    return form;
}

QWidget* RunDetailsControls::LayOutSummary() {
    auto* frame = Named<QGroupBox>(&window_, "fraRunSummary", QStringLiteral("Run Summary"));
    auto* grid = new QGridLayout(frame);
    RunDetailsNumberOfSections = AddFigure(*grid, "RunDetailsNumberOfSections", QStringLiteral("Number of Nodes"));
    RunDetailsDuration = AddFigure(*grid, "RunDetailsDuration", QStringLiteral("Run Duration"));
    RunDetailsLength = AddFigure(*grid, "RunDetailsLength", QStringLiteral("Course Length"));
    grid->setColumnStretch(2, 1);
    return frame;
}

QWidget* RunDetailsControls::LayOutButtonsUsed() {
    auto* frame = Named<QGroupBox>(&window_, "fraDelayButtons", QStringLiteral("Delay Buttons Used"));
    DelayButtons = Named<QScrollArea>(frame, "scrDelayButtons");
    DelayButtons->setWidgetResizable(true);
    DelayButtons->setFrameShape(QFrame::NoFrame);
    DelayButtons->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    DelayButtons->verticalScrollBar()->setObjectName(QStringLiteral("VScroll2"));
    DelayButtons->verticalScrollBar()->setAccessibleName(QStringLiteral("Delay buttons"));
    DelayButtons->setFocusPolicy(Qt::NoFocus);
    DelayButtons->viewport()->setAutoFillBackground(false);
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(DelayButtons);
    return frame;
}

QWidget* RunDetailsControls::LayOutNodes() {
    auto* frame = Named<QGroupBox>(&window_, "fraNodes", QStringLiteral("Node Names and Distances"));
    vaSectionNames = Named<NodeTable>(frame, "vaSectionNames");
    vaSectionNames->setAccessibleName(QStringLiteral("Node Names and Distances"));
    BtnInsert = Button(frame, "BtnInsert", "&Insert", "Insert a new node before highlighted node", "insert");
    BtnDelete = Button(frame, "BtnDelete", "De&lete", "Delete highlighted node", "delete");
    BtnReverse = Button(frame, "BtnReverse", "Re&verse", "Reverse names from top to bottom.", "reverse");
    BtnCopy = Button(frame, "BtnCopy", "Cop&y", "Get names from another run file on this computer.", "copy");
    btnTrimStart = Button(frame, "btnTrimStart", "T&rim Start", "Delete data from start to first node.", "trim");
    btnTrimEnd = Button(frame, "btnTrimEnd", "Tri&m End", "Delete data points from end of data to last node.", "trim");

    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {BtnInsert, BtnDelete, BtnReverse, BtnCopy}) buttons->addWidget(button);
    buttons->addStretch();
    for (QPushButton* button : {btnTrimStart, btnTrimEnd}) buttons->addWidget(button);
    auto* row = new QHBoxLayout(frame);
    row->addWidget(vaSectionNames, 1);
    row->addLayout(buttons);
    return frame;
}

QLayout* RunDetailsControls::LayOutFoot() {
    cmdHelp = Button(&window_, "cmdHelp", "Help", "");
    cmdHelp->setShortcut(QKeySequence::HelpContents);
    btnRestore = Button(&window_, "btnRestore", "Restore...", "Bring back this run as it was before a change.", "undo");
    btnRestore->setMenu(Named<QMenu>(btnRestore, "mnuRestore"));
    btnUndo = Named<QToolButton>(&window_, "btnUndo");
    btnRedo = Named<QToolButton>(&window_, "btnRedo");
    // A click leaves the field that was typed into, which makes a step of it.
    for (QToolButton* button : {btnUndo, btnRedo}) button->setFocusPolicy(Qt::StrongFocus);
    BtnShowPlot = Button(&window_, "BtnShowPlot", "&Plot", "Plot graph of data for this run.", "chart");
    BtnEditRunData = Button(&window_, "BtnEditRunData", "&Edit",
                            "View spd vs time plot and edit data points and/or De-Spike and Smooth data", "edit");
    BtnShowStats = Button(&window_, "BtnShowStats", "St&ats", "Show statistics for this run only.", "statistics");
    RunDetailsSave = Button(&window_, "RunDetailsSave", "&Save", "Save run info to name in Name textbox.");
    RunDetailsSave->setDefault(true);
    RunDetailsCancel = Button(&window_, "RunDetailsCancel", "Cancel",
                              "Cancel any changes made to this screen and return to the Summary Screen.");
    auto* row = new QHBoxLayout;
    row->addWidget(cmdHelp);
    row->addWidget(btnRestore);
    row->addWidget(btnUndo);
    row->addWidget(btnRedo);
    row->addStretch();
    for (QPushButton* button : {BtnShowPlot, BtnEditRunData, BtnShowStats}) row->addWidget(button);
    row->addSpacing(24);
    row->addWidget(RunDetailsSave);
    row->addWidget(RunDetailsCancel);
    return row;
}

QLineEdit& RunDetailsControls::TextField(const RunDetailField& field) const {
    return *window_.findChild<QLineEdit*>(QLatin1String(field.Control));
}

void RunDetailsControls::ShowTexts(const RunDetailTexts& texts) {
    for (const RunDetailField& field : RunDetailFields()) {
        TextField(field).setText(ToQt(texts.*field.Text));
        TextField(field).setCursorPosition(0);
    }
    (texts.IsPrimary ? optPrimary : optSecondary)->setChecked(true);
    (texts.IsBefore ? optBefore : optAfter)->setChecked(true);
}

RunDetailTexts RunDetailsControls::TypedTexts() const {
    RunDetailTexts texts;
    for (const RunDetailField& field : RunDetailFields()) texts.*field.Text = FromQt(TextField(field).text());
    texts.IsPrimary = optPrimary->isChecked();
    texts.IsBefore = optBefore->isChecked();
    for (const auto& [key, label] : ButtonLabels) texts.ButtonLabel[key] = FromQt(label->text());
    return texts;
}

void RunDetailsControls::ShowButtons(const RunHeader& header, const RunDetailTexts& texts) {
    ButtonLabels.clear();
    auto* rows = new QWidget;
    auto* grid = new QGridLayout(rows);
    constexpr int RoomBesideScrollBar = 8;
    grid->setContentsMargins(0, 0, RoomBesideScrollBar, 0);
    int row = 0;
    for (int key = 1; key <= KeySlots; ++key) {
        if (header.ButtonWord[key] == 0) continue;
        auto* label = NewField(rows, "", NodeNameWidth);
        label->setObjectName(QStringLiteral("ButtonLabel(%1)").arg(key));
        label->setText(ToQt(texts.ButtonLabel[key]));
        label->setCursorPosition(0);
        auto* number = LabelFor(label, QString::number(key));
        number->setObjectName(QStringLiteral("ButtonNum(%1)").arg(key));
        number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setAccessibleName(QStringLiteral("Label of delay button %1").arg(key));
        grid->addWidget(number, row, 0);
        grid->addWidget(label, row++, 1);
        ButtonLabels[key] = label;
    }
    if (ButtonLabels.empty())
        grid->addWidget(new QLabel(QStringLiteral("No delay button was pressed in this run."), rows), row++, 0);
    grid->setRowStretch(row, 1);
    DelayButtons->setWidget(rows);
    rows->setAutoFillBackground(false);
    SetTabOrder();
}

void RunDetailsControls::ShowSummary(const RunHeader& header, std::size_t nodes, Units units) {
    RunDetailsNumberOfSections->setText(QString::number(nodes));
    RunDetailsDuration->setText(QStringLiteral("%1 s").arg(header.Duration));
    RunDetailsLength->setText(ToQt(units.LengthText(header.RunLength)));
}

void RunDetailsControls::SetTabOrder() {
    QWidget* before = RunDetailsNotes;
    const auto goOnTo = [&before](QWidget* control) {
        QWidget::setTabOrder(before, control);
        before = control;
    };
    for (const auto& [key, label] : ButtonLabels) goOnTo(label);
    for (QWidget* control : std::initializer_list<QWidget*>{
             vaSectionNames, BtnInsert, BtnDelete, BtnReverse, BtnCopy, btnTrimStart, btnTrimEnd, btnRestore, btnUndo,
             btnRedo, BtnShowPlot, BtnEditRunData, BtnShowStats, RunDetailsSave, RunDetailsCancel, cmdHelp})
        goOnTo(control);
}

}  // namespace vantor
