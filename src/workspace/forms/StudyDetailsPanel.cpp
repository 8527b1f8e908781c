#include "workspace/forms/StudyDetailsPanel.h"

#include <QAction>
#include <QGridLayout>
#include <QScopedValueRollback>

#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "workspace/forms/StudyHistory.h"

namespace vantor {
namespace {

/// Characters that the record keeps of its texts.
constexpr int StreetNameWidth = 40;
constexpr int StudyNotesWidth = 128;

void Place(QGridLayout& grid, int row, int column, QWidget* field, const char* caption, int columns = 1) {
    grid.addWidget(LabelFor(field, QString::fromLatin1(caption)), row, column);
    grid.addWidget(field, row, column + 1, 1, columns);
}

}  // namespace

StudyDetailsPanel::StudyDetailsPanel(AppContext& context, QWidget* parent) : QWidget(parent), context_(context) {
    txtStudyName_ = AddTextField("txtStudyName", &StudyRecord::StudyName, StudyNameWidth);
    txtStreetName_ = AddTextField("txtStreetName", &StudyRecord::StreetName, StreetNameWidth);
    cmbDir_ = AddListField("cmbDir", &StudyRecord::Direction);
    cmbCritLane_ = AddListField("cmbCritLane", &StudyRecord::CritLane);
    studyNotes_ = AddTextField("StudyNotes", &StudyRecord::StudyNotes, StudyNotesWidth);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    Place(*grid, 0, 0, txtStudyName_, "Study Na&me");
    Place(*grid, 0, 2, cmbDir_, "&Direction");
    Place(*grid, 1, 0, txtStreetName_, "S&treet Name");
    Place(*grid, 1, 2, cmbCritLane_, "&Critical Lane");
    Place(*grid, 2, 0, studyNotes_, "Study N&otes", 3);
    grid->setColumnStretch(1, 3);
    grid->setColumnStretch(3, 1);
    QWidget* order[] = {txtStudyName_, txtStreetName_, cmbDir_, cmbCritLane_, studyNotes_};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);
}

QLineEdit* StudyDetailsPanel::AddTextField(const char* name, std::string StudyRecord::*field, int width) {
    auto* edit = Named<QLineEdit>(this, name);
    edit->setMaxLength(width);
    Connect(edit, &QLineEdit::textChanged, this, context_.Messages,
            [this, edit, field](const QString& text) { TakeEdit(*edit, field, FromQt(text)); });
    return edit;
}

QComboBox* StudyDetailsPanel::AddListField(const char* name, std::int16_t StudyRecord::*field) {
    auto* list = Named<QComboBox>(this, name);
    list->setPlaceholderText(QStringLiteral("(none)"));
    list->setToolTip(QStringLiteral("Del sets it back to none"));
    auto* none = new QAction(QStringLiteral("Set to (&none)"), list);
    none->setShortcut(Qt::Key_Delete);
    none->setShortcutContext(Qt::WidgetShortcut);
    list->addAction(none);
    list->setContextMenuPolicy(Qt::ActionsContextMenu);
    Connect(none, &QAction::triggered, this, context_.Messages, [list] { list->setCurrentIndex(-1); });
    Connect(list, &QComboBox::currentIndexChanged, this, context_.Messages,
            [this, list, field](int position) { TakeEdit(*list, field, static_cast<std::int16_t>(position)); });
    return list;
}

void StudyDetailsPanel::FillLists() {
    const QScopedValueRollback fills(showing_, true);
    const auto fill = [](QComboBox& list, const auto& items) {
        list.clear();
        for (const char* item : items) list.addItem(QString::fromLatin1(item));
    };
    fill(*cmbDir_, DirectionItems);
    fill(*cmbCritLane_, CritLaneItems);
}

void StudyDetailsPanel::ShowStudy() {
    const QScopedValueRollback shows(showing_, true);
    const StudyRecord& record = context_.State.CurrentStudy.Record;
    txtStudyName_->setText(ToQt(TrimRight(record.StudyName)));
    txtStreetName_->setText(ToQt(TrimRight(record.StreetName)));
    studyNotes_->setText(ToQt(TrimRight(record.StudyNotes)));
    cmbDir_->setCurrentIndex(record.Direction);
    cmbCritLane_->setCurrentIndex(record.CritLane);
}

void StudyDetailsPanel::FocusStudyName() { txtStudyName_->setFocus(); }

template <class Value>
void StudyDetailsPanel::TakeEdit(QWidget& control, Value StudyRecord::*field, const Value& value) {
    if (showing_) return;
    ApplicationState& state = context_.State;
    StudyContents before = ContentsOf(state.CurrentStudy);
    state.CurrentStudy.Record.*field = value;
    state.StudyUnchanged = false;
    state.StudyFieldsEdited = true;
    const int number = static_cast<int>(children().indexOf(&control)) + 1;
    if (OnEdited) OnEdited(control.accessibleName(), std::move(before), number);
}

}  // namespace vantor
