#include <gmock/gmock.h>

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QMenuBar>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTextEdit>
#include <QTreeWidget>
#include <cstdlib>
#include <map>

#include "EveryScreen.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

QString OneLine(QString text) { return text.replace(QLatin1Char('\n'), QStringLiteral("\\n")); }
QString Quoted(const QString& text) { return QLatin1Char('"') + OneLine(text) + QLatin1Char('"'); }

/// A screen as text, a line a control with what it shows when it is opened:
///   "caption" name = value; what is not as usual; tip: what the mouse shows
class ScreenText {
public:
    explicit ScreenText(QWidget& window) {
        Lines += QLatin1String("screen ") + window.objectName() + QLatin1Char(' ') + Quoted(window.windowTitle());
        for (const QAction* action : window.findChildren<QAction*>())
            if (!action->objectName().isEmpty() && !action->objectName().startsWith(QLatin1Char('_')))
                AddAction(*action);
        AddChildren(window);
    }
    QStringList Lines;

private:
    static bool HoldsPartsOfItsOwn(const QWidget& widget) {
        return widget.inherits("QComboBox") || widget.inherits("QAbstractSpinBox") ||
               widget.inherits("QAbstractScrollArea") || widget.inherits("QMenuBar") || widget.inherits("QTabBar");
    }

    void AddChildren(const QWidget& parent) {
        for (QObject* child : parent.children()) {
            auto* widget = qobject_cast<QWidget*>(child);
            if (widget == nullptr || widget->isWindow()) continue;
            AddWidget(*widget);
            if (!HoldsPartsOfItsOwn(*widget) || widget->inherits("QScrollArea")) AddChildren(*widget);
        }
    }

    void AddAction(const QAction& action) {
        QString line = QLatin1String("action ") + Quoted(action.text()) + QLatin1Char(' ') + action.objectName();
        if (!action.shortcut().isEmpty()) line += QLatin1String("; ") + action.shortcut().toString();
        if (action.isCheckable()) line += action.isChecked() ? QLatin1String("; on") : QLatin1String("; off");
        Finish(line, action.isEnabled(), !action.isVisible(),
               action.toolTip() == action.iconText() ? QString() : action.toolTip());
    }

    void AddWidget(QWidget& widget) {
        const QString name = widget.objectName();
        auto* label = qobject_cast<QLabel*>(&widget);
        if (label != nullptr && label->buddy() != nullptr) return;  // stands in its field's line
        const bool isText = label != nullptr && !label->text().isEmpty();
        if (!isText && (name.isEmpty() || name.startsWith(QLatin1String("qt_")))) return;
        const QString caption = CaptionOf(widget);
        const auto* option = qobject_cast<QRadioButton*>(&widget);
        if (option != nullptr && option->text() != caption) Lines += QLatin1String("= ") + Quoted(caption);
        const QString value = ValueOf(widget);
        if (caption.isNull() && value.isNull() && !widget.inherits("QAbstractButton")) return;  // a mere frame
        const QString shown = option != nullptr ? option->text() : caption;
        QString line = shown.isNull() ? name : Quoted(shown) + QLatin1Char(' ') + name;
        if (!value.isNull()) line += QLatin1String(" = ") + value;
        Finish(line.trimmed(), widget.isEnabledTo(widget.parentWidget()), IsHidden(widget), widget.toolTip());
        if (auto* table = qobject_cast<QTableView*>(&widget)) AddRows(*table);
    }

    void Finish(QString line, bool isEnabled, bool isHidden, const QString& tip) {
        if (!isEnabled) line += QLatin1String("; disabled");
        if (isHidden) line += QLatin1String("; hidden");
        if (!tip.isEmpty()) line += QLatin1String("; tip: ") + OneLine(tip);
        Lines += line;
    }

    /// The pages of a tab widget that wait behind the first one are not hidden.
    static bool IsHidden(const QWidget& widget) {
        for (const QWidget* part = &widget; part != nullptr && !part->isWindow(); part = part->parentWidget())
            if (part->isHidden() && !part->parentWidget()->inherits("QStackedWidget")) return true;
        return false;
    }

    static QString CaptionOf(QWidget& widget) {
        for (const auto* label : widget.window()->findChildren<QLabel*>())
            if (label->buddy() == &widget) return label->text();
        if (const auto* button = qobject_cast<QAbstractButton*>(&widget)) return button->text();
        if (const auto* group = qobject_cast<QGroupBox*>(&widget)) return group->title();
        return {};
    }

    static QString ValueOf(QWidget& widget) {
        if (const auto* label = qobject_cast<QLabel*>(&widget)) return Quoted(label->text());
        if (const auto* field = qobject_cast<QLineEdit*>(&widget))
            return Quoted(field->text()) + (field->isReadOnly() ? QLatin1String("; read only") : QString());
        if (const auto* button = qobject_cast<QAbstractButton*>(&widget); button != nullptr && button->isCheckable())
            return button->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
        if (const auto* list = qobject_cast<QComboBox*>(&widget)) {
            QStringList items;
            for (int i = 0; i < list->count(); ++i) items += list->itemText(i);
            return Quoted(list->currentText()) + QLatin1String(" of ") + items.join(QLatin1String(", "));
        }
        if (const auto* text = qobject_cast<QTextEdit*>(&widget)) return Quoted(text->toPlainText().left(80));
        if (const auto* bar = qobject_cast<QProgressBar*>(&widget)) return QString::number(bar->value());
        if (const auto* tabs = qobject_cast<QTabWidget*>(&widget)) {
            QStringList captions;
            for (int i = 0; i < tabs->count(); ++i) captions += tabs->tabText(i);
            return captions.join(QLatin1String(" | "));
        }
        if (const auto* table = qobject_cast<QTableView*>(&widget)) {
            QStringList heads;
            for (int i = 0; i < table->model()->columnCount(); ++i)
                if (!table->isColumnHidden(i)) heads += table->model()->headerData(i, Qt::Horizontal).toString();
            return OneLine(heads.join(QLatin1String(" | "))) + QLatin1String("; ") +
                   Quoted(table->accessibleDescription());
        }
        if (const auto* tree = qobject_cast<QTreeWidget*>(&widget)) {
            QStringList folders;
            for (const auto* item : tree->findItems(QStringLiteral("*"), Qt::MatchWildcard | Qt::MatchRecursive))
                folders += item->text(0);
            return folders.join(QLatin1String(" | "));
        }
        return {};
    }

