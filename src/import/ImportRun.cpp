#include "import/ImportRun.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemVersion.h"
#include "backup/BackupExporter.h"
#include "editor/PoemRichText.h"
#include "import/ExtractError.h"
#include "import/FolderScanner.h"
#include "import/ImportStateFiles.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>

namespace {

// A report keeps its reasons in German, the keys of their translations; the report window
// translates them when it shows them, so a saved report follows the interface language.
QString reasonKey(const char *german)
{
    return QString::fromUtf8(german);
}

QString extensionOf(const QString &fileName)
{
    return QFileInfo(fileName).suffix().toLower();
}

} // namespace

ImportRun::ImportRun(ArchiveContext &context, ImportRunSettings settings, QObject *parent)
    : QObject(parent), m_context(context), m_settings(std::move(settings))
{
    if (!m_settings.makeExtractor)
        m_settings.makeExtractor = [] { return std::make_unique<IsolatedDocumentExtractor>(); };
}

ImportRun::~ImportRun()
{
    if (m_pool)
        m_pool->cancel();
}

QString ImportRun::runningText()
{
    return tr("Import läuft…");
}

QString ImportRun::nothingToImportText()
{
    return tr("Nichts zu importieren.");
}

QString ImportRun::unreadableNameText()
{
    return tr("Nicht lesbar: Der Dateiname ist kein gültiges UTF-8");
}

QString ImportRun::safetyBackupText(const QString &fileName)
{
    return tr("Sicherheitsbackup: %1.").arg(fileName);
}

QString ImportRun::undoHintText()
{
    return tr("Rückgängig ist danach im Hauptfenster verfügbar.");
}

QString ImportRun::summaryText(bool twoPhases, const ImportRunCounts &counts, const ImportReviewOptions &options)
{
    // Percentages are cut, never rounded: 0.075 reads as 7.
    const int minScorePercent = int(options.minScoreForPDF * 100.0);
    const int minMarginPercent = int(options.minMarginForPDF * 100.0);
    return tr("Import fertig (%1): %2 gesetzt, %3 fehlgeschlagen. Leer: %4. Timeouts: %5. Übersprungen (hat Text): "
              "%6. Übersprungen (PDF Score<%7%): %8. Übersprungen (PDF Margin<%9%): %10. PDF übersprungen (Text "
              "bereits vorhanden): %11.")
        .arg(twoPhases ? tr("2-Phasen") : tr("1-Pass"))
        .arg(counts.applied)
        .arg(counts.failed)
        .arg(counts.empty)
        .arg(counts.timeouts)
        .arg(counts.skippedHasText)
        .arg(minScorePercent)
        .arg(counts.skippedPdfScore)
        .arg(minMarginPercent)
        .arg(counts.skippedPdfMargin)
        .arg(counts.skippedPdfHasText);
}

QString ImportRun::imageSummaryText(int attached, int failed)
{
    return tr("Bildimport: %1 angehängt, %2 fehlgeschlagen.").arg(attached).arg(failed);
}

QString ImportRun::unsavedText(int files, const QString &reason)
{
    if (files == 1)
        return tr("Achtung: 1 Datei wurde nicht gespeichert (%1).").arg(reason);
    return tr("Achtung: %1 Dateien wurden nicht gespeichert (%2).").arg(files).arg(reason);
}

void ImportRun::start()
{
    if (m_running)
        return;
    m_running = true;
    Q_EMIT statusChanged(runningText());
    // The caller connects and shows its progress first.
    QTimer::singleShot(0, this, &ImportRun::begin);
}

void ImportRun::runToEnd()
{
    QEventLoop loop;
    connect(this, &ImportRun::finished, &loop, &QEventLoop::quit);
    start();
    if (m_running)
        loop.exec();
}

void ImportRun::cancel()
{
    if (!m_running || m_cancelled)
        return;
    m_cancelled = true;
    if (m_pool)
        m_pool->cancel();
    // Nothing is applied between two events: the file in hand is done already.
    QTimer::singleShot(0, this, [this] {
        if (m_running && !m_draining)
            finishApplied();
    });
}

