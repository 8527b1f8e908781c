#include "workspace/forms/PathField.h"

#include <QGridLayout>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "workspace/Preferences.h"

namespace vantor {

PathField::PathField(QWidget* parent, QGridLayout& grid, int number, const QString& caption, const QString& purpose)
    : QObject(parent),
      Box(new PathBox(parent)),
      Browse(new QPushButton(QStringLiteral("Browse..."), parent)),
      hint_(new QLabel(parent)),
      useAnyway_(new QPushButton(QStringLiteral("Use it anyway"), parent)),
      purpose_(purpose) {
    const auto name = [number](const char* role) {
        return QStringLiteral("%1(%2)").arg(QLatin1String(role)).arg(number);
    };
    Box->setObjectName(name("txtFilePath"));
    Browse->setObjectName(name("cmdBrowse"));
    Browse->setAccessibleName(QStringLiteral("Browse for the ") + WithoutAccessKey(caption));
    hint_->setObjectName(name("lblFilePath"));
    hint_->setWordWrap(true);
    useAnyway_->setObjectName(name("cmdUseAnyway"));
    useAnyway_->setAccessibleName(QStringLiteral("Use it anyway as ") + WithoutAccessKey(caption));
    for (QPushButton* button : {Browse, useAnyway_}) button->setAutoDefault(false);
    connect(Box, &QLineEdit::textChanged, this, [this] { ShowHint(); });
    connect(useAnyway_, &QPushButton::clicked, this, [this] {
        Insist();
        Box->setFocus();
    });

    const int row = grid.rowCount();
    grid.addWidget(LabelFor(Box, caption), row, 0);
    grid.addWidget(Box, row, 1);
    grid.addWidget(Browse, row, 2);
    grid.addWidget(hint_, row + 1, 1);
    grid.addWidget(useAnyway_, row + 1, 2, Qt::AlignTop);
    ShowHint();
}

void PathField::Fill(const std::string& folder) {
    filled_ = folder;
    Put(folder);
    ShowHint();
}

void PathField::Put(const std::string& folder) { Box->setText(ToQt(folder)); }

void PathField::Insist() {
    insisted_ = Box->Folder();
    ShowHint();
}

bool PathField::IsAccepted() const {
    const std::string folder = Box->Folder();
    return folder == filled_ || folder == insisted_ || FolderProblem(folder).empty();
}

void PathField::ShowHint() {
    const std::string problem = FolderProblem(Box->Folder());
    QPalette colours;
    if (!problem.empty()) colours.setColor(QPalette::WindowText, RedText(colours));
    hint_->setPalette(colours);
    hint_->setText(problem.empty() ? purpose_ : ToQt(problem));
    Box->setToolTip(problem.empty() ? QString() : ToQt(problem));
    useAnyway_->setVisible(!IsAccepted());
}

}  // namespace vantor
