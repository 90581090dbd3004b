#include "app/gui/LibrarySidebar.h"

#include "app/gui/CountedItemDelegate.h"
#include "app/gui/StatusPanel.h"
#include "app/gui/ThemeIcon.h"

#include <QAction>
#include <QFrame>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int ScopeRole = Qt::UserRole + 1;
constexpr int CategoryRole = Qt::UserRole + 2;
constexpr int AllCategoriesRole = Qt::UserRole + 3;

QString scopeIconName(SidebarScope scope)
{
    switch (scope) {
    case SidebarScope::archive:
        return QStringLiteral("folder-documents");
    case SidebarScope::missingText:
        return QStringLiteral("document-new");
    case SidebarScope::published:
        return QStringLiteral("emblem-ok");
    case SidebarScope::podcast:
        return QStringLiteral("audio-input-microphone");
    }
    return {};
}

QListWidget *makeList(QWidget *parent)
{
    auto *list = new QListWidget(parent);
    list->setObjectName(QStringLiteral("sidebarList"));
    list->setFrameShape(QFrame::NoFrame);
    list->setItemDelegate(new CountedItemDelegate(list));
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setIconSize(QSize(16, 16));
    return list;
}

} // namespace

LibrarySidebar::LibrarySidebar(QWidget *parent)
    : QWidget(parent), m_scopes(makeList(this)), m_categories(makeList(this)),
      m_trashButton(new QPushButton(ThemeIcon::named(QStringLiteral("user-trash")), QString(), this)),
      m_actionsHeading(nullptr), m_actions(new QWidget(this)), m_actionsLayout(new QVBoxLayout(m_actions)),
      m_statusPanel(new StatusPanel(this))
{
    setObjectName(QStringLiteral("sidebar"));
    setAttribute(Qt::WA_StyledBackground);
    // On a low screen the sidebar scrolls as a whole instead of squeezing its action lines.
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("sidebarScroll"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    outer->addWidget(scroll);
    auto *page = new QWidget(scroll);
    page->setObjectName(QStringLiteral("sidebarPage"));
    page->setAutoFillBackground(false);
    // Follows the column's width; the scroll area never scrolls sideways.
    page->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(8, 12, 8, 0);
    layout->setSpacing(4);

    layout->addWidget(makeHeading(tr("Bibliothek")));
    for (const SidebarScope scope : allSidebarScopes) {
        auto *item = new QListWidgetItem(ThemeIcon::named(scopeIconName(scope)), displayTitle(scope), m_scopes);
        item->setData(ScopeRole, int(scope));
    }
    m_scopes->setCurrentRow(0);
    m_scopes->setFixedHeight(m_scopes->sizeHintForRow(0) * m_scopes->count() + 4);
    m_scopes->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_scopes, &QListWidget::currentItemChanged, this, [this](QListWidgetItem *item) {
        if (item)
            Q_EMIT scopeSelected(SidebarScope(item->data(ScopeRole).toInt()));
    });
    layout->addWidget(m_scopes);

    layout->addSpacing(8);
    layout->addWidget(makeHeading(tr("Kategorien")));
    connect(m_categories, &QListWidget::currentItemChanged, this, [this](QListWidgetItem *item) {
        if (!item || item->data(AllCategoriesRole).toBool()) {
            Q_EMIT categorySelected(std::nullopt);
            return;
        }
        Q_EMIT categorySelected(item->data(CategoryRole).toString());
    });
    layout->addWidget(m_categories, 1);

    m_trashButton->setObjectName(QStringLiteral("trashButton"));
    m_trashButton->setFlat(true);
    m_trashButton->setCursor(Qt::PointingHandCursor);
    m_trashButton->setStyleSheet(QStringLiteral("text-align: left; padding: 6px 8px;"));
    connect(m_trashButton, &QPushButton::clicked, this, &LibrarySidebar::trashRequested);
    layout->addWidget(m_trashButton);

    m_actionsHeading = makeHeading(tr("Aktionen"));
    m_actionsHeading->hide();
    layout->addSpacing(4);
    layout->addWidget(m_actionsHeading);
    m_actionsLayout->setContentsMargins(0, 0, 0, 0);
    m_actionsLayout->setSpacing(0);
    m_actions->hide();
    layout->addWidget(m_actions);

    auto *rule = new QFrame(this);
    rule->setFrameShape(QFrame::HLine);
    rule->setObjectName(QStringLiteral("sidebarRule"));
    layout->addSpacing(4);
    layout->addWidget(rule);
    layout->addWidget(m_statusPanel);
    scroll->setWidget(page);
}

QLabel *LibrarySidebar::makeHeading(const QString &text)
{
    auto *heading = new QLabel(text, this);
    heading->setObjectName(QStringLiteral("sectionHeading"));
    heading->setContentsMargins(8, 4, 0, 2);
    return heading;
}

void LibrarySidebar::showCounts(const LibraryCounts &counts)
{
    const int perScope[] = {counts.scopedActivePoemCount, counts.scopedMissingTextCount, counts.scopedPublishedCount,
                            counts.scopedPodcastCount};
    for (int row = 0; row < m_scopes->count(); ++row)
        m_scopes->item(row)->setData(CountedItemDelegate::CountRole, perScope[row]);
    m_trashButton->setText(tr("%1 im Papierkorb").arg(counts.trashCount));
}

void LibrarySidebar::showCategories(const QList<CategoryFilter> &filters, int allCount,
                                    const std::optional<QString> &selectedCategory)
{
    const QSignalBlocker blocker(m_categories);
    if (filters != m_shownFilters || allCount != m_shownAllCount) {
        m_categories->clear();
        auto *all = new QListWidgetItem(tr("Alle Kategorien"), m_categories);
        all->setData(AllCategoriesRole, true);
        all->setData(CountedItemDelegate::CountRole, allCount);
        for (const CategoryFilter &filter : filters) {
            auto *item = new QListWidgetItem(filter.displayName(), m_categories);
            item->setData(CategoryRole, filter.name);
            item->setData(CountedItemDelegate::CountRole, filter.count);
            if (filter.name.isEmpty()) {
                QFont font = item->font();
                font.setItalic(true);
                item->setFont(font);
            }
        }
        m_shownFilters = filters;
        m_shownAllCount = allCount;
    }
    for (int row = 0; row < m_categories->count(); ++row) {
        QListWidgetItem *item = m_categories->item(row);
        const bool isAll = item->data(AllCategoriesRole).toBool();
        const bool chosen =
            selectedCategory ? !isAll && item->data(CategoryRole).toString() == *selectedCategory : isAll;
        if (chosen) {
            m_categories->setCurrentItem(item);
            break;
        }
    }
}

void LibrarySidebar::selectScope(SidebarScope scope)
{
    m_scopes->setCurrentRow(int(scope));
}

void LibrarySidebar::addAction(QAction *action)
{
    auto *button = new QToolButton(m_actions);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    button->setObjectName(QStringLiteral("sidebarAction"));
    m_actionsLayout->addWidget(button);
    m_actions->show();
    m_actionsHeading->show();
    // An action another part hides keeps its line out of the way.
    connect(action, &QAction::changed, button, [button, action] { button->setVisible(action->isVisible()); });
    button->setVisible(action->isVisible());
}
