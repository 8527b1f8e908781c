#pragma once

#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QSet>
#include <QTabWidget>
#include <QTextBrowser>

#include "platform/HelpBook.h"

namespace vantor {

/// Shows a page of the manual; what the page names comes from the manual, too. Pictures that are wider than the page
/// are shown as wide as it.
class HelpPage : public QTextBrowser {
public:
    HelpPage(QWidget* parent, const HelpBook& book);
    QVariant loadResource(int type, const QUrl& name) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QImage Picture(const QUrl& name) const;

    QSet<QUrl> pictures_;  // of the pages that were shown
    const HelpBook& book_;
};

/// The manual with its contents, its index and a search. It is no modal window, and stays usable while modal ones are
/// open: it lies over the topmost of them.
class HelpWindow : public QMainWindow {
public:
    /// Error 53 when the help file is missing, 57 when it is damaged.
    explicit HelpWindow(const QString& file);

    const QString& File() const { return file_; }
    /// Shows the window in front with the page of a context number, its start page where no page has it.
    void ShowTopic(int context);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void BuildToolbar();
    QWidget* BuildContents();
    QWidget* BuildIndex();
    QWidget* BuildSearch();
    void AddKeys();
    void LieOverModalWindow();
    void Follow(const QUrl& link);
    void Open(const QUrl& page);
    void OpenFound(const QListWidgetItem* item);
    QString NothingFound(const QString& words);
    void ShowPlaceInContents();
    void Search(const QString& words);
    void MarkWords(const QStringList& words);

    QString file_;
    HelpBook book_;
    QTabWidget* tabHelp_;
    HelpPage* txtPage_;
    QLineEdit* txtSearch_ = nullptr;
    QListWidget* lstFound_ = nullptr;
};

}  // namespace vantor