    void AddRows(const QTableView& table) {
        constexpr int MostRows = 4;
        for (int row = 0; row < std::min(table.model()->rowCount(), MostRows); ++row) {
            QStringList texts;
            for (int i = 0; i < table.model()->columnCount(); ++i)
                if (!table.isColumnHidden(i)) texts += table.model()->index(row, i).data().toString();
            Lines += QLatin1String("  ") + texts.join(QLatin1String(" | "));
        }
    }
};

/// The lines; of those of a control array that differ in its index alone the first, with their number.
std::string Joined(const QStringList& lines) {
    static const QRegularExpression index(QStringLiteral("^[^=;]*\\w\\((\\d+)\\)"));
    QStringList kinds, shown;
    std::map<QString, int> count;
    for (const QString& line : lines) {
        const auto match = index.match(line);
        QString kind = line;
        if (match.hasMatch()) {
            const QRegularExpression number(QStringLiteral("\\b%1\\b").arg(match.captured(1)));
            kind = match.captured(0).replace(number, QStringLiteral("#")) + line.mid(match.capturedEnd(0));
        }
        if (match.hasMatch() && count[kind]++ > 0) continue;
        kinds += kind;
        shown += line;
    }
    for (int i = 0; i < shown.size(); ++i)
        if (count[kinds[i]] > 1) shown[i] += QStringLiteral("; %1 of this kind").arg(count[kinds[i]]);
    return FromQt(shown.join(QLatin1Char('\n'))) + "\n";
}

/// `VANTOR_SCREEN_PICTURES=FOLDER` puts a picture of every screen into the folder, with VANTOR_DARK a dark one.
void TakePicture(QWidget& window, const char* name) {
    const QString folder = qEnvironmentVariable("VANTOR_SCREEN_PICTURES");
    auto* tabs = window.findChild<QTabWidget*>();
    for (int page = 0; !folder.isEmpty() && page < (tabs == nullptr ? 1 : tabs->count()); ++page) {
        if (tabs != nullptr) tabs->setCurrentIndex(page);
        window.grab().save(QStringLiteral("%1/%2-%3.png").arg(folder, QLatin1String(name)).arg(page));
    }
}

QStringList TextOfOpened(const ScreenCase& screen, bool isFilled, QString* help) {
    if (qEnvironmentVariableIsSet("VANTOR_DARK")) UseTheme(ThemeChoice::Dark);
    ShownProgram program(isFilled);
    const auto window = screen.Open(program);
    window->show();
    QCoreApplication::processEvents();
    QStringList lines = ScreenText(*window).Lines;
    if (const QWidget* focus = window->focusWidget()) lines.front() += FocusMark + focus->objectName();
    if (auto* button = window->findChild<QAbstractButton*>(QStringLiteral("cmdHelp"))) button->click();
    for (const std::string& page : program.DesktopServices.Opened) *help = ToQt(page.substr(page.find('#')));
    if (isFilled) TakePicture(*window, screen.Name);
    window->hide();
    return lines;
}

/// As it opens with nothing on the disk, then the lines that are others where there is something to show.
std::pair<QStringList, QStringList> TextsOf(const ScreenCase& screen) {
    QString help;
    QStringList lines = TextOfOpened(screen, false, &help);
    QStringList others = TextOfOpened(screen, true, &help);
    others.removeIf([&](const QString& line) { return lines.contains(line); });
    if (!help.isEmpty()) lines.front() += QLatin1String("; help ") + help;
    return {lines, others};
}

class ScreenTextsTest : public testing::TestWithParam<ScreenCase> {};

/// data/screens has each screen's texts, of one that is like another the lines that this one does not have.
/// `VANTOR_WRITE_SCREENS=1 ctest -R ^screen_tests$` writes the pages anew; read them line by line before they are
/// committed.
TEST_P(ScreenTextsTest, SaysWhatItsPageSays) {
    auto [lines, others] = TextsOf(GetParam());
    for (const ScreenCase& screen : EveryScreen()) {
        if (std::string(screen.Name) != GetParam().Like) continue;
        const auto like = TextsOf(screen);
        lines.removeIf([&](const QString& line) { return like.first.contains(line); });
        others.removeIf([&](const QString& line) { return like.second.contains(line); });
        if (lines.isEmpty()) lines << QString();
        lines.front() += QLatin1String("; like ") + screen.Name;
    }
    const std::string text = Joined(lines) + "\nwith something to show:\n" + Joined(others);
    const std::string path = std::string(VANTOR_TEST_DATA "screens/") + GetParam().Name + ".txt";
    if (std::getenv("VANTOR_WRITE_SCREENS") != nullptr) std::ofstream(path) << text;
    std::ifstream page(path);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(page), {})) << path;
}

INSTANTIATE_TEST_SUITE_P(Screens, ScreenTextsTest, testing::ValuesIn(EveryScreen()),
                         [](const testing::TestParamInfo<ScreenCase>& test) { return std::string(test.param.Name); });

}  // namespace
}  // namespace vantor
