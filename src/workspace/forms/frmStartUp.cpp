#include "workspace/forms/frmStartUp.h"

#include <QCommandLinkButton>
#include <QFrame>
#include <QLabel>
#include <QScreen>
#include <QShortcut>
#include <QStyleOptionButton>
#include <algorithm>
#include <array>

#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/StudyRecords.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "workspace/StudyWorkspace.h"
#include "workspace/forms/DialogParts.h"

namespace vantor {
namespace {

/// The least width of a card in average characters: most explanations take one line.
constexpr int CardCharacters = 60;

constexpr const char* IconName = "picIcon";
constexpr const char* TitleName = "lblTitle";

/// Shows the keyboard's place as styles show the pointer's.
class CardButton : public QCommandLinkButton {
public:
    using QCommandLinkButton::QCommandLinkButton;

protected:
    void initStyleOption(QStyleOptionButton* option) const override {
        QCommandLinkButton::initStyleOption(option);
        if (hasFocus()) option->state |= QStyle::State_MouseOver;
    }
};

std::string LastStudyName(const AppContext& context) {
    const std::string& name = context.State.Paths.LastStudyName;
    return LastStudyExists(context.State, context.Files) ? name : std::string();
}

QLabel* Heading(QWidget* parent, const QString& text, int morePoints) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSize(font.pointSize() + morePoints);
    label->setFont(font);
    return label;
}

}  // namespace

struct frmStartUp::Card {
    StartUpChoice Choice;
    const char* Name;
    QString Caption;
    const char* Icon;
    QString Explanation;
};

frmStartUp::frmStartUp(AppContext& context) : context_(context), choices_(new QButtonGroup(this)) {
    setObjectName(QStringLiteral("frmStartUp"));
    setWindowTitle(QStringLiteral("StartUp Options"));
    // As a group the cards are walked through with the arrow keys by their places.
    choices_->setExclusive(false);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(BuildHead());
    layout->addLayout(BuildChoices(), 1);
    layout->addLayout(DialogFoot(*this, context, HelpTopic::StartUp, {}, QStringLiteral("Go to &Main Window")));
    Connect(choices_, &QButtonGroup::idClicked, this, context.Messages,
            [this](int choice) { Choose(static_cast<StartUpChoice>(choice)); });
    choices_->buttons().constFirst()->setFocus();
    constexpr int FrameRoom = 40;
    if (sizeHint().height() > screen()->availableSize().height() - FrameRoom) MakeLow();
    RememberLayout(*this, context.Memory);
}

void frmStartUp::MakeLow() {
    constexpr int LowMargin = 4;
    for (QAbstractButton* button : choices_->buttons()) {
        auto* card = static_cast<CardButton*>(button);
        card->setToolTip(card->description());
        card->setDescription({});
        card->setFixedHeight(card->minimumSizeHint().height());
        QMargins margins = card->parentWidget()->layout()->contentsMargins();
        margins.setTop(LowMargin);
        margins.setBottom(LowMargin);
        card->parentWidget()->layout()->setContentsMargins(margins);
    }
    for (const char* ofHead : {IconName, TitleName}) findChild<QLabel*>(QLatin1String(ofHead))->hide();
}

QLayout* frmStartUp::BuildHead() {
    constexpr int IconSize = 40;
    auto* icon = Named<QLabel>(this, IconName);
    icon->setPixmap(windowIcon().pixmap(QSize(IconSize, IconSize), devicePixelRatioF()));
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    auto* title = Heading(this, QStringLiteral("Vantor"), 6);
    title->setObjectName(QLatin1String(TitleName));
    texts->addWidget(title);
    texts->addWidget(new QLabel(QStringLiteral("What do you want to do?"), this));
    auto* head = new QHBoxLayout;
    head->addWidget(icon);
    head->addLayout(texts, 1);
    return head;
}

