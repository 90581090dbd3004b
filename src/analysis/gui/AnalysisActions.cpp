#include "analysis/gui/AnalysisActions.h"

#include "analysis/DuplicateChecker.h"
#include "analysis/StatisticsReport.h"
#include "analysis/gui/DuplicateReportWindow.h"
#include "analysis/gui/StatisticsWindow.h"
#include "app/gui/ThemeIcon.h"
#include "archive/ArchiveContext.h"

#include <QAction>
#include <QApplication>

namespace {

QList<PoemPtr> activePoems(const ArchiveContext &context)
{
    return context.fetch([](const Poem &poem) { return !poem.isInTrash(); });
}

// A window opened again shows the new result in the same place.
template <typename Window> void present(QPointer<Window> &slot, Window *fresh, bool activate)
{
    if (slot) {
        fresh->setGeometry(slot->geometry());
        slot->close();
    }
    slot = fresh;
    fresh->setAttribute(Qt::WA_DeleteOnClose);
    if (!activate)
        fresh->setAttribute(Qt::WA_ShowWithoutActivating);
    fresh->show();
    if (!activate)
        return;
    fresh->raise();
    fresh->activateWindow();
}

} // namespace

AnalysisActions::AnalysisActions(ArchiveContext &context, QWidget *window)
    : QObject(window), m_context(context), m_window(window), m_clock([] { return QDateTime::currentDateTime(); })
{
    m_duplicateCheck = new QAction(QIcon::fromTheme(QStringLiteral("edit-find-replace")), tr("Duplikate prüfen"), this);
    m_duplicateCheck->setObjectName(QStringLiteral("duplicateCheckAction"));
    m_duplicateCheck->setStatusTip(tr("Gleiche und sehr ähnliche Titel im Archiv finden; es wird nichts verändert"));
    connect(m_duplicateCheck, &QAction::triggered, this, &AnalysisActions::checkDuplicates);

    m_statistics = new QAction(
        QIcon::fromTheme(QStringLiteral("office-chart-bar"), ThemeIcon::named(QStringLiteral("x-office-spreadsheet"))),
        tr("Statistik"), this);
    m_statistics->setObjectName(QStringLiteral("statisticsAction"));
    m_statistics->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S));
    m_statistics->setStatusTip(tr("Wie vollständig das Archiv ist, gesamt und je Kategorie"));
    connect(m_statistics, &QAction::triggered, this, &AnalysisActions::showStatistics);

    // An open report follows the archive; a burst of changes (typing, an import) is
    // counted once it settles.
    m_followTimer.setSingleShot(true);
    m_followTimer.setInterval(followDelayMs);
    connect(&m_followTimer, &QTimer::timeout, this, &AnalysisActions::followArchive);
    connect(&m_context, &ArchiveContext::contextDidChange, this, [this] {
        if (m_duplicateWindow || m_statisticsWindow)
            m_followTimer.start();
    });
}

void AnalysisActions::followArchive()
{
    if (m_duplicateWindow)
        openDuplicateReport(false);
    if (m_statisticsWindow)
        openStatistics(false);
}

DuplicateReportWindow *AnalysisActions::duplicateReportWindow() const
{
    return m_duplicateWindow;
}

StatisticsWindow *AnalysisActions::statisticsWindow() const
{
    return m_statisticsWindow;
}

void AnalysisActions::checkDuplicates()
{
    openDuplicateReport(true);
}

void AnalysisActions::showStatistics()
{
    openStatistics(true);
}

void AnalysisActions::openDuplicateReport(bool asked)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const DuplicateCheckReport report = DuplicateChecker::check(activePoems(m_context), m_clock());
    QApplication::restoreOverrideCursor();
    if (asked)
        Q_EMIT statusChanged(DuplicateChecker::statusLine(report));
    auto *window = new DuplicateReportWindow(report, m_window);
    connect(window, &DuplicateReportWindow::showPoemRequested, this, &AnalysisActions::showPoemRequested);
    present(m_duplicateWindow, window, asked);
}

void AnalysisActions::openStatistics(bool asked)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const StatisticsReport report = StatisticsReport::make(activePoems(m_context), m_clock());
    QApplication::restoreOverrideCursor();
    auto *window = new StatisticsWindow(report, m_window);
    connect(window, &StatisticsWindow::statusChanged, this, &AnalysisActions::statusChanged);
    present(m_statisticsWindow, window, asked);
}
