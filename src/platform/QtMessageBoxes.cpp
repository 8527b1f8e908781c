#include "platform/QtMessageBoxes.h"

#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr int IconSize = 40;

/// The name of the line icon; empty for none.
QString IconNameOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::None: break;
        case MessageIcon::Information: return QStringLiteral("about");
        case MessageIcon::Question: return QStringLiteral("help");
        case MessageIcon::Warning:
        case MessageIcon::Critical: return QStringLiteral("missing");
    }
    return {};
}

struct ButtonSet {
    QMessageBox::StandardButtons All;
    QMessageBox::StandardButton Default;
    QMessageBox::StandardButton Escape;
};

ButtonSet ButtonsOf(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::YesNo: return {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No};
        case MessageButtons::YesNoCancel:
            return {QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes, QMessageBox::Cancel};
        case MessageButtons::RetryCancel:
            return {QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Retry, QMessageBox::Cancel};
        case MessageButtons::Ok: break;
    }
    return {QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok};
}

MessageAnswer AnswerOf(int button) {
    switch (button) {
        case QMessageBox::Yes: return MessageAnswer::Yes;
        case QMessageBox::No: return MessageAnswer::No;
        case QMessageBox::Retry: return MessageAnswer::Retry;
        case QMessageBox::Cancel: return MessageAnswer::Cancel;
        default: return MessageAnswer::Ok;
    }
}

}  // namespace

MessageAnswer QtMessageBoxes::Ask(const Prompt& prompt) {
    const ButtonSet buttons = ButtonsOf(prompt.Buttons);
    QMessageBox box(QMessageBox::NoIcon, ToQt(prompt.Title), ToQt(prompt.Text), buttons.All,
                    QApplication::activeWindow());
    if (const QString icon = IconNameOf(prompt.Icon); !icon.isEmpty())
        box.setIconPixmap(LineIcon(icon).pixmap(QSize(IconSize, IconSize), box.devicePixelRatio()));
    box.setTextFormat(Qt::PlainText);
    const QMessageBox::StandardButton order[] = {QMessageBox::Ok, QMessageBox::Yes, QMessageBox::Retry, QMessageBox::No,
                                                 QMessageBox::Cancel};
    auto caption = prompt.Captions.begin();
    for (const auto button : order)
        if (buttons.All.testFlag(button) && caption != prompt.Captions.end())
            box.button(button)->setText(ToQt(*caption++));
    box.setDefaultButton(prompt.LosesSomething ? buttons.Escape : buttons.Default);
    box.setEscapeButton(buttons.Escape);
    if (!prompt.Details.empty()) box.setDetailedText(ToQt(prompt.Details));
    // The box owns it.
    auto* tick = prompt.Tick.empty() ? nullptr : new QCheckBox(ToQt(prompt.Tick));
    if (tick != nullptr) box.setCheckBox(tick);
    const MessageAnswer answer = AnswerOf(box.exec());
    return answer == MessageAnswer::Ok && tick != nullptr && tick->isChecked() ? MessageAnswer::OkForAll : answer;
}

}  // namespace vantor
