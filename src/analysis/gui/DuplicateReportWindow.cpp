#include "analysis/gui/DuplicateReportWindow.h"

#include "analysis/DuplicateChecker.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int ObjectIDRole = Qt::UserRole + 1;

QString shownTitle(const QString &title)
{
    const QString trimmed = title.simplified();
    return trimmed.isEmpty() ? DuplicateReportWindow::tr("Gedicht ohne Titel") : trimmed;
}

} // namespace

DuplicateReportWindow::DuplicateReportWindow(const DuplicateCheckReport &report, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("duplicateReportWindow"));
    setWindowTitle(tr("Duplikate prüfen"));
    resize(760, 560);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 18, 20, 14);
    layout->setSpacing(10);

    auto *heading = new QLabel(tr("Duplikatprüfung"), this);
    heading->setObjectName(QStringLiteral("reportHeading"));
    QFont headingFont = heading->font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.4);
    headingFont.setBold(true);
    heading->setFont(headingFont);
    layout->addWidget(heading);

    auto *summary = new QLabel(DuplicateChecker::summaryText(report), this);
    summary->setObjectName(QStringLiteral("reportSummary"));
    summary->setWordWrap(true);
    layout->addWidget(summary);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    if (!report.hasFindings()) {
        layout->addWidget(makeNoFindingsPanel(), 1);
        layout->addWidget(buttons);
        return;
    }

    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(QStringLiteral("duplicateFindings"));
    m_tree->setHeaderLabels({tr("Titel"), tr("Datum"), tr("Kategorie"), tr("Text")});
    m_tree->setAlternatingRowColors(true);
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_tree->header()->setStretchLastSection(false);
    m_tree->setColumnWidth(1, 100);
    m_tree->setColumnWidth(2, 140);
    m_tree->setColumnWidth(3, 80);
    fillTree(report);
    layout->addWidget(m_tree, 1);

    auto *hint = new QLabel(tr("Doppelklick auf ein Gedicht zeigt es in der Bibliothek."), this);
    hint->setObjectName(QStringLiteral("reportHint"));
    hint->setEnabled(false);
    layout->addWidget(hint);

    m_showInLibrary = buttons->addButton(tr("In der Bibliothek zeigen"), QDialogButtonBox::ActionRole);
    m_showInLibrary->setEnabled(false);
    connect(m_tree, &QTreeWidget::currentItemChanged, this,
            [this] { m_showInLibrary->setEnabled(!selectedObjectID().isEmpty()); });
    connect(m_showInLibrary, &QPushButton::clicked, this, [this] {
        if (const QString objectID = selectedObjectID(); !objectID.isEmpty())
            Q_EMIT showPoemRequested(objectID);
    });
    connect(m_tree, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem *item) {
        if (const QString objectID = item->data(0, ObjectIDRole).toString(); !objectID.isEmpty())
            Q_EMIT showPoemRequested(objectID);
    });
    layout->addWidget(buttons);
}

QWidget *DuplicateReportWindow::makeNoFindingsPanel()
{
    auto *panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("noFindings"));
    auto *layout = new QVBoxLayout(panel);
    layout->addStretch(1);
    auto *icon = new QLabel(panel);
    icon->setPixmap(QIcon::fromTheme(QStringLiteral("emblem-ok")).pixmap(48, 48));
    icon->setAlignment(Qt::AlignCenter);
    layout->addWidget(icon);
    auto *heading = new QLabel(DuplicateChecker::noFindingsHeading(), panel);
    QFont headingFont = heading->font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    headingFont.setBold(true);
    heading->setFont(headingFont);
    heading->setAlignment(Qt::AlignCenter);
    layout->addWidget(heading);
    auto *text = new QLabel(DuplicateChecker::noFindingsText(), panel);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    layout->addWidget(text);
    layout->addStretch(2);
    return panel;
}

void DuplicateReportWindow::fillTree(const DuplicateCheckReport &report)
{
    if (!report.exactGroups.isEmpty()) {
        QTreeWidgetItem *section = addSection(tr("Gleiche Titel (%1)").arg(report.exactGroups.size()));
        for (const DuplicateTitleGroup &group : report.exactGroups) {
            auto *item = new QTreeWidgetItem(
                section,
                {tr("„%1“ – %2 Gedichte").arg(shownTitle(group.poems.value(0).title)).arg(group.poems.size())});
            item->setFirstColumnSpanned(true);
            for (const DuplicatePoemSnapshot &poem : group.poems)
                addPoem(item, poem);
        }
    }
    if (!report.similarPairs.isEmpty()) {
        QTreeWidgetItem *section = addSection(tr("Ähnliche Titel (%1)").arg(report.similarPairs.size()));
        for (const SimilarTitlePair &pair : report.similarPairs) {
            auto *item = new QTreeWidgetItem(section, {tr("%1 % ähnlich").arg(DuplicateChecker::percent(pair.score))});
            item->setFirstColumnSpanned(true);
            addPoem(item, pair.first);
            addPoem(item, pair.second);
        }
    }
    m_tree->expandAll();
}

QTreeWidgetItem *DuplicateReportWindow::addSection(const QString &text)
{
    auto *section = new QTreeWidgetItem(m_tree, {text});
    QFont font = section->font(0);
    font.setBold(true);
    section->setFont(0, font);
    section->setFirstColumnSpanned(true);
    return section;
}

void DuplicateReportWindow::addPoem(QTreeWidgetItem *parent, const DuplicatePoemSnapshot &poem)
{
    auto *item =
        new QTreeWidgetItem(parent, {shownTitle(poem.title), poem.dateText.isEmpty() ? tr("ohne Datum") : poem.dateText,
                                     poem.category.trimmed(), poem.hasText ? tr("ja") : tr("fehlt")});
    item->setData(0, ObjectIDRole, poem.objectID);
    item->setToolTip(0, poem.title);
}

QString DuplicateReportWindow::selectedObjectID() const
{
    const QTreeWidgetItem *item = m_tree ? m_tree->currentItem() : nullptr;
    return item ? item->data(0, ObjectIDRole).toString() : QString();
}
