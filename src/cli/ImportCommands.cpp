#include "archive/ArchiveContext.h"
#include "backup/ArchiveJson.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/CliTexts.h"
#include "import/CSVImporter.h"
#include "import/FolderScan.h"
#include "import/ImportRun.h"
#include "import/ImportUndo.h"
#include "import/IsolatedDocumentExtractor.h"
#include "import/PoemSnapshot.h"

#include <QFileInfo>
#include <QJsonArray>

namespace {

int runExtract(CliInvocation &cli)
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const QString path = cli.positional().at(0);
    IsolatedDocumentExtractor extractor;
    const IsolatedExtraction extraction =
        extractor.extract(path, IsolatedDocumentExtractor::defaultTimeoutMilliseconds(path));
    if (!extraction.result)
        return cli.fail(extraction.result.errorMessage());
    cli.print(extraction.result->text);
    return 0;
}

// The one folder named on the command line, scanned against the live poems.
struct ScannedFolder {
    ArchiveContext *context = nullptr;
    FolderScanOutcome outcome;
    std::optional<int> exitCode; // set when there is nothing to go on with
};

ScannedFolder scanNamedFolder(CliInvocation &cli, bool imagesOnly)
{
    ScannedFolder scanned;
    if (!cli.finishOptions(1, 1)) {
        scanned.exitCode = cli.usageError({});
        return scanned;
    }
    const QString folder = cli.positional().at(0);
    if (!QFileInfo(folder).isDir()) {
        scanned.exitCode = cli.fail(CliTexts::tr("Ordner nicht gefunden: %1").arg(folder));
        return scanned;
    }
    scanned.context = cli.archive();
    if (!scanned.context) {
        scanned.exitCode = 1;
        return scanned;
    }
    scanned.outcome = FolderScan::run(folder, livePoemSnapshot(*scanned.context), imagesOnly);
    return scanned;
}

int runScan(CliInvocation &cli)
{
    const ScannedFolder scanned = scanNamedFolder(cli, cli.takeFlag(QStringLiteral("--images")));
    if (scanned.exitCode)
        return *scanned.exitCode;
    QJsonArray proposals;
    for (const ImportProposal &proposal : scanned.outcome.proposals)
        proposals.append(proposal.toJson());
    cli.printRaw(ArchiveJson::encode(proposals) + '\n');
    return 0;
}

template <typename T> bool takeNumber(CliInvocation &cli, const QString &name, T &target)
{
    const auto text = cli.takeOption(name);
    if (!text)
        return true;
    bool ok = false;
    const double value = text->toDouble(&ok);
    if (!ok || value < 0)
        return false;
    target = T(value);
    return true;
}

// The review's options from the command line; defaults as the review opens.
std::optional<ImportReviewOptions> takeReviewOptions(CliInvocation &cli)
{
    ImportReviewOptions options;
    options.importPDF = cli.takeFlag(QStringLiteral("--pdf"));
    options.importDOCX = !cli.takeFlag(QStringLiteral("--no-docx"));
    options.onlyIfPoemTextEmpty = !cli.takeFlag(QStringLiteral("--overwrite"));
    options.docxThenPdfOnlyForStillEmpty = !cli.takeFlag(QStringLiteral("--one-pass"));
    if (!takeNumber(cli, QStringLiteral("--min-score-pdf"), options.minScoreForPDF) ||
        !takeNumber(cli, QStringLiteral("--min-margin-pdf"), options.minMarginForPDF) ||
        !takeNumber(cli, QStringLiteral("--timeout-docx"), options.timeoutDOCX) ||
        !takeNumber(cli, QStringLiteral("--timeout-pdf"), options.timeoutPDF))
        return std::nullopt;
    if (options.timeoutDOCX < 1 || options.timeoutPDF < 1)
        return std::nullopt;
    return options;
}

int runImport(CliInvocation &cli)
{
    const bool imagesOnly = cli.takeFlag(QStringLiteral("--images"));
    const auto options = takeReviewOptions(cli);
    const QStringList assignments = cli.takeRepeatedOption(QStringLiteral("--assign"));
    if (!options)
        return cli.usageError(CliTexts::tr("Ungültige Zahl bei einer Option"));
    ScannedFolder scanned = scanNamedFolder(cli, imagesOnly);
    if (scanned.exitCode)
        return *scanned.exitCode;
    FolderScanOutcome &scan = scanned.outcome;
    for (const QString &assignment : assignments) {
        const qsizetype equals = assignment.lastIndexOf(QLatin1Char('='));
        const QUuid id = equals > 0 ? QUuid::fromString(assignment.mid(equals + 1)) : QUuid();
        if (id.isNull())
            return cli.usageError(CliTexts::tr("--assign erwartet DATEI=ID: %1").arg(assignment));
        const QString file = assignment.left(equals);
        const auto proposal = std::find_if(scan.proposals.begin(), scan.proposals.end(),
                                           [&file](const ImportProposal &p) { return p.relativePath == file; });
        if (proposal == scan.proposals.end())
            return cli.fail(CliTexts::tr("Datei nicht im Ordner gefunden: %1").arg(file));
        proposal->chosenPoemObjectURI = uuidText(id);
    }
    ImportRunSettings settings;
    settings.folder = scan.folder;
    settings.proposals = std::move(scan.proposals);
    settings.unreadableFiles = std::move(scan.unreadableFiles);
    settings.options = *options;
    settings.imagesOnly = imagesOnly;
    ImportRun run(*scanned.context, std::move(settings));
    run.runToEnd();
    if (!run.hasApplied() && run.statusText() != ImportRun::nothingToImportText())
        return cli.fail(run.statusText());
    // Files read but not stored: a script must not take the folder as imported.
    if (run.counts().unsaved > 0)
        return cli.fail(run.statusText());
    cli.print(run.statusText());
    return 0;
}

int runUndoImport(CliInvocation &cli)
{
    ArchiveContext *context = cli.archiveAfterOptions(0, 0);
    if (!context)
        return cli.exitCode();
    const auto undone = ImportUndo::undoLastImport(*context);
    if (!undone)
        return cli.fail(undone.errorMessage());
    cli.print(*undone);
    return 0;
}

int runImportCsv(CliInvocation &cli)
{
    ArchiveContext *context = cli.archiveAfterOptions(1, 1);
    if (!context)
        return cli.exitCode();
    const CSVImportResult result = CSVImporter::importGedichte(cli.positional().at(0), *context);
    if (result.error)
        return cli.fail(CSVImporter::statusLine(result));
    cli.print(CSVImporter::statusLine(result));
    return 0;
}

} // namespace

std::vector<CliCommand> importCommands()
{
    return {
        {QStringLiteral("extract"), QStringLiteral("extract FILE"), runExtract},
        {QStringLiteral("scan"), QStringLiteral("scan DIR [--images]"), runScan},
        {QStringLiteral("import-csv"), QStringLiteral("import-csv FILE"), runImportCsv},
        {QStringLiteral("import"),
         QStringLiteral("import DIR [--images] [--pdf] [--no-docx] [--overwrite] [--one-pass] [--min-score-pdf X] "
                        "[--min-margin-pdf X] [--timeout-docx S] [--timeout-pdf S] [--assign FILE=ID]..."),
         runImport},
        {QStringLiteral("undo-import"), QStringLiteral("undo-import"), runUndoImport},
    };
}
