#pragma once

#include <QWidget>
#include <memory>

#include "plots/SpeedProfile.h"
#include "plots/forms/ProfileWords.h"

namespace vantor {

/// The speed profile of a run to be looked at: the whole run over distance with its boundaries and its ideal speed, or
/// in words why there is none. It asks nothing and changes nothing.
class ProfileView : public QWidget {
public:
    explicit ProfileView(QWidget* parent);
    ~ProfileView() override;

    /// Shows copies of run and entry, in the units of the settings.
    void ShowRun(RunRecord run, const StudyRunEntry& entry, const AppSettings& settings);
    /// Shows a text in the place of a run.
    void ShowText(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Shown;

    std::unique_ptr<Shown> shown_;  ///< nothing while a text is shown
    QString text_;
};

}  // namespace vantor
