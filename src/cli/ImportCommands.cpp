#include "archive/ArchiveContext.h"
#include "backup/ArchiveJson.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/CliTexts.h"
#include "import/CSVImporter.h"
#include "import/FolderScan.h"
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

int runScan(CliInvocation &cli)
{
    const bool imagesOnly = cli.takeFlag(QStringLiteral("--images"));
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const QString folder = cli.positional().at(0);
    if (!QFileInfo(folder).isDir())
        return cli.fail(CliTexts::tr("Ordner nicht gefunden: %1").arg(folder));
    ArchiveContext *context = cli.archive();
    if (!context)
        return 1;
    const FolderScanOutcome outcome = FolderScan::run(folder, livePoemSnapshot(*context), imagesOnly);
    QJsonArray proposals;
    for (const ImportProposal &proposal : outcome.proposals)
        proposals.append(proposal.toJson());
    cli.printRaw(ArchiveJson::encode(proposals) + '\n');
    return 0;
}

int runImportCsv(CliInvocation &cli)
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    ArchiveContext *context = cli.archive();
    if (!context)
        return 1;
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
    };
}
