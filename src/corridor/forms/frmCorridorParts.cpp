#include <QHBoxLayout>
#include <QMenu>
#include <QShortcut>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "core/forms/Accessible.h"
#include "core/forms/DocumentChange.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "corridor/forms/frmCorridor.h"
#include "statistics/forms/SheetOut.h"

// What "Corridors" is made of.

namespace vantor {
namespace {

constexpr int FastestMph = 200;
constexpr int UsualWidth = 500;  // of what stands on the right
constexpr int NarrowSpin = 100;
constexpr int Space = 6;

}  // namespace

QPushButton* frmCorridor::AddButton(const char* name, const QString& caption, const QString& tip,
                                    std::function<void()> act) {
    auto* button = Named<QPushButton>(this, name, caption);
    button->setToolTip(tip);
    if (act) Connect(button, &QPushButton::clicked, this, context_.Messages, std::move(act));
    return button;
}

void frmCorridor::AddKey(const char* keys, std::function<void()> act) {
    auto* shortcut = new QShortcut(QKeySequence(QLatin1String(keys)), this);
    Connect(shortcut, &QShortcut::activated, this, context_.Messages, std::move(act));
}

QPushButton* frmCorridor::WithMenu(QPushButton* button, void (frmCorridor::*fill)(QMenu&)) {
    auto* menu = new QMenu(button);
    connect(menu, &QMenu::aboutToShow, this,
            [this, menu, fill] { Guarded(context_.Messages, [&] { (this->*fill)(*menu); }); });
    button->setMenu(menu);
    return button;
}

QLayout* frmCorridor::BuildFileRow() {
    lblCorridor_ = Named<QLabel>(this, "lblCorridor");
    lblCorridor_->setTextFormat(Qt::PlainText);
    lblCorridor_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QFont font = lblCorridor_->font();
    font.setBold(true);
    lblCorridor_->setFont(font);
    btnOpen_ = WithMenu(AddButton("btnOpen", QStringLiteral("&Open"), QStringLiteral("A corridor (Ctrl+O)"), {}),
                        &frmCorridor::FillOpen);
    auto* make = AddButton("btnNew", QStringLiteral("&New"), QStringLiteral("A new corridor (Ctrl+N)"),
                           [this] { document_.Begin(); });
    btnSave_ = AddButton("btnSave", QStringLiteral("&Save"),
                         QStringLiteral("The corridor and all that was set (Ctrl+S)"), [this] { document_.Save(); });
    AddKey("Ctrl+O", [this] { btnOpen_->showMenu(); });
    AddKey("Ctrl+N", [this] { document_.Begin(); });
    AddKey("Ctrl+S", [this] { document_.Save(); });
    auto* undo = Named<QToolButton>(this, "btnUndo");
    auto* redo = Named<QToolButton>(this, "btnRedo");
    for (QAction* step : AddStepActions(document_.Steps(), *this, *undo, *redo)) addAction(step);
    undo->setAccessibleName(QStringLiteral("Undo"));
    redo->setAccessibleName(QStringLiteral("Redo"));
    for (QToolButton* button : {undo, redo}) button->setFocusPolicy(Qt::StrongFocus);
    auto* row = new QHBoxLayout;
    row->addWidget(lblCorridor_, 1);
    for (QPushButton* button : {btnOpen_, make, btnSave_}) row->addWidget(button);
    row->addSpacing(Space);
    for (QToolButton* button : {undo, redo}) row->addWidget(button);
    row->addSpacing(Space);
    row->addLayout(BuildRunButtons());
    return row;
}

QLayout* frmCorridor::BuildRunButtons() {
    btnAddRuns_ = WithMenu(AddButton("btnAddRuns", QStringLiteral("Add &Runs"),
                                     QStringLiteral("Runs of a Study Group, or single run files"), {}),
                           &frmCorridor::FillAddRuns);
    auto* import = AddButton("btnImport", QStringLiteral("&Import Tracks..."),
                             QStringLiteral("Runs from tracks and logs, which the corridor then takes"),
                             [this] { ImportTracks(); });
    auto* studies = AddButton(
        "btnStudies", QStringLiteral("&Make Studies..."),
        QStringLiteral("A study of the runs at each node, for each direction and period, in their Study Group"),
        [this] { MakeStudies(); });
    auto* report = AddButton("btnReport", QStringLiteral("Repor&t..."),
                             QStringLiteral("Preview, print or save as PDF what the corridor shows (Ctrl+P)"),
                             [this] { ShowReport(); });
    connect(new QShortcut(QKeySequence(QStringLiteral("Ctrl+P")), this), &QShortcut::activated, report,
            &QPushButton::click);
    onNodes_ = {btnAddRuns_, import, studies, report};
    auto* row = new QHBoxLayout;
    for (QPushButton* button : onNodes_) row->addWidget(button);
    return row;
}

QLayout* frmCorridor::BuildFilterRow() {
    cmbPeriod_ = Named<QComboBox>(this, "cmbPeriod");
    cmbPeriod_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    cmbCondition_ = Named<QComboBox>(this, "cmbCondition");
    cmbCondition_->addItems({QStringLiteral("Both"), QStringLiteral("Before"), QStringLiteral("After")});
    cmbWay_ = Named<QComboBox>(this, "cmbWay");
    cmbWay_->addItems({QString(), QString()});
    cmbWay_->setToolTip(QStringLiteral("What Profiles and Time-Space show"));
    for (QComboBox* box : {cmbPeriod_, cmbCondition_})
        Connect(box, &QComboBox::currentIndexChanged, this, context_.Messages, [this] { TakeFilter(); });
    Connect(cmbWay_, &QComboBox::currentIndexChanged, this, context_.Messages, [this](int index) {
        if (!isFilling_ && index >= 0) document_.SelectWay(static_cast<Way>(index));
    });
    auto* settings = AddButton("btnSettings", QStringLiteral("Settin&gs..."),
                               QStringLiteral("Names of the directions, periods of the day, how runs are matched"),
                               [this] { ChangeSettings(); });
    auto* options = AddButton("btnOptions", QStringLiteral("Options..."),
                              QStringLiteral("How sure the figures are to be, the free-flow speed, grades of your own"),
                              [this] { ChangeOptions(); });
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbPeriod_, QStringLiteral("&Period")));
    row->addWidget(cmbPeriod_);
    row->addSpacing(Space);
    row->addWidget(LabelFor(cmbCondition_, QStringLiteral("&Condition")));
    row->addWidget(cmbCondition_);
    row->addSpacing(Space);
    row->addWidget(LabelFor(cmbWay_, QStringLiteral("&Way")));
    row->addWidget(cmbWay_);
    row->addStretch();
    row->addWidget(settings);
    row->addWidget(options);
    return row;
}

