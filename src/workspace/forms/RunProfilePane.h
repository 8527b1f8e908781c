#pragma once

#include <QLabel>
#include <QStackedLayout>
#include <QTimer>
#include <QToolButton>
#include <QWidget>
#include <memory>

#include "core/AppContext.h"
#include "core/RunFile.h"
#include "map/MapScene.h"
#include "map/forms/MapView.h"
#include "plots/forms/ProfileView.h"

namespace vantor {

/// The speed profile of one run of the study, or the map of its way, to be looked at beside the run list. The run is
/// read beside the window, and only when the user stays on it for a moment.
class RunProfilePane : public QWidget {
public:
    RunProfilePane(AppContext& context, QWidget* parent);

    /// Run `run` of the study (from 1) as it is now; 0 for none.
    void ShowRun(int run);

private:
    struct Reading {
        RunReading Run;
        std::shared_ptr<const MapScene> Map;  ///< nothing where the run has no positions
    };
    QLayout* BuildHead();
    void BeginToRead();
    void ShowWhenRead();
    void ShowReading(Reading reading);
    void OfferMap(bool hasMap, const QString& reason);
    void ChooseMap(bool showsMap);

    AppContext& context_;
    std::unique_ptr<LongWork> work_;
    std::shared_ptr<Reading> reading_;
    StudyRunEntry entry_;
    QTimer soon_;
    QTimer whenRead_;
    QLabel* lblRunProfile_ = nullptr;
    QToolButton* btnShowProfile_ = nullptr;
    QToolButton* btnShowMap_ = nullptr;
    QStackedLayout* views_ = nullptr;
    ProfileView* view_ = nullptr;
    MapView* map_ = nullptr;
};

}  // namespace vantor