void ImportRun::begin()
{
    if (m_cancelled) {
        finish(tr("Import abgebrochen."));
        return;
    }
    const QFileInfo folder(m_settings.folder);
    if (!folder.isDir() || !folder.isReadable()) {
        finish(
            tr("Folder-Bookmark resolve fail: %1").arg(tr("Der Ordner ist nicht lesbar: %1").arg(m_settings.folder)));
        return;
    }
    const QList<ImportWorkItem> items =
        ImportWorkItem::fromProposals(m_settings.proposals, m_settings.folder, [this](const QUuid &id) {
            const PoemPtr poem = m_context.poemWithID(id);
            return poem ? std::optional<QString>(poem->title().value_or(QString())) : std::nullopt;
        });
    const QSet<QString> imageExtensions = FolderScanner::imageExtensions();
    for (const ImportWorkItem &item : items) {
        const QString extension = extensionOf(item.fileName);
        if (m_settings.imagesOnly) {
            if (imageExtensions.contains(extension))
                m_images.append(item);
        } else if (extension == QLatin1String("docx")) {
            m_docx.append(item);
        } else if (extension == QLatin1String("pdf")) {
            m_pdf.append(item);
        }
    }
    if (!m_settings.options.importDOCX)
        m_docx.clear();
    if (!m_settings.options.importPDF)
        m_pdf.clear();
    m_total = int(m_docx.size() + m_pdf.size() + m_images.size());
    if (m_total == 0) {
        QString status = nothingToImportText();
        for (const QString &file : std::as_const(m_settings.unreadableFiles))
            status += QLatin1Char(' ') + unreadableNameText() + QStringLiteral(": ") + file;
        finish(status);
        return;
    }
    Q_EMIT statusChanged(tr("Sicherheitsbackup wird erstellt…"));
    if (!writeSafetyBackup())
        return;
    Q_EMIT statusChanged(runningText());

    m_applyStarted = true;
    m_applier = std::make_unique<ImportApplier>(m_context, &ImportStateFiles::saveUndo, m_settings.batchSize);
    if (m_settings.imagesOnly)
        m_applier->setVersionReason(PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Bildimport")));
    m_editorFont = ImportedRichText::EditorFont::current();
    m_report.title = m_settings.imagesOnly ? ImportReport::imageImportTitle() : ImportReport::textImportTitle();
    for (const QString &file : std::as_const(m_settings.unreadableFiles)) {
        ++m_counts.failed;
        // Not one of the report's reasons: the details say why.
        m_report.items.append({ImportReport::Status::failed, file, QString(), std::nullopt});
        m_log.add(QStringLiteral("%1: %2").arg(file, unreadableNameText()));
    }
    if (m_settings.imagesOnly) {
        Q_EMIT progressChanged(tr("Zu importieren: Bilder %1").arg(m_images.size()), 0, m_total);
        startPass(Pass::images);
        return;
    }
    Q_EMIT progressChanged(tr("Zu importieren: DOCX %1, PDF %2").arg(m_docx.size()).arg(m_pdf.size()), 0, m_total);
    startPass(Pass::docx);
}

bool ImportRun::writeSafetyBackup()
{
    const QString prefix =
        m_settings.imagesOnly ? QStringLiteral("pre-image-import") : QStringLiteral("pre-text-import");
    const auto written = BackupExporter::writeAutomaticSafetyBackup(m_context.fetch(), prefix);
    if (!written) {
        finish(tr("Import abgebrochen: Sicherheitsbackup fehlgeschlagen (%1)").arg(written.errorMessage()));
        return false;
    }
    m_safetyBackupPath = *written;
    return true;
}

const QList<ImportWorkItem> &ImportRun::passItems() const
{
    switch (m_pass) {
    case Pass::docx:
        return m_docx;
    case Pass::pdf:
        return m_pdf;
    case Pass::images:
        break;
    }
    return m_images;
}

QString ImportRun::passLabel() const
{
    switch (m_pass) {
    case Pass::docx:
        return QStringLiteral("DOCX");
    case Pass::pdf:
        return QStringLiteral("PDF");
    case Pass::images:
        break;
    }
    return tr("Bilder");
}

int ImportRun::passTimeoutSeconds() const
{
    return m_pass == Pass::pdf ? m_settings.options.timeoutPDF : m_settings.options.timeoutDOCX;
}

void ImportRun::startPass(Pass pass)
{
    m_pass = pass;
    m_next = 0;
    m_ready.clear();
    m_decisions.clear();
    const QList<ImportWorkItem> &items = passItems();
    Q_EMIT progressChanged(tr("%1: Start… (0/%2)").arg(passLabel()).arg(items.size()), m_processed, m_total);

    const ImportReviewOptions &options = m_settings.options;
    QList<ExtractionPool::Job> jobs;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const ImportWorkItem &item = items.at(i);
        Decision decision;
        if (pass == Pass::pdf) {
            if (options.docxThenPdfOnlyForStillEmpty && m_applier->hasText(item.poemID))
                decision = {reasonKey(QT_TR_NOOP("PDF übersprungen, weil bereits Text vorhanden ist")),
                            &m_counts.skippedPdfHasText};
            else if (item.bestScore < options.minScoreForPDF)
                decision = {reasonKey(QT_TR_NOOP("PDF Score unter Mindestwert")), &m_counts.skippedPdfScore};
            else if (item.bestScore - item.secondBestScore < options.minMarginForPDF)
                decision = {reasonKey(QT_TR_NOOP("PDF Abstand zum zweitbesten Treffer zu klein")),
                            &m_counts.skippedPdfMargin};
        }
        m_decisions.append(decision);
        if (!decision.skipReason && pass != Pass::images)
            jobs.append({i, item.filePath, passTimeoutSeconds() * 1000});
    }
    m_pool.reset();
    if (!jobs.isEmpty()) {
        m_pool = std::make_unique<ExtractionPool>(
            jobs, m_settings.readers, m_settings.makeExtractor, m_editorFont, this,
            [this](qsizetype index, ImportExtraction extraction) { takeExtraction(index, std::move(extraction)); });
    }
    QTimer::singleShot(0, this, &ImportRun::drain);
}

