#include "analysis/DuplicateChecker.h"
#include "analysis/StatisticsReport.h"
#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "backup/ArchiveJson.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "export/OdeLeafReaderPackageExporter.h"

namespace {

QList<PoemPtr> activePoems(const ArchiveContext &context)
{
    return context.fetch([](const Poem &poem) { return !poem.isInTrash(); });
}

int runReaderPackage(CliInvocation &cli)
{
    ArchiveContext *context = cli.archiveAfterOptions(1, 1);
    if (!context)
        return cli.exitCode();
    const QString path = cli.positional().at(0);
    const auto written =
        OdeLeafReaderPackageExporter::write(activePoems(*context), AppPreferences::poemCategories(), path);
    if (!written)
        return cli.fail(OdeLeafReaderPackageExporter::failedStatus(written.errorMessage()));
    cli.print(OdeLeafReaderPackageExporter::createdStatus(*written, path));
    return 0;
}

int runDuplicates(CliInvocation &cli)
{
    const bool json = cli.takeFlag(QStringLiteral("--json"));
    ArchiveContext *context = cli.archiveAfterOptions(0, 0);
    if (!context)
        return cli.exitCode();
    const DuplicateCheckReport report = DuplicateChecker::check(activePoems(*context));
    if (json) {
        cli.printRaw(ArchiveJson::encode(DuplicateChecker::toJson(report)) + '\n');
        return 0;
    }
    cli.print(DuplicateChecker::statusLine(report));
    for (const QString &line : DuplicateChecker::textLines(report))
        cli.print(line);
    return 0;
}

int runStats(CliInvocation &cli)
{
    const auto jsonPath = cli.takeOption(QStringLiteral("--json"));
    const auto pdfPath = cli.takeOption(QStringLiteral("--pdf"));
    ArchiveContext *context = cli.archiveAfterOptions(0, 0);
    if (!context)
        return cli.exitCode();
    const StatisticsReport report = StatisticsReport::make(activePoems(*context));
    if (!jsonPath && !pdfPath) {
        for (const QString &line : report.textLines())
            cli.print(line);
        return 0;
    }
    if (jsonPath) {
        if (auto saved = report.saveJson(*jsonPath); !saved)
            return cli.fail(StatisticsReport::jsonFailed(saved.errorMessage()));
        cli.print(StatisticsReport::jsonSaved(*jsonPath));
    }
    if (pdfPath) {
        if (auto saved = report.savePdf(*pdfPath); !saved)
            return cli.fail(StatisticsReport::pdfFailed(saved.errorMessage()));
        cli.print(StatisticsReport::pdfSaved(*pdfPath));
    }
    return 0;
}

} // namespace

std::vector<CliCommand> analysisCommands()
{
    return {
        {QStringLiteral("reader-package"), QStringLiteral("reader-package FILE"), runReaderPackage},
        {QStringLiteral("duplicates"), QStringLiteral("duplicates [--json]"), runDuplicates},
        {QStringLiteral("stats"), QStringLiteral("stats [--json FILE] [--pdf FILE]"), runStats},
    };
}
