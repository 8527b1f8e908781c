#include "platform/HelpWindow.h"

#include <QBuffer>
#include <QDesktopServices>
#include <QEvent>
#include <QGuiApplication>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QImageReader>
#include <QLabel>
#include <QPointer>
#include <QShortcut>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWindow>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"

namespace vantor {
namespace {

// What an entry of the pages found leads to.
constexpr int PageRole = Qt::UserRole;
constexpr int WordsRole = Qt::UserRole + 1;

}  // namespace

HelpPage::HelpPage(QWidget* parent, const HelpBook& book) : QTextBrowser(parent), book_(book) {
    setOpenLinks(false);
    document()->setDocumentMargin(16);
    const QUrl styles = book.StartPage().resolved(QUrl(QStringLiteral("style.css")));
    document()->setDefaultStyleSheet(QString::fromUtf8(book.Data(styles)));
}

/// All files of the manual lie side by side. The page under way is no base for names: it is not the source yet.
QVariant HelpPage::loadResource(int type, const QUrl& name) {
    if (type != QTextDocument::ImageResource) return book_.Data(book_.StartPage().resolved(name));
    pictures_.insert(name);
    return Picture(name);
}

/// As sharp as the screen is, as large as the page has room for.
QImage HelpPage::Picture(const QUrl& name) const {
    QByteArray bytes = book_.Data(book_.StartPage().resolved(name));
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    QSizeF size = reader.size();
    const qreal room = viewport()->width() - 2 * document()->documentMargin();
    if (size.width() > room) size.scale(room, size.height(), Qt::KeepAspectRatio);
    reader.setScaledSize((size * devicePixelRatioF()).toSize());
    QImage picture = reader.read();
    picture.setDevicePixelRatio(devicePixelRatioF());
    return picture;
}

void HelpPage::resizeEvent(QResizeEvent* event) {
    for (const QUrl& name : pictures_) document()->addResource(QTextDocument::ImageResource, name, Picture(name));
    QTextBrowser::resizeEvent(event);
}

HelpWindow::HelpWindow(const QString& file) : file_(file), book_(file) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Vantor Help"));
    // The program ends with its main window, also while the manual is open.
    setAttribute(Qt::WA_QuitOnClose, false);

    auto* halves = Named<QSplitter>(this, "splHelp");
    tabHelp_ = Named<QTabWidget>(halves, "tabHelp");
    tabHelp_->setAccessibleName(QStringLiteral("Contents, index and search"));
    txtPage_ = new HelpPage(halves, book_);
    txtPage_->setObjectName(QStringLiteral("txtPage"));
    txtPage_->setAccessibleName(QStringLiteral("Page"));
    tabHelp_->addTab(BuildContents(), QStringLiteral("&Contents"));
    tabHelp_->addTab(BuildIndex(), QStringLiteral("&Index"));
    tabHelp_->addTab(BuildSearch(), QStringLiteral("&Search"));
    halves->setStretchFactor(1, 1);
    halves->setSizes({280, 720});
    halves->setChildrenCollapsible(false);
    setCentralWidget(halves);
    BuildToolbar();
    AddKeys();
    resize(1080, 720);
    FitToScreen(*this);

    QObject::connect(txtPage_, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { Follow(link); });
    QObject::connect(txtPage_, &QTextBrowser::historyChanged, this, [this] { ShowPlaceInContents(); });
}

