#pragma once

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class ArchiveContext;
class DuplicateReportWindow;
class QAction;
class QWidget;
class StatisticsWindow;

// "Duplikate prüfen" and "Statistik": each runs over the active poems and opens its
// window; the outcome goes to the status line through statusChanged.
class AnalysisActions : public QObject {
    Q_OBJECT

public:
    AnalysisActions(ArchiveContext &context, QWidget *window);

    QAction *duplicateCheckAction() const { return m_duplicateCheck; }
    QAction *statisticsAction() const { return m_statistics; }
    // The open report windows, if any.
    DuplicateReportWindow *duplicateReportWindow() const;
    StatisticsWindow *statisticsWindow() const;

    using Clock = std::function<QDateTime()>;
    void setClock(Clock clock) { m_clock = std::move(clock); }
    static constexpr int followDelayMs = 400;

public Q_SLOTS:
    void checkDuplicates();
    void showStatistics();

Q_SIGNALS:
    void statusChanged(const QString &text);
    // A poem listed in the duplicate report should be selected in the library.
    void showPoemRequested(const QString &objectID);

private:
    // asked: the poet opened it (status line, to the front); else it follows a change.
    void openDuplicateReport(bool asked);
    void openStatistics(bool asked);
    void followArchive();

    ArchiveContext &m_context;
    QWidget *m_window;
    QAction *m_duplicateCheck;
    QAction *m_statistics;
    QPointer<DuplicateReportWindow> m_duplicateWindow;
    QPointer<StatisticsWindow> m_statisticsWindow;
    Clock m_clock;
    QTimer m_followTimer;
};