QLayout* frmCorridor::BuildIdealSpeeds() {
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Ideal speed"), this));
    for (const Way way : BothWays) {
        const auto index = static_cast<std::size_t>(way);
        auto* spin = Named<QSpinBox>(this, index == 0 ? "spnIdealForward" : "spnIdealBack");
        spin->setRange(0, FastestMph);
        spin->setSuffix(QStringLiteral(" MPH"));
        spin->setSpecialValueText(QStringLiteral("each run's"));
        spin->setToolTip(
            QStringLiteral("What a vehicle drives that nothing delays; 0 is the speed of each run at its "
                           "boundaries"));
        spin->setKeyboardTracking(false);
        spin->setMinimumWidth(NarrowSpin);
        lblIdeal_[index] = LabelFor(spin, QStringLiteral("NB"));
        row->addWidget(lblIdeal_[index]);
        row->addWidget(spin, 1);
        spnIdeal_[index] = spin;
        Connect(spin, &QSpinBox::valueChanged, this, context_.Messages,
                [this, way](int mph) { TakeIdealSpeed(way, mph); });
    }
    return row;
}

QWidget* frmCorridor::BuildLeft() {
    auto* left = Named<QSplitter>(this, "splLeft");
    left->setOrientation(Qt::Vertical);
    auto* above = new QWidget(left);
    auto* column = new QVBoxLayout(above);
    column->setContentsMargins(0, 0, 0, 0);
    nodes_ = new CorridorNodesPane(document_, above);
    column->addWidget(nodes_, 1);
    column->addLayout(BuildIdealSpeeds());
    runs_ = new CorridorRunsPane(document_, left);
    left->addWidget(above);
    left->addWidget(runs_);
    left->setStretchFactor(0, 2);
    left->setStretchFactor(1, 3);
    left->setChildrenCollapsible(false);
    return left;
}

