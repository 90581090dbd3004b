#pragma once

#include "analysis/DuplicateCheckReport.h"

#include <QDialog>

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

// The duplicate check's report: the summary, then the groups of equal titles and the
// pairs of similar ones, each poem with its date and category. A listed poem can be
// shown in the library.
class DuplicateReportWindow : public QDialog {
    Q_OBJECT

public:
    explicit DuplicateReportWindow(const DuplicateCheckReport &report, QWidget *parent = nullptr);

    QTreeWidget *findingsTree() const { return m_tree; }
    QPushButton *showInLibraryButton() const { return m_showInLibrary; }

Q_SIGNALS:
    void showPoemRequested(const QString &objectID);

private:
    QWidget *makeNoFindingsPanel();
    void fillTree(const DuplicateCheckReport &report);
    QTreeWidgetItem *addSection(const QString &text);
    void addPoem(QTreeWidgetItem *parent, const DuplicatePoemSnapshot &poem);
    QString selectedObjectID() const;

    QTreeWidget *m_tree = nullptr;
    QPushButton *m_showInLibrary = nullptr;
};