QLayout* frmStartUp::BuildChoices() {
    using enum StartUpChoice;
    auto* halves = new QHBoxLayout;
    std::array<QVBoxLayout*, 2> columns;
    for (QVBoxLayout*& column : columns) halves->addLayout(column = new QVBoxLayout, 1);
    const auto add = [&](std::size_t column, QVBoxLayout* group) {
        columns[column]->addWidget(group->parentWidget(), 1);
    };
    add(0, BuildGroup("frStudy", QStringLiteral("Study"), StudyCards()));
    add(0, BuildGroup("frCounter", QStringLiteral("Counter Runs"),
                      {{ReadCounter, "ReadTDCBut", QStringLiteral("&Read TDC Counter"), "read-counter",
                        QStringLiteral("Download a counter's memory over a serial port.")},
                       {ProcessTdcData, "BtnProcessTDC", QStringLiteral("Process &TDC Data"), "counter-file",
                        QStringLiteral("Convert a counter file into runs for a Study Group.")},
                       {ProcessTempRuns, "BtnProcessTemp", QStringLiteral("Process Runs in Temp &Folder"),
                        "process-runs", QStringLiteral("Name the runs waiting there for a Study Group.")}}));
    QVBoxLayout* logs = BuildGroup("frLogs", QStringLiteral("GPS and OBD Runs"),
                                   {{ProcessRoamlap, "BtnProcessRoamlap", QStringLiteral("Process Roam&lap Data"),
                                     "gps-log", QStringLiteral("GPS logs of a laptop.")},
                                    {ProcessRoampad, "BtnProcessRoampad", QStringLiteral("Process Roam&pad Data"),
                                     "handheld", QStringLiteral("GPS logs of a handheld.")},
                                    {ProcessRevlap, "BtnProcessRevlap", QStringLiteral("Process Re&vlap Data"),
                                     "obd-log", QStringLiteral("OBD logs of a laptop.")},
                                    {ProcessRevpad, "BtnProcessRevpad", QStringLiteral("Process Revpa&d Data"),
                                     "handheld-obd", QStringLiteral("OBD logs of a handheld.")},
                                    {ProcessCombined, "BtnProcessCombined", QStringLiteral("Process C&ombined Data"),
                                     "gps-log", QStringLiteral("Combined GPS and OBD logs (key P).")},
                                    {ProcessBattelle, "BtnProcessBattelle", QStringLiteral("Process &Battelle Data"),
                                     "gps-log", QStringLiteral("Battelle GPS files (key B).")},
                                    {ImportTracks, "BtnImportTracks", QStringLiteral("&Import Tracks"), "gps-log",
                                     QStringLiteral("GPX, NMEA, CSV and any logs, many at once.")}});
    AddKey(Qt::Key_P, ProcessCombined);
    AddKey(Qt::Key_B, ProcessBattelle);
    add(1, logs);
    add(1, BuildGroup("frProgram", QStringLiteral("Program"),
                      {{Preferences, "BtnPreferences", QStringLiteral("Preference&s"), "preferences",
                        QStringLiteral("Folders, units, serial port and report headings.")},
                       {Exit, "BtnExit", QStringLiteral("E&xit"), "exit", QStringLiteral("End the program.")}}));
    return halves;
}

std::vector<frmStartUp::Card> frmStartUp::StudyCards() const {
    std::vector<Card> cards = {{StartUpChoice::NewStudy, "BtnNewStudy", QStringLiteral("Start a &New Study"),
                                "new-study", QStringLiteral("Begin with an empty study and add runs to it.")},
                               {StartUpChoice::OpenStudy, "BtnOpenStudy", QStringLiteral("Open &Existing Study"),
                                "open-study", QStringLiteral("Choose a study of any Study Group.")},
                               {StartUpChoice::Corridors, "BtnCorridors", QStringLiteral("&Analyze a Corridor"),
                                "delay-chart", QStringLiteral("A street's signals and all runs along it.")}};
    const QString name = ToQt(LastStudyName(context_));
    if (name.isEmpty()) return cards;
    const QString group = ToQt(LastComponent(StudyGroupFolder(context_.State)));
    Card last{StartUpChoice::LastStudy, "BtnLastStudy",
              QStringLiteral("&Continue with %1").arg(QString(name).replace('&', QStringLiteral("&&"))), "show-details",
              QStringLiteral("Your last study, in Study Group %1.").arg(group)};
    cards.insert(cards.begin(), std::move(last));
    return cards;
}

QVBoxLayout* frmStartUp::BuildGroup(const char* name, const QString& heading, const std::vector<Card>& cards) {
    auto* group = Named<QFrame>(this, name);
    group->setAccessibleName(heading);
    group->setFrameShape(QFrame::StyledPanel);
    group->setBackgroundRole(QPalette::Base);
    group->setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(group);
    layout->setSpacing(0);
    layout->addWidget(Heading(group, heading, 1));
    layout->addSpacing(4);
    for (const Card& card : cards) {
        auto* button = Named<CardButton>(group, card.Name, card.Caption);
        button->setDescription(card.Explanation);
        button->setAccessibleDescription(card.Explanation);
        button->setIcon(LineIcon(QLatin1String(card.Icon)));
        button->setIconSize(QSize(24, 24));
        const int width = std::max(fontMetrics().averageCharWidth() * CardCharacters, button->sizeHint().width());
        button->setMinimumSize(width, button->heightForWidth(width));
        choices_->addButton(button, static_cast<int>(card.Choice));
        layout->addWidget(button);
    }
    layout->addStretch();
    return layout;
}

void frmStartUp::AddKey(Qt::Key key, StartUpChoice choice) {
    auto* shortcut = new QShortcut(this);
    shortcut->setKeys({QKeySequence(key), QKeySequence(Qt::SHIFT | key)});
    Connect(shortcut, &QShortcut::activated, this, context_.Messages, [this, choice] { Choose(choice); });
}

void frmStartUp::Choose(StartUpChoice choice) {
    choice_ = choice;
    accept();
}

}  // namespace vantor
