#include "editing/forms/frmEditRunFile.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/RunDecoding.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "editing/SaveRun.h"

namespace vantor {
namespace {

/// What a field takes; dates, numbers and flags have no width of their own.
constexpr std::size_t FreeWidth = 32;

QString Indexed(const char* name, int index) { return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index); }

RunRecord Decoded(RunRecord run) {
    DecodeRunSamples(run);
    return run;
}

}  // namespace

frmEditRunFile::frmEditRunFile(AppContext& context, int entryIndex)
    : context_(context),
      entryIndex_(entryIndex),
      run_(Decoded(context.State.CurrentRun)),
      shown_(TextsOf(run_.Header)),
      texts_(shown_) {
    setObjectName(QStringLiteral("frmEditRunFile"));
    setWindowTitle(QStringLiteral("Edit Run File"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* page = new QWidget(this);
    auto* left = new QVBoxLayout;
    left->addWidget(BuildRun());
    left->addWidget(BuildKeys());
    left->addStretch();
    auto* right = new QVBoxLayout;
    right->addWidget(BuildNodes());
    right->addStretch();
    auto* columns = new QHBoxLayout(page);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    QScrollArea* area = ScrollAreaFor(page, this);
    area->setObjectName(QStringLiteral("scrRunFile"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(area, 1);
    layout->addLayout(BuildNotes());
    layout->addLayout(BuildButtons());
    ShowChanges();
    resize(page->sizeHint() + QSize(48, 130));
    RememberLayout(*this, context.Memory);
}

QLineEdit* frmEditRunFile::AddField(QWidget* parent, const QString& name, std::string& text, std::size_t width) {
    auto* field = Named<QLineEdit>(parent, "");
    field->setObjectName(name);
    field->setMaxLength(static_cast<int>(width));
    field->setText(ToQt(text));
    field->setCursorPosition(0);
    Connect(field, &QLineEdit::textChanged, this, context_.Messages, [this, &text](const QString& typed) {
        text = FromQt(typed);
        ShowChanges();
    });
    return field;
}

QWidget* frmEditRunFile::BuildRun() {
    auto* frame = Named<QGroupBox>(this, "fraRun", QStringLiteral("Run"));
    auto* grid = new QGridLayout(frame);
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (const RunTextField& run : RunTextFields()) {
        QLineEdit* field = AddField(frame, QLatin1String(run.Name), texts_.*run.Text, FreeWidth);
        field->setMinimumWidth(fontMetrics().averageCharWidth() * 20);
        field->setAccessibleDescription(QLatin1String(run.Unit));
        grid->addWidget(LabelFor(field, QLatin1String(run.Caption)), row, 0);
        grid->addWidget(field, row, 1, 1, run.Unit != nullptr ? 1 : 2);
        if (run.Unit != nullptr) grid->addWidget(new QLabel(QLatin1String(run.Unit), frame), row, 2);
        ++row;
    }
    frame->findChild<QLineEdit*>(QStringLiteral("Duration"))
        ->setToolTip(QStringLiteral("Also the number of samples: a shorter run loses its last ones, a longer one gets "
                                    "empty ones"));
    return frame;
}

QWidget* frmEditRunFile::BuildKeys() {
    auto* frame = Named<QGroupBox>(this, "fraKeys", QStringLiteral("ButtonLabel"));
    auto* grid = new QGridLayout(frame);
    bool hasAccessKey = false;
    for (int key = 1; key <= ShownKeys; ++key) {
        QLineEdit* field = AddField(frame, Indexed("ButtonLabel", key), texts_.ButtonLabel[key], RunTextWidth);
        const bool isUsed = run_.Header.ButtonWord[key] != 0;
        field->setEnabled(isUsed);
        if (!isUsed) field->setPlaceholderText(QStringLiteral("not used"));
        const bool takesAccessKey = isUsed && !hasAccessKey;
        hasAccessKey |= takesAccessKey;
        const QString caption = (takesAccessKey ? QStringLiteral("&Key %1") : QStringLiteral("Key %1")).arg(key);
        constexpr int rows = ShownKeys / 2;
        const int column = key <= rows ? 0 : 2;
        grid->addWidget(LabelFor(field, caption), (key - 1) % rows, column);
        grid->addWidget(field, (key - 1) % rows, column + 1);
    }
    return frame;
}

QWidget* frmEditRunFile::BuildNodes() {
    auto* frame = Named<QGroupBox>(this, "fraNodes", QStringLiteral("Nodes"));
    auto* grid = new QGridLayout(frame);
    grid->setColumnStretch(1, 3);
    grid->setColumnStretch(2, 1);
    grid->addWidget(new QLabel(QStringLiteral("SectionName"), frame), 0, 1);
    auto* lblSectionDist = Named<QLabel>(frame, "lblSectionDist", QStringLiteral("SectionDist (pulses)"));
    lblSectionDist->setToolTip(QStringLiteral("The section that ends at the node. Not stored back."));
    grid->addWidget(lblSectionDist, 0, 2);
    for (int node = 0; node < ShownNodes; ++node) {
        QLineEdit* name = AddField(frame, Indexed("SectionName", node), texts_.SectionName[node], RunTextWidth);
        name->setMinimumWidth(fontMetrics().averageCharWidth() * 24);
        const QString caption = node == 0 ? QStringLiteral("N&ode 0") : QStringLiteral("Node %1").arg(node);
        QLineEdit* pulses = AddField(frame, Indexed("SectionDist", node), texts_.SectionDist[node], FreeWidth);
        pulses->setReadOnly(true);
        pulses->setFrame(false);
        QPalette clear = pulses->palette();
        clear.setColor(QPalette::Base, Qt::transparent);
        pulses->setPalette(clear);
        pulses->setFocusPolicy(Qt::ClickFocus);
        pulses->setAlignment(Qt::AlignRight);
        pulses->setToolTip(lblSectionDist->toolTip());
        pulses->setAccessibleName(QStringLiteral("Pulses of the section to node %1").arg(node));
        grid->addWidget(LabelFor(name, caption), node + 1, 0);
        grid->addWidget(name, node + 1, 1);
        grid->addWidget(pulses, node + 1, 2);
    }
    return frame;
}

QLayout* frmEditRunFile::BuildNotes() {
    QLineEdit* field = AddField(this, QStringLiteral("Notes"), texts_.Notes, RunNotesWidth);
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(field, QStringLiteral("Not&es")));
    row->addWidget(field);
    return row;
}

QLayout* frmEditRunFile::BuildButtons() {
    auto* save = Named<QPushButton>(this, "RunDetailsSave", QStringLiteral("&Save"));
    save->setToolTip(QStringLiteral("Store these texts in the run and write its file"));
    save->setDefault(true);
    auto* cancel = Named<QPushButton>(this, "RunDetailsCancel", QStringLiteral("Cancel"));
    cancel->setToolTip(QStringLiteral("Cancel any changes made to this screen and return to the Summary Screen."));
    cancel->setAutoDefault(false);
    Connect(save, &QPushButton::clicked, this, context_.Messages, [this] { SaveRunFile(); });
    Connect(cancel, &QPushButton::clicked, this, context_.Messages, [this] { QDialog::reject(); });
    auto* row = new QHBoxLayout;
    lblChanges_ = Named<QLabel>(this, "lblChanges");
    lblChanges_->setWordWrap(true);
    row->addWidget(HelpButton(*this, context_, HelpTopic::RunFile));
    row->addWidget(lblChanges_, 1);
    row->addWidget(save);
    row->addWidget(cancel);
    return row;
}

void frmEditRunFile::ShowChanges() {
    QString text;
    try {
        QStringList names;
        const RunRecord edited = WithTexts(run_, texts_);
        for (const std::string& name : ChangesOf(context_.State.CurrentRun.Header, edited.Header)) names += ToQt(name);
        text = names.isEmpty() ? QStringLiteral("Save changes nothing.")
                               : QStringLiteral("Save changes %1.").arg(names.join(QStringLiteral(", ")));
    } catch (const RunTimeError& error) {
        text = ToQt(error.Place()).section(QLatin1Char('\n'), 0, 0);
    }
    lblChanges_->setText(text);
}

void frmEditRunFile::SaveRunFile() {
    RunRecord edited;
    try {
        edited = WithTexts(run_, texts_);
    } catch (const RunTimeError& error) {
        // The place begins with the field's name.
        const QString name = ToQt(error.Place()).section(QLatin1Char(':'), 0, 0);
        if (auto* field = findChild<QLineEdit*>(name)) field->setFocus();
        throw;
    }
    const std::string name(Trim(edited.Header.RunName));
    if (name != Trim(run_.Header.RunName)) {
        const std::string problem = RunNameProblem(context_.State, context_.Files, name);
        if (!problem.empty()) {
            findChild<QLineEdit*>(QStringLiteral("RunName"))->setFocus();
            return context_.Messages.Tell(problem, MessageIcon::Warning);
        }
    }
    const bool keepsBackup = edited != context_.State.CurrentRun;
    const RunSaved saved = SaveRun(context_.State, context_.Files, std::move(edited), {entryIndex_, keepsBackup});
    if (!saved.Warning.empty()) context_.Messages.Tell(saved.Warning, MessageIcon::Warning);
    accept();
}

void frmEditRunFile::reject() {
    if (texts_ == shown_) return QDialog::reject();
    Guarded(context_.Messages, [this] {
        const MessageAnswer answer =
            context_.Messages.AskToSave("The values of run: " + std::string(Trim(run_.Header.RunName)) +
                                        "\nhave changed. Do you want to save them?");
        if (answer == MessageAnswer::Yes) SaveRunFile();
        if (answer == MessageAnswer::No) QDialog::reject();
    });
}

}  // namespace vantor
