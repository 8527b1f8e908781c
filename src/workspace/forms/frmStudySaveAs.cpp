#include "workspace/forms/frmStudySaveAs.h"

#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Backup.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "workspace/StudyWorkspace.h"
#include "workspace/forms/DialogParts.h"

namespace vantor {
namespace {

constexpr std::size_t MostNamed = 8;

}  // namespace

frmStudySaveAs::frmStudySaveAs(AppContext& context)
    : context_(context),
      txtStudyName_(Named<QLineEdit>(this, "txtStudyName")),
      txtStudyGroup_(Named<QLineEdit>(this, "txtStudyGroup")),
      browser_(new StudyBrowser(this, context)) {
    setObjectName(QStringLiteral("frmStudySaveAs"));
    setWindowTitle(QStringLiteral("Save Study As"));
    auto* save = Named<QPushButton>(this, "BtnSave", QStringLiteral("&Save"));
    save->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(BuildFields());
    layout->addWidget(browser_, 1);
    layout->addLayout(DialogFoot(*this, context, HelpTopic::StudySaveAs, {save}));

    Connect(save, &QPushButton::clicked, this, context.Messages, [this] { Save(); });
    Connect(txtStudyGroup_, &QLineEdit::textEdited, this, context.Messages, [this] { TakeTypedGroup(); });
    browser_->OnGroupChosen = [this] { txtStudyGroup_->setText(ToQt(LastComponent(browser_->Group()))); };
    browser_->OnStudyChosen = [this] {
        if (const ListedStudy* study = browser_->Study()) txtStudyName_->setText(ToQt(study->Name));
    };
    browser_->MissingGroupText = QStringLiteral("A new Study Group: its folder is made when the study is saved.");
    const std::string group = StudyGroupFolder(context.State);
    browser_->ShowGroup(group.empty() ? context.State.Paths.StudyGroupRootPath : group);
    txtStudyGroup_->setText(ToQt(LastComponent(browser_->Group())));
    txtStudyName_->setText(ToQt(Trim(context.State.CurrentStudy.Record.StudyName)));
    txtStudyName_->selectAll();
    resize(820, 600);
    RememberLayout(*this, context.Memory);
}

QLayout* frmStudySaveAs::BuildFields() {
    txtStudyName_->setMaxLength(StudyNameWidth);
    txtStudyGroup_->setPlaceholderText(QStringLiteral("Choose a Study Group below, or type the name of a new one"));
    txtStudyGroup_->setToolTip(QStringLiteral("A name that is no Study Group yet makes a new one"));
    auto* fields = new QFormLayout;
    fields->addRow(LabelFor(txtStudyName_, QStringLiteral("&Name")), txtStudyName_);
    fields->addRow(LabelFor(txtStudyGroup_, QStringLiteral("Study Gro&up")), txtStudyGroup_);
    return fields;
}

std::string frmStudySaveAs::Name() const { return std::string(Trim(FromQt(txtStudyName_->text()))); }

void frmStudySaveAs::TakeTypedGroup() {
    const std::string typed(Trim(FromQt(txtStudyGroup_->text())));
    const std::string root = AsFolder(context_.State.Paths.StudyGroupRootPath);
    browser_->ShowGroup(IsSafeName(typed) ? root + typed : std::string());
}

bool frmStudySaveAs::CheckNames() {
    const std::string group(Trim(FromQt(txtStudyGroup_->text())));
    QLineEdit* wrong = txtStudyName_;
    std::string problem = NameProblem(Name(), StudyNameWidth);
    if (problem.empty() && !IsSafeName(group)) {
        wrong = txtStudyGroup_;
        problem = UnsafeNameMessage(group);
    }
    if (problem.empty()) return true;
    context_.Messages.Tell(problem, MessageIcon::Warning);
    wrong->setFocus();
    wrong->selectAll();
    return false;
}

bool frmStudySaveAs::MayReplace() {
    const std::string group = browser_->Group();
    const std::string path = group + Name() + StudyExtension;
    return !FileExists(context_.Files, path) ||
           context_.Messages.Confirm("Study: " + Name() + "\n exists already in Study Group: " + LastComponent(group) +
                                     "\nDo you want to replace it?\n\nIt will be kept as " +
                                     LastComponent(FreeBackupPath(context_.Files, path)) + ".");
}

bool frmStudySaveAs::MayCopyRuns(const RunsElsewhere& runs) {
    if (runs.Missing.empty() && runs.Different.empty()) return true;
    const std::string group = LastComponent(browser_->Group());
    std::string question = "A study uses the runs of its own Study Group.";
    if (!runs.Different.empty())
        question += "\nThere are other runs of the same names in Study Group: " + group +
                    "\nThey stay as they are, and the study will use them: " + FirstOf(runs.Different, MostNamed);
    if (runs.Missing.empty())
        question += "\nDo you want to save the study there?";
    else
        question +=
            "\nDo you want to copy these runs to Study Group: " + group + " ?\n" + FirstOf(runs.Missing, MostNamed);
    if (context_.Messages.Confirm(question)) return true;
    context_.Messages.Tell("The study was not saved, because its runs are not in Study Group: " + group);
    return false;
}

/// The runs to be copied. Nothing where the user stays.
std::optional<std::vector<std::string>> frmStudySaveAs::RunsToCopy(const std::string& from, const std::string& to) {
    if (IsSameFolder(from, to)) return std::vector<std::string>();
    RunsElsewhere runs;
    const bool isWhole =
        context_.Work.Run("Comparing the runs with those of the Study Group",
                          [&, study = context_.State.CurrentStudy](FileSystem& files, const Progress& progress) {
                              runs = CompareRuns(files, study, from, to, progress);
                          });
    return isWhole && MayCopyRuns(runs) ? std::optional(runs.Missing) : std::nullopt;
}

void frmStudySaveAs::Save() {
    if (!CheckNames() || !MayReplace()) return;
    const std::string from = StudyGroupFolder(context_.State);
    const std::string to = browser_->Group();
    const auto runs = RunsToCopy(from, to);
    if (!runs) return;
    context_.Files.CreateFolder(to);
    bool isCopied = false;
    context_.Work.Run("Copying the runs", [&](FileSystem& files, const Progress& progress) {
        isCopied = CopyRuns(files, *runs, from, to, progress);
    });
    if (!isCopied) return;
    // The study is saved even where only the settings could not be.
    Guarded(context_.Messages, [&] { SaveStudyAs(context_.State, context_.Files, to, Name()); });
    if (IsCurrentStudy(context_.State, to, Name())) accept();
}

}  // namespace vantor
