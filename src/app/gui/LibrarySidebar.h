#pragma once

#include "archive/CategoryFilter.h"
#include "archive/LibraryCounts.h"
#include "archive/SidebarScope.h"

#include <QList>
#include <QWidget>

#include <optional>

class QAction;
class QLabel;
class QListWidget;
class QPushButton;
class QVBoxLayout;
class StatusPanel;

// The first column: the four scopes and the categories with their counts, the trash,
// the actions other parts of the program attach, and the status panel.
class LibrarySidebar : public QWidget {
    Q_OBJECT

public:
    explicit LibrarySidebar(QWidget *parent = nullptr);

    void showCounts(const LibraryCounts &counts);
    void showCategories(const QList<CategoryFilter> &filters, int allCount,
                        const std::optional<QString> &selectedCategory);
    void selectScope(SidebarScope scope);
    void addAction(QAction *action);
    StatusPanel *statusPanel() const { return m_statusPanel; }
    QPushButton *trashButton() const { return m_trashButton; }

Q_SIGNALS:
    void scopeSelected(SidebarScope scope);
    void categorySelected(const std::optional<QString> &category);
    void trashRequested();

private:
    QLabel *makeHeading(const QString &text);

    QListWidget *m_scopes;
    QListWidget *m_categories;
    QPushButton *m_trashButton;
    QLabel *m_actionsHeading;
    QWidget *m_actions;
    QVBoxLayout *m_actionsLayout;
    StatusPanel *m_statusPanel;
    QList<CategoryFilter> m_shownFilters;
    int m_shownAllCount = -1;
};
