#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <map>
#include <set>

#include "EveryScreen.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

/// What the user can act upon or step through.
bool IsControl(QAccessible::Role role) {
    static const std::set<QAccessible::Role> controls = {
        QAccessible::PushButton, QAccessible::ButtonMenu,   QAccessible::CheckBox, QAccessible::RadioButton,
        QAccessible::ComboBox,   QAccessible::EditableText, QAccessible::Table,    QAccessible::Tree,
        QAccessible::List,       QAccessible::SpinBox,      QAccessible::Slider,   QAccessible::MenuItem,
        QAccessible::PageTab,    QAccessible::PageTabList,  QAccessible::Link,     QAccessible::Chart,
        QAccessible::Document,   QAccessible::TreeItem,     QAccessible::ListItem};
    return controls.contains(role);
}

bool TakesKeys(const QWidget& widget) {
    return !widget.isWindow() && (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr;
}

/// The one of its group that is chosen takes the Tab key; the arrow keys lead to the others.
bool IsReachedByArrows(const QWidget& widget) {
    const auto* option = qobject_cast<const QRadioButton*>(&widget);
    return option != nullptr && !option->isChecked();
}

/// What a person misses who hears a window instead of seeing it, or who has no mouse; a line each.
class Review {
public:
    explicit Review(QWidget& window) : window_(window) {
        auto* tabs = window.findChild<QTabWidget*>();
        for (int page = 0; page < (tabs == nullptr ? 1 : tabs->count()); ++page) {
            if (tabs != nullptr) tabs->setCurrentIndex(page);
            Hear(*QAccessible::queryAccessibleInterface(&window));
            WalkByTab();
            CompareAccessKeys();
        }
    }
    std::vector<std::string> Problems;

private:
    void Miss(const QObject* control, const QString& what) {
        Problems.push_back(FromQt((control == nullptr ? QString() : control->objectName()) + QLatin1Char(' ') + what));
    }

    void Hear(QAccessibleInterface& item) {
        const QAccessible::State state = item.state();
        if (state.invisible) return;
        const auto* widget = qobject_cast<QWidget*>(item.object());
        if (widget == nullptr || !widget->isWindow()) HearControl(item, widget);
        if (const auto* label = qobject_cast<const QLabel*>(widget)) HearValue(item, *label);
        // A box that can be typed into speaks for its field.
        if (item.role() == QAccessible::ComboBox) return;
        for (int i = 0; i < item.childCount(); ++i) Hear(*item.child(i));
    }

    void HearControl(QAccessibleInterface& item, const QWidget* widget) {
        const QAccessible::State state = item.state();
        const bool takesKeys = widget != nullptr && TakesKeys(*widget);
        const bool isRead = item.role() == QAccessible::StaticText || item.role() == QAccessible::ScrollBar;
        if (takesKeys && !IsControl(item.role()) && !isRead) Miss(widget, QStringLiteral("has no role"));
        const QString name = item.text(QAccessible::Name).remove(QLatin1Char('.')).trimmed();
        if (name.isEmpty() && (takesKeys || IsControl(item.role())))
            Miss(widget, QStringLiteral("has no name, role %1").arg(item.role()));
        if (takesKeys && !state.disabled && !state.focusable) Miss(widget, QStringLiteral("says it takes no keys"));
        const auto* field = qobject_cast<const QLineEdit*>(widget);
        if (field != nullptr && field->isReadOnly() != bool(state.readOnly))
            Miss(widget, QStringLiteral("does not say whether it can be edited"));
        if (item.role() == QAccessible::Table && item.tableInterface()->rowCount() == 0 &&
            item.text(QAccessible::Description).isEmpty())
            Miss(widget, QStringLiteral("does not say why it is empty"));
    }

    void HearValue(const QAccessibleInterface& item, const QLabel& label) {
        const QString heard = item.text(QAccessible::Name) + item.text(QAccessible::Description);
        const QString shown = label.buddy() == nullptr ? label.text() : WithoutAccessKey(label.text());
        if (!heard.simplified().contains(shown.simplified())) Miss(&label, QStringLiteral("keeps its text to itself"));
    }

    void WalkByTab() {
        constexpr int MostSteps = 200;  // a page of the manual has a step for each of its links
        const QWidget* first = QApplication::focusWidget();
        std::set<const QWidget*> reached;
        do {
            reached.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        } while (++steps_ % MostSteps != 0 && (reached.size() < 2 || QApplication::focusWidget() != first));
        for (const QWidget* widget : window_.findChildren<QWidget*>()) {
            const bool waits = !widget->isVisible() || !widget->isEnabled();
            if (!waits && TakesKeys(*widget) && !IsReachedByArrows(*widget) && !reached.contains(widget))
                Miss(widget, QStringLiteral("is not reached by Tab"));
        }
    }

    void CompareAccessKeys() {
        QStringList captions;
        for (const auto* button : window_.findChildren<QAbstractButton*>())
            if (button->isVisible()) captions += button->text();
        for (const auto* label : window_.findChildren<QLabel*>())
            if (label->isVisible() && label->buddy() != nullptr) captions += label->text();
        for (const auto* tabs : window_.findChildren<QTabBar*>())
            for (int tab = 0; tab < tabs->count(); ++tab) captions += tabs->tabText(tab);
        for (const auto* bar : window_.findChildren<QMenuBar*>()) {
            captions += CaptionsOf(bar->actions());
            for (const QAction* menu : bar->actions()) ExpectDifferentKeys(CaptionsOf(menu->menu()->actions()));
        }
        ExpectDifferentKeys(captions);
    }

    static QStringList CaptionsOf(const QList<QAction*>& actions) {
        QStringList captions;
        for (const QAction* action : actions) captions += action->text();
        return captions;
    }

    void ExpectDifferentKeys(const QStringList& captions) {
        std::map<QString, QString> captionOf;
        for (const QString& caption : captions) {
            const QString key = QKeySequence::mnemonic(caption).toString();
            if (key.isEmpty()) continue;
            const auto [first, isNew] = captionOf.emplace(key, caption);
            if (!isNew) Miss(nullptr, QStringLiteral("%1: %2 and %3").arg(key, first->second, caption));
        }
    }

    QWidget& window_;
    int steps_ = 0;
};

class AccessibilityTest : public testing::TestWithParam<std::tuple<ScreenCase, bool>> {};

TEST_P(AccessibilityTest, EveryControlIsNamedAndReached) {
    const auto& [screen, isFilled] = GetParam();
    ShownProgram program(isFilled);
    const auto window = screen.Open(program);
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const auto buttons = window->findChildren<QPushButton*>();
    EXPECT_EQ(std::ranges::any_of(buttons, [](const QPushButton* button) { return button->isDefault(); }),
              screen.EnterActs);
    EXPECT_THAT(Review(*window).Problems, testing::IsEmpty());
    window->hide();
}

std::string NameOfCase(const testing::TestParamInfo<AccessibilityTest::ParamType>& test) {
    return std::get<0>(test.param).Name + std::string(std::get<1>(test.param) ? "Filled" : "Empty");
}

INSTANTIATE_TEST_SUITE_P(Screens, AccessibilityTest,
                         testing::Combine(testing::ValuesIn(EveryScreen()), testing::Bool()), NameOfCase);

}  // namespace
}  // namespace vantor