void ImportRun::takeExtraction(qsizetype index, ImportExtraction extraction)
{
    if (!m_running || m_cancelled)
        return;
    m_ready.insert(index, std::move(extraction));
    drain();
}

void ImportRun::drain()
{
    if (!m_running || m_draining)
        return;
    const QList<ImportWorkItem> &items = passItems();
    while (m_next < items.size() && !m_cancelled) {
        const ImportWorkItem &item = items.at(m_next);
        const Decision &decision = m_decisions.at(m_next);
        m_draining = true;
        if (decision.skipReason) {
            ++*decision.skipCounter;
            record(ImportReport::Status::skipped, item, decision.skipReason);
        } else if (m_pass == Pass::images) {
            applyImage(item);
        } else if (const auto ready = m_ready.constFind(m_next); ready != m_ready.constEnd()) {
            applyText(item, *ready);
            m_ready.erase(ready);
        } else {
            m_draining = false;
            return; // its reader is not done yet
        }
        m_draining = false;
        ++m_next;
        ++m_processed;
        Q_EMIT progressChanged(tr("%1: %2/%3 – %4").arg(passLabel()).arg(m_next).arg(items.size()).arg(item.fileName),
                               m_processed, m_total);
        if (m_pass == Pass::images && m_next < items.size()) {
            // One picture per turn of the event loop: decoding a photo takes a moment.
            QTimer::singleShot(0, this, &ImportRun::drain);
            return;
        }
    }
    if (m_cancelled) {
        finishApplied();
        return;
    }
    passDone();
}

void ImportRun::passDone()
{
    if (m_pass == Pass::docx && !m_pdf.isEmpty()) {
        startPass(Pass::pdf);
        return;
    }
    finishApplied();
}

void ImportRun::applyText(const ImportWorkItem &item, const ImportExtraction &extraction)
{
    using Status = ImportReport::Status;
    if (extraction.emptyFile) {
        ++m_counts.empty;
        record(Status::skipped, item, reasonKey(QT_TR_NOOP("Datei ist leer (0 Byte).")));
        return;
    }
    if (extraction.timedOut) {
        ++m_counts.timeouts;
        record(Status::failed, item, reasonKey(QT_TR_NOOP("Timeout nach %1s")).arg(passTimeoutSeconds()));
        logLine(item, extraction.errorHint.value_or(QString()));
        return;
    }
    if (extraction.errorHint && !ExtractError::isEmptyTextMessage(*extraction.errorHint)) {
        ++m_counts.failed;
        record(Status::failed, item, reasonKey(QT_TR_NOOP("Text konnte nicht extrahiert werden")));
        logLine(item, *extraction.errorHint);
        return;
    }
    if (extraction.text.trimmed().isEmpty()) {
        ++m_counts.empty;
        record(Status::skipped, item, reasonKey(QT_TR_NOOP("Kein Text extrahiert")));
        return;
    }
    const ImportApplier::Outcome outcome =
        m_applier->apply(item.poemID, extraction.text, extraction.richTextData, m_settings.options.onlyIfPoemTextEmpty);
    if (outcome.skippedBecauseHasText) {
        ++m_counts.skippedHasText;
        record(Status::skipped, item, reasonKey(QT_TR_NOOP("Gedicht hatte bereits Text")));
    } else if (!outcome.applied) {
        ++m_counts.failed;
        // Not one of the report's reasons: the item fails without one, the details say why.
        record(Status::failed, item, std::nullopt);
        logLine(item, tr("Gedicht nicht gefunden"));
    } else {
        takeApplied(item, outcome);
    }
}

