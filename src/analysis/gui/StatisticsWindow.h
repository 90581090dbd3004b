#pragma once

#include "analysis/StatisticsReport.h"

#include <QDialog>

class QGridLayout;
class QPushButton;
class QTreeWidget;

// The statistics of the active archive: the counts with their shares, what is still to
// do, the categories, and saving the report as JSON or PDF.
class StatisticsWindow : public QDialog {
    Q_OBJECT

public:
    explicit StatisticsWindow(const StatisticsReport &report, QWidget *parent = nullptr);

    const StatisticsReport &report() const { return m_report; }
    QTreeWidget *categoryTable() const { return m_categories; }

public Q_SLOTS:
    void saveJson();
    void savePdf();

Q_SIGNALS:
    void statusChanged(const QString &text);

protected:
    // The save dialogs; an empty path means the user cancelled.
    virtual QString chooseJsonDestination(const QString &proposedPath);
    virtual QString choosePdfDestination(const QString &proposedPath);

private:
    QWidget *makeCountsPanel();
    QWidget *makeTasksPanel();
    QWidget *makeCategoriesPanel();
    void addCountRow(QGridLayout *grid, int row, const QString &label, int count, double share);
    QString proposedPath(const QString &fileName) const;
    void rememberFolderOf(const QString &path) const;

    StatisticsReport m_report;
    QTreeWidget *m_categories = nullptr;
};
