#include "platform/QtMessageBoxes.h"

#include <QApplication>
#include <QMessageBox>

#include "core/forms/Named.h"

namespace vantor {
namespace {

QMessageBox::Icon IconOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::None: return QMessageBox::NoIcon;
        case MessageIcon::Information: return QMessageBox::Information;
        case MessageIcon::Question: return QMessageBox::Question;
        case MessageIcon::Warning: return QMessageBox::Warning;
        case MessageIcon::Critical: return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

struct ButtonSet {
    QMessageBox::StandardButtons All;
    QMessageBox::StandardButton Default;
    QMessageBox::StandardButton Escape;
};

ButtonSet ButtonsOf(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::YesNo: return {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No};
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
    QMessageBox box(IconOf(prompt.Icon), ToQt(prompt.Title), ToQt(prompt.Text), buttons.All,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(buttons.Default);
    box.setEscapeButton(buttons.Escape);
    return AnswerOf(box.exec());
}

}  // namespace vantor
