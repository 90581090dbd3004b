#pragma once

#include "import/ExtractionPool.h"
#include "import/ImportApplier.h"
#include "import/ImportLog.h"
#include "import/ImportReport.h"
#include "import/ImportReviewOptions.h"
#include "import/ImportWorkItem.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class ArchiveContext;

struct ImportRunSettings {
    QString folder;
    QList<ImportProposal> proposals;
    // Files the scan found but cannot name (see FolderScanOutcome): reported as failed.
    QStringList unreadableFiles;
    ImportReviewOptions options;
    bool imagesOnly = false;
    int readers = ExtractionPool::defaultWorkerCount();
    int batchSize = ImportApplier::defaultBatchSize;
    // Empty: the program's helper.
    ExtractionPool::ExtractorFactory makeExtractor;
};

struct ImportRunCounts {
    int applied = 0;
    int failed = 0;
    int empty = 0;
    int timeouts = 0;
    int skippedHasText = 0;
    int skippedPdfScore = 0;
    int skippedPdfMargin = 0;
    int skippedPdfHasText = 0;
    // Of failed: files whose text was read but could not be stored.
    int unsaved = 0;

    bool operator==(const ImportRunCounts &other) const = default;
};

// One import from the review: the chosen files' texts (or images) go into their poems
// behind a safety backup, and the run leaves its summary, report, undo file and failure
// log. Reading runs in helper processes while this object, on the main thread, applies
// the results one by one in file order, so the window stays responsive and the outcome
// is the same however many helpers read.
class ImportRun : public QObject {
    Q_OBJECT

public:
    ImportRun(ArchiveContext &context, ImportRunSettings settings, QObject *parent = nullptr);
    ~ImportRun() override;

    // Reports through the signals and ends with finished(), never before start() returns.
    void start();
    // Stops after the file in hand; what was applied stays and is reported.
    void cancel();
    // start() and wait in a local event loop (the command line).
    void runToEnd();

    bool isRunning() const { return m_running; }
    bool wasCancelled() const { return m_cancelled; }
    // Whether the run got as far as changing poems (its undo file and report are written).
    bool hasApplied() const { return m_applyStarted; }
    // The outcome for the status line: the summary with the safety backup, or why nothing happened.
    const QString &statusText() const { return m_statusText; }
    const ImportReport &report() const { return m_report; }
    const ImportRunCounts &counts() const { return m_counts; }
    QString logText() const { return m_log.dumpText(); }
    const QString &safetyBackupPath() const { return m_safetyBackupPath; }
    int processedCount() const { return m_processed; }
    int totalCount() const { return m_total; }

    static QString summaryText(bool twoPhases, const ImportRunCounts &counts, const ImportReviewOptions &options);
    static QString imageSummaryText(int attached, int failed);
    // Leads the summary when files could not be stored.
    static QString unsavedText(int files, const QString &reason);
    static QString safetyBackupText(const QString &fileName);
    static QString undoHintText();
    static QString nothingToImportText();
    static QString unreadableNameText();
    static QString runningText();

Q_SIGNALS:
    void statusChanged(const QString &text);
    // done of total files; text names the pass and the file.
    void progressChanged(const QString &text, int done, int total);
    void finished();

private:
    enum class Pass { docx, pdf, images };
    struct Decision {
        std::optional<QString> skipReason;
        int *skipCounter = nullptr;
    };

    void begin();
    bool writeSafetyBackup();
    void startPass(Pass pass);
    void takeExtraction(qsizetype index, ImportExtraction extraction);
    void drain();
    void applyText(const ImportWorkItem &item, const ImportExtraction &extraction);
    void applyImage(const ImportWorkItem &item);
    void takeApplied(const ImportWorkItem &item, const ImportApplier::Outcome &outcome);
    void markUnsaved(const QString &reason);
    void record(ImportReport::Status status, const ImportWorkItem &item, const std::optional<QString> &reason);
    void logLine(const ImportWorkItem &item, const QString &message);
    void passDone();
    void finish(const QString &statusText);
    void finishApplied();
    QString passLabel() const;
    int passTimeoutSeconds() const;
    const QList<ImportWorkItem> &passItems() const;

    ArchiveContext &m_context;
    ImportRunSettings m_settings;
    std::unique_ptr<ImportApplier> m_applier;
    QList<ImportWorkItem> m_docx;
    QList<ImportWorkItem> m_pdf;
    QList<ImportWorkItem> m_images;
    Pass m_pass = Pass::docx;
    QList<Decision> m_decisions;
    QHash<qsizetype, ImportExtraction> m_ready;
    qsizetype m_next = 0;
    std::unique_ptr<ExtractionPool> m_pool;
    ImportedRichText::EditorFont m_editorFont;
    ImportLog m_log;
    ImportReport m_report;
    ImportRunCounts m_counts;
    // Report entries applied in memory whose batch is not stored yet.
    QList<qsizetype> m_unsaved;
    QString m_unsavedReason;
    QString m_statusText;
    QString m_safetyBackupPath;
    int m_processed = 0;
    int m_total = 0;
    bool m_running = false;
    bool m_cancelled = false;
    bool m_applyStarted = false;
    bool m_draining = false;
};
