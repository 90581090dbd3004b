#include "analysis/gui/StatisticsWindow.h"

#include "app/gui/AppIcon.h"
#include "app/gui/SaveFileDialog.h"
#include "archive/AppPreferences.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStandardPaths>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QLabel *makeLabel(const QString &text, QWidget *parent, qreal scale = 1.0, bool bold = false)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

QFrame *makeCard(QWidget *parent)
{
    auto *card = new QFrame(parent);
    card->setFrameShape(QFrame::StyledPanel);
    return card;
}

} // namespace

StatisticsWindow::StatisticsWindow(const StatisticsReport &report, QWidget *parent) : QDialog(parent), m_report(report)
{
    setObjectName(QStringLiteral("statisticsWindow"));
    setWindowTitle(tr("Statistik"));
    resize(720, 720);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 20, 14);
    // On a small screen the figures scroll; the buttons stay in reach below them.
    auto *scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *page = new QWidget(scroll);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(20, 18, 0, 0);
    layout->setSpacing(12);

    const int total = m_report.totalPoems();
    layout->addWidget(
        makeLabel(total == 1 ? tr("%n Gedicht im Archiv", nullptr, total) : tr("%n Gedichte im Archiv", nullptr, total),
                  this, 1.5, true));
    QString stand = tr("Stand: %1").arg(StatisticsReport::dateTimeText(m_report.createdAt));
    if (m_report.lastUpdated)
        stand += QStringLiteral(" · ") +
                 tr("Zuletzt geändert: %1").arg(StatisticsReport::dateTimeText(*m_report.lastUpdated));
    auto *standLabel = new QLabel(stand, this);
    standLabel->setEnabled(false);
    layout->addWidget(standLabel);

    layout->addWidget(makeCountsPanel());
    layout->addWidget(makeTasksPanel());
    layout->addWidget(makeCategoriesPanel(), 1);
    scroll->setWidget(page);
    outer->addWidget(scroll, 1);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *json = buttons->addButton(tr("Als JSON speichern…"), QDialogButtonBox::ActionRole);
    json->setObjectName(QStringLiteral("saveJsonButton"));
    QPushButton *pdf = buttons->addButton(tr("Als PDF speichern…"), QDialogButtonBox::ActionRole);
    pdf->setObjectName(QStringLiteral("savePdfButton"));
    connect(json, &QPushButton::clicked, this, &StatisticsWindow::saveJson);
    connect(pdf, &QPushButton::clicked, this, &StatisticsWindow::savePdf);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    buttons->setContentsMargins(20, 0, 0, 0);
    outer->addWidget(buttons);
}

QWidget *StatisticsWindow::makeCountsPanel()
{
    QFrame *card = makeCard(this);
    auto *grid = new QGridLayout(card);
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(6);
    const StatisticCounts &counts = m_report.counts;
    addCountRow(grid, 0, tr("Mit Text"), counts.withText, counts.withTextPercent());
    addCountRow(grid, 1, tr("Ohne Text"), counts.withoutText, counts.withoutTextPercent());
    addCountRow(grid, 2, tr("Mit Datum"), counts.withDate, counts.withDatePercent());
    addCountRow(grid, 3, tr("Ohne Datum"), counts.withoutDate, counts.withoutDatePercent());
    addCountRow(grid, 4, tr("Veröffentlicht"), counts.published, counts.publishedPercent());
    addCountRow(grid, 5, tr("Im Podcast"), counts.podcast, counts.podcastPercent());
    auto *rest = new QLabel(
        tr("Nicht veröffentlicht: %1 · Nicht im Podcast: %2").arg(m_report.unpublished()).arg(m_report.notInPodcast()),
        card);
    rest->setEnabled(false);
    grid->addWidget(rest, 6, 0, 1, 4);
    grid->setColumnStretch(3, 1);
    return card;
}

void StatisticsWindow::addCountRow(QGridLayout *grid, int row, const QString &label, int count, double share)
{
    QWidget *parent = grid->parentWidget();
    grid->addWidget(new QLabel(label, parent), row, 0);
    auto *number = makeLabel(QString::number(count), parent, 1.0, true);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(number, row, 1);
    auto *percent = new QLabel(StatisticsReport::percentText(share), parent);
    percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    percent->setMinimumWidth(percent->fontMetrics().horizontalAdvance(QStringLiteral("100,0 %")) + 4);
    grid->addWidget(percent, row, 2);
    auto *bar = new QProgressBar(parent);
    bar->setRange(0, 1000);
    bar->setValue(int(share * 1000 + 0.5));
    bar->setTextVisible(false);
    bar->setMaximumHeight(8);
    grid->addWidget(bar, row, 3);
}

