#include "workspace/forms/PrefsReportTab.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "core/Text.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

constexpr int HeadingWidth = 64;

}  // namespace

PrefsReportTab::PrefsReportTab(QWidget* parent, const AppSettings& settings) : QWidget(parent) {
    setObjectName(QStringLiteral("fraReportOptions"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(BuildHeadings(settings));
    layout->addWidget(BuildOptions(settings));
    layout->addStretch();
}

QGroupBox* PrefsReportTab::BuildHeadings(const AppSettings& settings) {
    auto* frame = Named<QGroupBox>(this, "fraReportHeadings", QStringLiteral("Report Headings"));
    auto* form = new QFormLayout(frame);
    form->addRow(Named<QLabel>(frame, "lblReportHeadings",
                               QStringLiteral("These headings are printed at the top of every report.")));
    for (int line = 1; line <= 3; ++line) {
        auto* heading = new QLineEdit(frame);
        heading->setObjectName(QStringLiteral("txtReportHeading(%1)").arg(line));
        heading->setMaxLength(HeadingWidth);
        heading->setText(ToQt(TrimRight(settings.ReportHeading[line])));
        form->addRow(LabelFor(heading, QStringLiteral("Line &%1").arg(line)), heading);
        txtReportHeading_[line] = heading;
    }
    return frame;
}

QGroupBox* PrefsReportTab::BuildOptions(const AppSettings& settings) {
    auto* frame = Named<QGroupBox>(this, "fraRepOpt", QStringLiteral("Report Options"));
    auto* layout = new QVBoxLayout(frame);
    layout->setSpacing(4);
    int index = 0;
    const auto add = [&](const QString& caption, std::int16_t isSet) {
        auto* option = Named<QCheckBox>(frame, "", caption);
        option->setObjectName(QStringLiteral("chkRepOpt(%1)").arg(index++));
        option->setChecked(isSet != 0);
        layout->addWidget(option, 0, Qt::AlignLeft);
        return option;
    };
    chkRunNames_ =
        add(QStringLiteral("Show run &names on Detailed Stats by Run reports"), settings.ShowRunNamesOnStats);
    for (const auto& caption :
         {QStringLiteral("Show &Study node lines on plots"), QStringLiteral("Show Speed &Category lines on plots"),
          QStringLiteral("Show Normal Speed line on &Time/Space Traj plots"),
          QStringLiteral("Show De&lay lines on Speed Profile plots"), QStringLiteral("Show Run n&odes on plots")})
        add(caption, 0)->setToolTip(QStringLiteral("This choice is not kept"));
    chkPageNumbers_ = add(QStringLiteral("Show &page numbers on reports"), settings.ShowPageNumbers);
    return frame;
}

void PrefsReportTab::Take(AppSettings& settings) const {
    for (int line = 1; line <= 3; ++line) settings.ReportHeading[line] = FromQt(txtReportHeading_[line]->text());
    settings.ShowRunNamesOnStats = chkRunNames_->isChecked() ? -1 : 0;
    settings.ShowPageNumbers = chkPageNumbers_->isChecked() ? -1 : 0;
}

}  // namespace vantor
