#pragma once

#include "import/FolderScan.h"
#include "import/ImportReviewOptions.h"
#include "import/ProposalFilter.h"

#include <QDialog>

#include <optional>

class ArchiveContext;
class ImportProposalTableModel;
class ProposalFilterProxyModel;
class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QDoubleSpinBox;
class QGroupBox;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTableView;

// The review after a folder scan: one row per file with the poem it goes into, a filter,
// a choice menu per row and the import options. The import itself is started through
// importRequested(); while it runs, the window shows its progress and offers to cancel.
class ImportReviewWindow : public QDialog {
    Q_OBJECT

public:
    ImportReviewWindow(ArchiveContext &context, const FolderScanOutcome &scan, QWidget *parent = nullptr);
    ~ImportReviewWindow() override;

    const QList<ImportProposal> &proposals() const;
    ImportReviewOptions options() const;
    const QString &folder() const { return m_folder; }
    bool imagesOnly() const { return m_imagesOnly; }
    const QStringList &unreadableFiles() const { return m_unreadableFiles; }

    ProposalFilter filter() const;
    void setFilter(ProposalFilter filter);
    // Rows shown under the current filter, as proposal indices in proposal order.
    QList<qsizetype> visibleProposalIndices() const;

    // The menu of one proposal: no choice, its candidates, and the whole archive.
    QMenu *choiceMenu(qsizetype proposalIndex, QWidget *parent);
    void choose(qsizetype proposalIndex, std::optional<QString> poemObjectURI);
    // "Aus allen Gedichten wählen…" for one proposal; returns whether a poem was picked.
    bool pickFromAllPoems(qsizetype proposalIndex);
    std::optional<qsizetype> activeProposalIndex() const { return m_activeProposalIndex; }

    void setImportAvailable(bool available);
    void setImporting(bool importing);
    void setStatusText(const QString &text);
    void setProgressText(const QString &text);
    void setProgress(const QString &text, int done, int total);
    bool isImporting() const { return m_importing; }

    static QString headerText(int scannedFilesCount, qsizetype proposalCount);

Q_SIGNALS:
    void importRequested();
    void cancelRequested();

public Q_SLOTS:
    // Closing is not offered while the import runs; cancel comes first.
    void reject() override;

private:
    QWidget *makeHeader(const FolderScanOutcome &scan);
    QWidget *makeFilterBar();
    QWidget *makeList();
    QGroupBox *makeOptions();
    QWidget *makeFooter();
    void showChoiceMenu(const QModelIndex &proxyIndex);
    void updateVisibleCount();
    void updatePdfControls();
    std::optional<QString> poemTitle(const QString &poemObjectURI) const;

    ArchiveContext &m_context;
    QString m_folder;
    bool m_imagesOnly;
    QStringList m_unreadableFiles;
    ImportProposalTableModel *m_model = nullptr;
    ProposalFilterProxyModel *m_filtered = nullptr;
    QTableView *m_table = nullptr;
    QStackedWidget *m_listStack = nullptr;
    QLabel *m_visibleCount = nullptr;
    QButtonGroup *m_filterButtons = nullptr;
    QCheckBox *m_importDOCX = nullptr;
    QCheckBox *m_importPDF = nullptr;
    QCheckBox *m_onlyIfEmpty = nullptr;
    QCheckBox *m_docxThenPdf = nullptr;
    QDoubleSpinBox *m_minScore = nullptr;
    QDoubleSpinBox *m_minMargin = nullptr;
    QLabel *m_timeoutDOCXLabel = nullptr;
    QLabel *m_timeoutPDFLabel = nullptr;
    QList<QWidget *> m_pdfControls;
    QGroupBox *m_optionsBox = nullptr;
    ImportReviewOptions m_options;
    QLabel *m_sharedChoices = nullptr;
    QLabel *m_status = nullptr;
    QLabel *m_progress = nullptr;
    QProgressBar *m_progressBar = nullptr;
    QPushButton *m_cancelButton = nullptr;
    QPushButton *m_importButton = nullptr;
    QPushButton *m_closeButton = nullptr;
    std::optional<qsizetype> m_activeProposalIndex;
    bool m_importAvailable = false;
    bool m_importing = false;
};
