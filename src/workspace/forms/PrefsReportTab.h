#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>

#include "core/AppSettings.h"
#include "core/IndexedArray.h"

namespace vantor {

/// The headings and options of the reports.
class PrefsReportTab : public QWidget {
public:
    PrefsReportTab(QWidget* parent, const AppSettings& settings);

    /// The headings and the two options that are kept; the others are only shown.
    void Take(AppSettings& settings) const;

private:
    QGroupBox* BuildHeadings(const AppSettings& settings);
    QGroupBox* BuildOptions(const AppSettings& settings);

    IndexedArray<QLineEdit*, 1, 3> txtReportHeading_;
    QCheckBox* chkRunNames_ = nullptr;
    QCheckBox* chkPageNumbers_ = nullptr;
};

}  // namespace vantor