void HelpWindow::BuildToolbar() {
    auto* toolbar = new QToolBar(QStringLiteral("Toolbar"), this);
    toolbar->setObjectName(QStringLiteral("tbrHelp"));
    toolbar->setMovable(false);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    addToolBar(toolbar);
    const auto add = [&](const char* icon, const QString& text, const QKeySequence& key, const auto& action) {
        QAction* added = toolbar->addAction(LineIcon(QLatin1String(icon)), text);
        added->setShortcut(key);
        added->setToolTip(QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText)));
        QObject::connect(added, &QAction::triggered, txtPage_, action);
        toolbar->widgetForAction(added)->setFocusPolicy(Qt::TabFocus);
        return added;
    };
    HelpPage* page = txtPage_;
    QAction* back = add("back", QStringLiteral("Back"), Qt::ALT | Qt::Key_Left, [page] { page->backward(); });
    QAction* forward = add("forward", QStringLiteral("Forward"), Qt::ALT | Qt::Key_Right, [page] { page->forward(); });
    add("help", QStringLiteral("Start"), Qt::ALT | Qt::Key_Home, [this] { Open(book_.StartPage()); });
    toolbar->addSeparator();
    add("zoom-out", QStringLiteral("Smaller"), QKeySequence::ZoomOut, [page] { page->zoomOut(); });
    add("zoom-in", QStringLiteral("Larger"), QKeySequence::ZoomIn, [page] { page->zoomIn(); });
    back->setEnabled(false);
    forward->setEnabled(false);
    QObject::connect(page, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    QObject::connect(page, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
}

QWidget* HelpWindow::BuildContents() {
    QHelpContentWidget* contents = book_.Engine().contentWidget();
    contents->setObjectName(QStringLiteral("treContents"));
    contents->setAccessibleName(QStringLiteral("Contents"));
    QObject::connect(contents, &QHelpContentWidget::linkActivated, this, [this](const QUrl& page) { Open(page); });
    QObject::connect(contents, &QHelpContentWidget::clicked, this, [this](const QModelIndex& entry) {
        Open(book_.Engine().contentModel()->contentItemAt(entry)->url());
    });
    QObject::connect(book_.Engine().contentModel(), &QHelpContentModel::contentsCreated, this, [this, contents] {
        contents->expandAll();
        ShowPlaceInContents();
    });
    return contents;
}

QWidget* HelpWindow::BuildIndex() {
    auto* side = new QWidget(tabHelp_);
    auto* keyword = Named<QLineEdit>(side, "txtKeyword");
    keyword->setClearButtonEnabled(true);
    QHelpIndexWidget* index = book_.Engine().indexWidget();
    index->setObjectName(QStringLiteral("lstIndex"));
    index->setAccessibleName(QStringLiteral("Index"));
    auto* layout = new QVBoxLayout(side);
    layout->addWidget(LabelFor(keyword, QStringLiteral("&Look for")));
    layout->addWidget(keyword);
    layout->addWidget(index, 1);
    QObject::connect(keyword, &QLineEdit::textChanged, index,
                     [index](const QString& text) { index->filterIndices(text); });
    QObject::connect(keyword, &QLineEdit::returnPressed, index, &QHelpIndexWidget::activateCurrentItem);
    QObject::connect(index, &QHelpIndexWidget::clicked, index, &QHelpIndexWidget::activateCurrentItem);
    QObject::connect(index, &QHelpIndexWidget::documentActivated, this,
                     [this](const QHelpLink& page) { Open(page.url); });
    QObject::connect(index, &QHelpIndexWidget::documentsActivated, this, [this](const QList<QHelpLink>& pages) {
        if (!pages.isEmpty()) Open(pages.constFirst().url);
    });
    return side;
}

QWidget* HelpWindow::BuildSearch() {
    auto* side = new QWidget(tabHelp_);
    txtSearch_ = Named<QLineEdit>(side, "txtSearch");
    txtSearch_->setClearButtonEnabled(true);
    lstFound_ = Named<QListWidget>(side, "lstFound");
    const QString askForWords = QStringLiteral("Type one or more words, or a phrase in \"quotation marks\".");
    auto* found = Named<QLabel>(side, "lblFound", askForWords);
    found->setWordWrap(true);
    found->setBuddy(lstFound_);
    auto* layout = new QVBoxLayout(side);
    layout->addWidget(LabelFor(txtSearch_, QStringLiteral("&Words on the page")));
    layout->addWidget(txtSearch_);
    layout->addWidget(found);
    layout->addWidget(lstFound_, 1);
    lstFound_->setAccessibleName(QStringLiteral("Pages found"));
    QObject::connect(txtSearch_, &QLineEdit::textChanged, this, [this, found, askForWords](const QString& words) {
        Search(words);
        const int count = lstFound_->count();
        if (words.trimmed().isEmpty())
            found->setText(askForWords);
        else if (count == 0)
            found->setText(NothingFound(words));
        else
            found->setText(count == 1 ? QStringLiteral("1 page") : QStringLiteral("%1 pages").arg(count));
    });
    QObject::connect(txtSearch_, &QLineEdit::returnPressed, this, [this] { OpenFound(lstFound_->currentItem()); });
    for (const auto signal : {&QListWidget::itemActivated, &QListWidget::itemClicked})
        QObject::connect(lstFound_, signal, this, [this](const QListWidgetItem* item) { OpenFound(item); });
    return side;
}

void HelpWindow::AddKeys() {
    const auto add = [this](const QKeySequence& key, const auto& action) {
        QObject::connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    add(Qt::Key_Escape, [this] { close(); });
    add(QKeySequence::Find, [this] {
        tabHelp_->setCurrentWidget(txtSearch_->parentWidget());
        txtSearch_->setFocus();
        txtSearch_->selectAll();
    });
    add(Qt::Key_F6, [this] { txtPage_->setFocus(); });
    add(Qt::CTRL | Qt::Key_0, [this] { txtPage_->setFont(font()); });
}

void HelpWindow::ShowTopic(int context) {
    const QUrl page = book_.PageOf(context);
    Open(page.isValid() ? page : book_.StartPage());
    setWindowState(windowState() & ~Qt::WindowMinimized);
    winId();  // so that the window is there to lie over another one
    LieOverModalWindow();
    show();
    raise();
    activateWindow();
    txtPage_->setFocus();
}

bool HelpWindow::event(QEvent* event) {
    // A modal window that opens later, or closes, must not take the manual away.
    if (event->type() == QEvent::WindowBlocked) LieOverModalWindow();
    return QMainWindow::event(event);
}

/// Windows that lie over a modal window by the system's account are the only ones that it does not block.
void HelpWindow::LieOverModalWindow() {
    QWindow* own = windowHandle();
    QWindow* modal = QGuiApplication::modalWindow();
    // A modal window that is being closed goes on blocking for a moment.
    if (own == nullptr || modal == nullptr || !modal->isVisible() || own->transientParent() == modal) return;
    own->setTransientParent(modal);
    QObject::connect(modal, &QWindow::visibleChanged, this, [this, modal = QPointer(modal)](bool isVisible) {
        if (isVisible || windowHandle()->transientParent() != modal) return;
        windowHandle()->setTransientParent(nullptr);
        QTimer::singleShot(0, this, [this] { LieOverModalWindow(); });
    });
}

void HelpWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && txtPage_->source().isValid()) txtPage_->reload();
}

