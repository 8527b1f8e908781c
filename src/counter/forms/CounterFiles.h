#pragma once

#include <QGroupBox>
#include <string>
#include <vector>

#include "core/forms/LongList.h"
#include "core/forms/Table.h"
#include "core/forms/WrappedLabel.h"
#include "core/ports/LongWork.h"
#include "counter/CounterFile.h"

namespace vantor {

/// A counter file of a list and what was counted in it.
struct ListedCounterFile {
    std::string Name;  ///< without extension
    Date Modified;
    std::vector<CounterStudy> Studies;
    std::string Problem;  ///< why the file could not be counted; empty when it was
};

/// The counter files of a folder, which ends in a separator, in directory order. A file that cannot be a counter file
/// ends the application; those not counted because the user stopped it say so as their problem.
std::vector<ListedCounterFile> ListCounterFiles(LongWork& work, const std::string& folder, ApplicationEnd& end);

/// Shows the number of a file's studies in a cell, empty for a file that could not be counted.
void SetStudyCount(Table& table, int row, int column, const ListedCounterFile& file);

/// A frame that shows the studies of one counter file.
class CounterStudiesFrame : public QGroupBox {
public:
    explicit CounterStudiesFrame(QWidget* parent);
    /// Shows the studies of a file and, where there is one, its problem; no file empties the frame.
    void ShowFile(const ListedCounterFile* file);

private:
    LongList* vaStudyInfo_;
    std::vector<CounterStudy> studies_;
    WrappedLabel* lblProblem_;
};

}  // namespace vantor
