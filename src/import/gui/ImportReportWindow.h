#pragma once

#include "import/ImportReport.h"

#include <QDialog>

class QPlainTextEdit;
class QTableWidget;
class QToolButton;

// The report of the last import: what happened to each file, and, folded away, the
// technical details for when something went wrong.
class ImportReportWindow : public QDialog {
    Q_OBJECT

public:
    ImportReportWindow(const ImportReport &report, const QString &technicalDetails, QWidget *parent = nullptr);

    QTableWidget *itemTable() const { return m_items; }
    QToolButton *detailsToggle() const { return m_detailsToggle; }
    QPlainTextEdit *detailsView() const { return m_details; }

private:
    QTableWidget *m_items = nullptr;
    QToolButton *m_detailsToggle = nullptr;
    QPlainTextEdit *m_details = nullptr;
};