void HelpWindow::Follow(const QUrl& link) {
    if (link.scheme() == txtPage_->source().scheme())
        Open(link);
    else
        QDesktopServices::openUrl(link);
}

void HelpWindow::Open(const QUrl& page) {
    txtPage_->setExtraSelections({});
    txtPage_->setSource(page);
}

void HelpWindow::OpenFound(const QListWidgetItem* item) {
    if (item == nullptr) return;
    Open(item->data(PageRole).toUrl());
    MarkWords(item->data(WordsRole).toStringList());
}

void HelpWindow::ShowPlaceInContents() {
    QHelpContentWidget* contents = book_.Engine().contentWidget();
    // Several entries may lead to places of one page: the chosen one stays chosen.
    const auto* chosen = book_.Engine().contentModel()->contentItemAt(contents->currentIndex());
    if (chosen != nullptr && chosen->url().matches(txtPage_->source(), QUrl::RemoveFragment)) return;
    const QModelIndex place = contents->indexOf(txtPage_->source());
    if (place.isValid()) contents->setCurrentIndex(place);
}

void HelpWindow::Search(const QString& words) {
    lstFound_->clear();
    for (const PageSearch::Hit& hit : book_.Search().Find(FromQt(words))) {
        auto* item = new QListWidgetItem(ToQt(hit.Title), lstFound_);
        QStringList found;
        for (const std::string& word : hit.Words) found += ToQt(word);
        item->setData(PageRole, QUrl(ToQt(hit.Address)));
        item->setData(WordsRole, found);
    }
    lstFound_->setCurrentRow(0);
}

QString HelpWindow::NothingFound(const QString& words) {
    QStringList unknown;
    for (const std::string& word : book_.Search().Unknown(FromQt(words)))
        unknown += QStringLiteral("\u201C%1\u201D").arg(ToQt(word));
    const QString reason = unknown.isEmpty()
                               ? QStringLiteral("No page has all these words.")
                               : QStringLiteral("No page has %1.").arg(unknown.join(QStringLiteral(" or ")));
    return reason + QStringLiteral(" Try fewer or other words, or the index.");
}

/// Shows where the words stand on the page and scrolls to the first one.
void HelpWindow::MarkWords(const QStringList& words) {
    QList<QTextEdit::ExtraSelection> marks;
    QTextCursor first;
    const ColourPair colours = YellowPair(palette());
    const auto whole = QTextDocument::FindWholeWords | QTextDocument::FindCaseSensitively;
    for (const QString& word : words) {
        const QTextDocument* document = txtPage_->document();
        for (QTextCursor at = document->find(word, 0, whole); !at.isNull(); at = document->find(word, at, whole)) {
            QTextEdit::ExtraSelection mark{at, {}};
            mark.format.setBackground(colours.Background);
            mark.format.setForeground(colours.Text);
            marks.append(mark);
            if (first.isNull() || at < first) first = at;
        }
    }
    txtPage_->setExtraSelections(marks);
    if (first.isNull()) return;
    first.clearSelection();
    txtPage_->setTextCursor(first);
    txtPage_->ensureCursorVisible();
}

}  // namespace vantor