QWidget* frmCorridor::BuildStart() {
    auto* page = new QWidget(this);
    auto* text = Named<WrappedLabel>(page, "lblStart");
    text->resize(UsualWidth, 0);  // so that it asks for no more height than it will need
    text->setText(QStringLiteral(
        "A corridor is a street with its intersections, the nodes, and many runs along it: it tells the control delay "
        "at each node and the travel times between them, by direction, period, before and after.\n\nIt begins with its "
        "nodes. Take them from a file, from a run whose nodes are marked, or type them on the left; then add the "
        "runs."));
    auto* column = new QVBoxLayout(page);
    column->addStretch(1);
    column->addWidget(text);
    const auto add = [&](const char* name, const QString& caption, std::function<void()> act) {
        auto* button = AddButton(name, caption, {}, std::move(act));
        auto* row = new QHBoxLayout;
        row->addWidget(button, 2);
        row->addStretch(3);
        column->addLayout(row);
    };
    add("btnStartFile", QStringLiteral("Nodes of a File (CS&V or GeoJSON)..."), [this] { nodes_->TakeFile(); });
    add("btnStartRun", QStringLiteral("Nodes of a R&un..."), [this] { nodes_->TakeRunFile(); });
    add("btnStartType", QStringLiteral("T&ype the Nodes"), [this] { nodes_->Add(); });
    column->addStretch(3);
    return page;
}

QWidget* frmCorridor::BuildTabs() {
    tabs_ = Named<QTabWidget>(this, "tabCorridor");
    tabs_->setAccessibleName(QStringLiteral("Corridor"));
    results_ = new CorridorResultsPage(document_, tabs_);
    compared_ = new CorridorComparedPage(document_, tabs_);
    run_ = new CorridorRunPage(document_, tabs_);
    tabs_->addTab(new CorridorProfilesPage(document_, tabs_), QStringLiteral("Pro&files"));
    tabs_->addTab(timeSpace_ = new CorridorTimeSpacePage(document_, tabs_), QStringLiteral("Time-Spac&e"));
    tabs_->addTab(new CorridorMapPage(document_, tabs_), QStringLiteral("M&ap"));
    tabs_->addTab(resultsArea_ = ScrollAreaFor(results_, tabs_), QStringLiteral("Resu&lts"));
    tabs_->addTab(compared_, QStringLiteral("&Before/After"));
    tabs_->addTab(run_, QStringLiteral("Selecte&d Run"));
    tabs_->setCurrentWidget(resultsArea_);
    Connect(tabs_, &QTabWidget::currentChanged, this, context_.Messages, [this] { ShowAll(); });
    return tabs_;
}

QLayout* frmCorridor::BuildFoot() {
    auto* copy = AddButton("BtnCopy", QStringLiteral("Cop&y"),
                           QStringLiteral("Copy this tab as a table, ready to be pasted into a spreadsheet"),
                           [this] { CopySheet(context_, ShownSheet()); });
    auto* csv = AddButton("BtnSaveCsv", QStringLiteral("Save as CS&V..."), {},
                          [this] { SaveSheetAsCsv(context_, ShownSheet(), FileStart(), "Save Figures"); });
    auto* close = AddButton("BtnClose", QStringLiteral("Close"), {}, [this] { accept(); });
    outButtons_ = {copy, csv};
    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::Corridor));
    row->addStretch();
    for (QPushButton* button : {copy, csv, close}) row->addWidget(button);
    return row;
}

}  // namespace vantor