void ImportRun::applyImage(const ImportWorkItem &item)
{
    const PoemPtr poem = m_applier->poem(item.poemID);
    if (!poem) {
        ++m_counts.failed;
        record(ImportReport::Status::failed, item, std::nullopt);
        logLine(item, tr("Gedicht nicht gefunden"));
        return;
    }
    // The editor's own step, so an imported picture is stored like one inserted by hand.
    const auto appended = PoemRichText::appendingImage(item.filePath, poem->richTextData(), poem->text());
    if (!appended) {
        ++m_counts.failed;
        record(ImportReport::Status::failed, item, std::nullopt);
        logLine(item, appended.errorMessage());
        return;
    }
    takeApplied(item, m_applier->apply(item.poemID, appended->text, appended->richTextData, false));
}

void ImportRun::takeApplied(const ImportWorkItem &item, const ImportApplier::Outcome &outcome)
{
    ++m_counts.applied;
    record(ImportReport::Status::imported, item, std::nullopt);
    m_unsaved.append(m_report.items.size() - 1);
    if (outcome.saveError)
        markUnsaved(*outcome.saveError);
    else if (outcome.committed)
        m_unsaved.clear();
}

// The applier took the batch back: every file of it counts as failed, not as set.
void ImportRun::markUnsaved(const QString &reason)
{
    for (const qsizetype index : std::as_const(m_unsaved)) {
        ImportReport::Item &entry = m_report.items[index];
        entry.status = ImportReport::Status::failed;
        entry.reason = reasonKey(QT_TR_NOOP("Speichern fehlgeschlagen"));
        --m_counts.applied;
        ++m_counts.failed;
        ++m_counts.unsaved;
        m_log.add(QStringLiteral("[%1] %2 → %3: apply/save failed: %4")
                      .arg(passLabel(), entry.fileName, entry.poemTitle, reason));
    }
    m_unsaved.clear();
    m_unsavedReason = reason;
}

void ImportRun::record(ImportReport::Status status, const ImportWorkItem &item, const std::optional<QString> &reason)
{
    m_report.items.append({status, item.fileName, item.poemTitle, reason});
}

void ImportRun::logLine(const ImportWorkItem &item, const QString &message)
{
    m_log.add(QStringLiteral("[%1] %2 → %3: %4").arg(passLabel(), item.fileName, item.poemTitle, message));
}

void ImportRun::finishApplied()
{
    if (!m_running)
        return;
    if (!m_applier) {
        finish(tr("Import abgebrochen."));
        return;
    }
    if (m_pool)
        m_pool->cancel();
    if (auto finalized = m_applier->finalize(); !finalized) {
        m_log.add(QStringLiteral("context.save() in finalize failed: %1").arg(finalized.errorMessage()));
        markUnsaved(finalized.errorMessage());
    }
    m_unsaved.clear();

    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QString backupText = safetyBackupText(QFileInfo(m_safetyBackupPath).fileName());
    const QString summary = m_settings.imagesOnly ? imageSummaryText(m_counts.applied, m_counts.failed)
                                                  : summaryText(m_settings.options.docxThenPdfOnlyForStillEmpty,
                                                                m_counts, m_settings.options);
    m_report.createdAt = now;
    m_report.summary = summary;
    // Files that were counted as set but never stored must be the first thing the poet reads.
    if (m_counts.unsaved > 0)
        m_report.summary = unsavedText(m_counts.unsaved, m_unsavedReason) + QLatin1Char(' ') + m_report.summary;
    m_report.cancelled = m_cancelled;

    QStringList problems;
    if (auto undo = ImportStateFiles::saveUndo(m_applier->undoItems()); !undo)
        problems.append(tr("Rückgängig-Datei konnte nicht geschrieben werden: %1").arg(undo.errorMessage()));
    if (auto report = ImportStateFiles::saveReport(m_report); !report)
        problems.append(tr("Importbericht konnte nicht geschrieben werden: %1").arg(report.errorMessage()));
    if (auto failures = ImportStateFiles::saveFailureLog(m_log.dumpText(), now); !failures)
        m_log.add(QStringLiteral("import_failures.txt: %1").arg(failures.errorMessage()));

    QString status = m_report.summary + QLatin1Char(' ') + backupText;
    if (m_cancelled)
        status = tr("Abgebrochen nach %1 von %2 Dateien.").arg(m_processed).arg(m_total) + QLatin1Char(' ') + status;
    // A text import always ends with the hint, so its line reads the same whatever it wrote.
    if (!m_settings.imagesOnly || !m_applier->undoItems().isEmpty())
        status += QLatin1Char(' ') + undoHintText();
    for (const QString &problem : std::as_const(problems))
        status += QLatin1Char(' ') + problem;
    finish(status);
}

void ImportRun::finish(const QString &statusText)
{
    m_running = false;
    m_statusText = statusText;
    Q_EMIT statusChanged(statusText);
    Q_EMIT finished();
}
