#include "counter/forms/RunTemplateBox.h"

#include <QGridLayout>

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

QLineEdit* NarrowField(QWidget* parent, const char* name, int width) {
    auto* field = Named<QLineEdit>(parent, name);
    field->setMaxLength(width);
    field->setMaximumWidth(field->fontMetrics().averageCharWidth() * (width + 4) + 16);
    return field;
}

/// A button that offers a value for a field, or says why there is none.
void ShowOffer(QPushButton& button, const QString& caption, const QString& tip, bool hasValue) {
    button.setText(caption);
    button.setAccessibleName(WithoutAccessKey(caption));
    button.setToolTip(tip);
    button.setEnabled(hasValue);
}

}  // namespace

RunTemplateBox::RunTemplateBox(QWidget* parent, MessageBoxes& messages)
    : QGroupBox(QStringLiteral("1) Run NameTemplate"), parent),
      txtTemplateBaseName_(Named<QLineEdit>(this, "txtTemplateBaseName")),
      txtTemplateDir_(NarrowField(this, "txtTemplateDir", 2)),
      txtTemplateRunNumber_(NarrowField(this, "txtTemplateRunNumber", 3)),
      btnDirection_(Named<QPushButton>(this, "btnDirection")),
      btnFreeNumber_(Named<QPushButton>(this, "btnFreeNumber")),
      lblNextName_(Named<QLabel>(this, "lblNextName")),
      BtnEditTemplate_(Named<QPushButton>(this, "BtnEditTemplate", QStringLiteral("&Edit"))) {
    setObjectName(QStringLiteral("fraTemplate"));
    setAccessibleName(title());
    txtTemplateBaseName_->setMaxLength(20);
    lblNextName_->setTextFormat(Qt::PlainText);
    BtnEditTemplate_->setIcon(LineIcon(QStringLiteral("edit")));
    const RunNameTemplate defaults;
    txtTemplateDir_->setText(ToQt(defaults.Direction));
    txtTemplateRunNumber_->setText(ToQt(defaults.RunNumber));
    ShowNextName();
    ShowDirectionOffer(false);

    auto* layout = new QGridLayout(this);
    layout->addWidget(LabelFor(txtTemplateBaseName_, QStringLiteral("&Base Name")), 0, 0);
    layout->addWidget(LabelFor(txtTemplateDir_, QStringLiteral("D&irection")), 0, 1);
    layout->addWidget(LabelFor(txtTemplateRunNumber_, QStringLiteral("Ru&n #")), 0, 2);
    layout->addWidget(txtTemplateBaseName_, 1, 0);
    layout->addWidget(txtTemplateDir_, 1, 1);
    layout->addWidget(txtTemplateRunNumber_, 1, 2);
    layout->addWidget(BtnEditTemplate_, 1, 3);
    layout->addWidget(lblNextName_, 2, 0);
    layout->addWidget(btnDirection_, 2, 1);
    layout->addWidget(btnFreeNumber_, 2, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(3, 1);
    setFocusProxy(txtTemplateBaseName_);

    for (QLineEdit* field : {txtTemplateBaseName_, txtTemplateDir_, txtTemplateRunNumber_})
        Connect(field, &QLineEdit::textChanged, this, messages, [this] {
            ShowNextName();
            OnChanged();
        });
    Connect(btnDirection_, &QPushButton::clicked, this, messages,
            [this] { txtTemplateDir_->setText(ToQt(direction_)); });
    Connect(btnFreeNumber_, &QPushButton::clicked, this, messages, [this] {
        const std::string number = FreeNumberNow();
        if (!number.empty()) SetRunNumber(number);
    });
    Connect(BtnEditTemplate_, &QPushButton::clicked, this, messages,
            [&messages] { messages.Tell("This function is not implemented yet."); });
}

RunNameTemplate RunTemplateBox::Template() const {
    return {FromQt(txtTemplateBaseName_->text().trimmed()), FromQt(txtTemplateDir_->text()),
            FromQt(txtTemplateRunNumber_->text())};
}

void RunTemplateBox::SetRunNumber(const std::string& number) { txtTemplateRunNumber_->setText(ToQt(number)); }

void RunTemplateBox::ShowNextName() {
    const RunNameTemplate parts = Template();
    lblNextName_->setText(parts.BaseName.empty() ? QStringLiteral("Enter a Base Name to see the next run's name.")
                                                 : QStringLiteral("Next name: %1").arg(ToQt(RunNameOf(parts))));
}

void RunTemplateBox::OfferNumber(const std::string& number, std::size_t count, const QString& places) {
    QString caption = QStringLiteral("&Free number");
    QString tip = QStringLiteral("Enter a Base Name to see which number is free.");
    if (!number.empty()) {
        caption = ToQt(number) + QStringLiteral(" is &free");
        tip = count == 1
                  ? QStringLiteral("The lowest number that is free %1").arg(places)
                  : QStringLiteral("The lowest number from which %1 in a row are free %2").arg(count).arg(places);
    } else if (!Template().BaseName.empty()) {
        caption = QStringLiteral("None is free");
        tip = QStringLiteral("There are not %1 numbers in a row free %2.").arg(count).arg(places);
    }
    ShowOffer(*btnFreeNumber_, caption, tip, !number.empty());
}

void RunTemplateBox::OfferDirection(const std::string& direction) {
    direction_ = direction;
    if (direction.empty())
        ShowOffer(*btnDirection_, QStringLiteral("From the lo&g"),
                  QStringLiteral("Select runs of one direction to take it from their log."), false);
    else
        ShowOffer(*btnDirection_, ToQt(direction) + QStringLiteral(" (from the lo&g)"),
                  QStringLiteral("The direction that the log of the runs tells"), true);
}

}  // namespace vantor
