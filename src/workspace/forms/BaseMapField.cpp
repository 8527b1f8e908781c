#include "workspace/forms/BaseMapField.h"

#include <QGridLayout>

#include "core/Paths.h"
#include "core/UserChoices.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"

namespace vantor {

BaseMapField::BaseMapField(QWidget* parent, QGridLayout& grid, AppContext& context)
    : QObject(parent),
      context_(context),
      txtBaseMap_(Named<QLineEdit>(parent, "txtBaseMap")),
      cmdBrowseBaseMap_(Named<QPushButton>(parent, "cmdBrowseBaseMap", QStringLiteral("Browse..."))),
      cmdClearBaseMap_(Named<QPushButton>(parent, "cmdClearBaseMap", QStringLiteral("Clear"))),
      lblBaseMap_(Named<QLabel>(parent, "lblBaseMap")) {
    txtBaseMap_->setReadOnly(true);
    txtBaseMap_->setPlaceholderText(QStringLiteral("none"));
    txtBaseMap_->setText(ToQt(ChoiceOf(context.State.Choices, BaseMapKey)));
    cmdBrowseBaseMap_->setAccessibleName(QStringLiteral("Browse for the base map"));
    cmdClearBaseMap_->setAccessibleName(QStringLiteral("Clear the base map"));
    for (QPushButton* button : {cmdBrowseBaseMap_, cmdClearBaseMap_}) button->setAutoDefault(false);
    lblBaseMap_->setWordWrap(true);
    lblBaseMap_->setTextFormat(Qt::PlainText);
    Connect(cmdBrowseBaseMap_, &QPushButton::clicked, this, context.Messages, [this] { Browse(); });
    Connect(cmdClearBaseMap_, &QPushButton::clicked, this, context.Messages, [this] {
        txtBaseMap_->clear();
        cmdBrowseBaseMap_->setFocus();
        ShowHint();
    });
    const int row = grid.rowCount();
    grid.addWidget(LabelFor(txtBaseMap_, QStringLiteral("Base &Map (MBTiles file)")), row, 0);
    grid.addWidget(txtBaseMap_, row, 1);
    grid.addWidget(cmdBrowseBaseMap_, row, 2);
    grid.addWidget(lblBaseMap_, row + 1, 1);
    grid.addWidget(cmdClearBaseMap_, row + 1, 2, Qt::AlignTop);
    ShowHint();
}

std::string BaseMapField::Path() const { return FromQt(txtBaseMap_->text()); }

void BaseMapField::Browse() {
    const std::string path = context_.DesktopServices.ChooseFileToOpen(
        Path().empty() ? context_.DesktopServices.DocumentsFolder() : FolderOf(Path()), "Choose the Base Map",
        "MBTiles files", {".mbtiles"});
    if (path.empty()) return;
    TileFacts facts;
    if (!context_.Work.Run("Looking at the base map",
                           [&facts, &tiles = context_.Tiles, path](FileSystem&, const Progress&) {
                               facts = tiles.Open(path)->Facts();
                           }))
        return;
    txtBaseMap_->setText(ToQt(path));
    facts_ = QStringLiteral("%1, zoom levels %2 to %3")
                 .arg(ToQt(facts.Name.empty() ? "Raster tiles" : facts.Name))
                 .arg(facts.LeastZoom)
                 .arg(facts.GreatestZoom);
    ShowHint();
}

void BaseMapField::ShowHint() {
    const bool hasFile = !txtBaseMap_->text().isEmpty();
    cmdClearBaseMap_->setEnabled(hasFile);
    lblBaseMap_->setText(
        hasFile && !facts_.isEmpty() ? facts_ : QStringLiteral("Lies under the tracks of maps; they work without"));
}

}  // namespace vantor