QWidget *StatisticsWindow::makeTasksPanel()
{
    QFrame *card = makeCard(this);
    card->setObjectName(QStringLiteral("tasksPanel"));
    auto *layout = new QVBoxLayout(card);
    const bool complete = m_report.openTasksCount() == 0;
    layout->addWidget(makeLabel(complete ? StatisticsReport::completeHeading() : StatisticsReport::openTasksHeading(),
                                card, 1.15, true));
    auto *summary = new QLabel(m_report.attentionSummary(), card);
    summary->setObjectName(QStringLiteral("attentionSummary"));
    summary->setWordWrap(true);
    layout->addWidget(summary);
    return card;
}

QWidget *StatisticsWindow::makeCategoriesPanel()
{
    auto *panel = new QWidget(this);
    auto *layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(makeLabel(tr("Kategorien"), panel, 1.15, true));
    m_categories = new QTreeWidget(panel);
    m_categories->setObjectName(QStringLiteral("categoryStatistics"));
    m_categories->setRootIsDecorated(false);
    m_categories->setAlternatingRowColors(true);
    m_categories->setUniformRowHeights(true);
    m_categories->setHeaderLabels(
        {tr("Kategorie"), tr("Gesamt"), tr("Mit Text"), tr("Ohne Text"), tr("Ohne Datum"), tr("Veröffentlicht")});
    m_categories->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_categories->header()->setStretchLastSection(false);
    for (const CategoryStatistic &category : m_report.categories) {
        const StatisticCounts &c = category.counts;
        auto *item = new QTreeWidgetItem(m_categories, {category.displayName(), QString::number(c.total),
                                                        QString::number(c.withText), QString::number(c.withoutText),
                                                        QString::number(c.withoutDate), QString::number(c.published)});
        item->setToolTip(0, m_report.categoryLine(category));
        for (int column = 1; column < 6; ++column)
            item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        if (category.name.isEmpty()) {
            QFont font = item->font(0);
            font.setItalic(true);
            item->setFont(0, font);
        }
    }
    for (int column = 1; column < 6; ++column)
        m_categories->resizeColumnToContents(column);
    layout->addWidget(m_categories, 1);
    return panel;
}

void StatisticsWindow::saveJson()
{
    const QString path =
        chooseJsonDestination(proposedPath(StatisticsReport::proposedJsonFileName(m_report.createdAt)));
    if (path.isEmpty())
        return;
    if (auto saved = m_report.saveJson(path); !saved) {
        Q_EMIT statusChanged(StatisticsReport::jsonFailed(saved.errorMessage()));
        return;
    }
    rememberFolderOf(path);
    Q_EMIT statusChanged(StatisticsReport::jsonSaved(path));
}

void StatisticsWindow::savePdf()
{
    const QString path = choosePdfDestination(proposedPath(StatisticsReport::proposedPdfFileName(m_report.createdAt)));
    if (path.isEmpty())
        return;
    const QImage logo = AppIcon::icon().pixmap(256, 256).toImage();
    if (auto saved = m_report.savePdf(path, logo); !saved) {
        Q_EMIT statusChanged(StatisticsReport::pdfFailed(saved.errorMessage()));
        return;
    }
    rememberFolderOf(path);
    Q_EMIT statusChanged(StatisticsReport::pdfSaved(path));
}

QString StatisticsWindow::chooseJsonDestination(const QString &proposedPath)
{
    return SaveFileDialog::ask(this, tr("Statistik als JSON speichern"), tr("JSON-Dateien (*.json)"),
                               QStringLiteral("json"), proposedPath);
}

QString StatisticsWindow::choosePdfDestination(const QString &proposedPath)
{
    return SaveFileDialog::ask(this, tr("Statistik als PDF speichern"), tr("PDF-Dateien (*.pdf)"),
                               QStringLiteral("pdf"), proposedPath);
}

QString StatisticsWindow::proposedPath(const QString &fileName) const
{
    const QString folder = AppPreferences::resolvedFolder(FolderKind::exportFolder)
                               .value_or(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    return folder + QLatin1Char('/') + fileName;
}

void StatisticsWindow::rememberFolderOf(const QString &path) const
{
    AppPreferences::saveFolder(QFileInfo(path).absolutePath(), FolderKind::exportFolder);
}
