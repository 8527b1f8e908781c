#include "counter/forms/CounterFiles.h"

#include <QHeaderView>
#include <QVBoxLayout>
#include <optional>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/forms/Accessible.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

/// Takes the end of the program out of the work: it is the window's to end.
class NotedEnd : public ApplicationEnd {
public:
    std::optional<FatalFormatFault> Fault;
    struct Reached {};
    [[noreturn]] void EndAtOnce(const FatalFormatFault& fault) override {
        Fault = fault;
        throw Reached{};
    }
};

ListedCounterFile Counted(const FileSystem& files, const std::string& folder, const FileInfo& info,
                          ApplicationEnd& end) {
    ListedCounterFile file{BaseName(info.Name), info.Modified, {}, {}};
    try {
        file.Studies = CounterStudies(files, folder + file.Name + CounterFileExtension, end);
    } catch (const RunTimeError& error) {
        file.Problem = error.Message();
    }
    return file;
}

}  // namespace

std::vector<ListedCounterFile> ListCounterFiles(LongWork& work, const std::string& folder, ApplicationEnd& end) {
    std::vector<ListedCounterFile> listed;
    NotedEnd noted;
    work.Run("Counting the studies of the counter files", [&](FileSystem& files, const Progress& progress) {
        const auto found = FilesWithExtension(files, folder, CounterFileExtension);
        for (const FileInfo& info : found) {
            if (!progress(listed.size(), found.size())) {
                listed.push_back({BaseName(info.Name), info.Modified, {}, "Not counted: it was stopped."});
                continue;
            }
            try {
                listed.push_back(Counted(files, folder, info, noted));
            } catch (const NotedEnd::Reached&) {
                return;
            }
        }
    });
    if (noted.Fault) end.EndAtOnce(*noted.Fault);
    return listed;
}

void SetStudyCount(Table& table, int row, int column, const ListedCounterFile& file) {
    const auto count = static_cast<int>(file.Studies.size());
    table.SetNumber(row, column, count, file.Problem.empty() ? QString::number(count) : QString());
    for (int cell = 0; cell <= column; ++cell) SetCellNote(*table.item(row, cell), ToQt(file.Problem));
}

CounterStudiesFrame::CounterStudiesFrame(QWidget* parent)
    : QGroupBox(parent),
      vaStudyInfo_(Named<LongList>(this, "vaStudyInfo")),
      lblProblem_(Named<WrappedLabel>(this, "lblProblem")) {
    vaStudyInfo_->setAccessibleName(QStringLiteral("Studies in the selected file"));
    const auto column = [this](const QString& head, auto textOf) {
        return LongList::Column{
            head, [this, textOf](int row) { return ToQt(textOf(studies_[static_cast<std::size_t>(row)])); }};
    };
    std::vector<LongList::Column> columns = {
        column(QStringLiteral("Study"), [](const CounterStudy& study) { return study.Study; }),
        column(QStringLiteral("Site Code"), [](const CounterStudy& study) { return study.SiteCode; }),
        column(QStringLiteral("Date / Time"), [](const CounterStudy& study) { return study.Date + "  " + study.Time; }),
        column(QStringLiteral("Runs"), [](const CounterStudy& study) { return std::to_string(study.Runs); })};
    columns.back().IsNumber = true;
    columns.back().Key = [this](int row) { return double(studies_[static_cast<std::size_t>(row)].Runs); };
    vaStudyInfo_->SetColumns(std::move(columns));
    lblProblem_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(vaStudyInfo_, 1);
    layout->addWidget(lblProblem_);
    ShowFile(nullptr);
}

void CounterStudiesFrame::ShowFile(const ListedCounterFile* file) {
    lblProblem_->setText(file == nullptr ? QString() : ToQt(file->Problem));
    lblProblem_->setVisible(!lblProblem_->text().isEmpty());
    vaStudyInfo_->SetEmptyText(file == nullptr ? QStringLiteral("Choose a counter file to see its studies.")
                                               : QStringLiteral("No study could be counted in this file."));
    vaStudyInfo_->Show(0);
    studies_ = file == nullptr ? std::vector<CounterStudy>() : file->Studies;
    vaStudyInfo_->Show(static_cast<int>(studies_.size()));
}

}  // namespace vantor
