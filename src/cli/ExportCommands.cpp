#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/PoemLookup.h"
#include "export/PoemExport.h"

#include <QFileInfo>

namespace {

int runExport(CliInvocation &cli)
{
    const auto formatName = cli.takeOption(QStringLiteral("--format"));
    const auto out = cli.takeOption(QStringLiteral("--out"));
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    if (!formatName || !out)
        return cli.usageError(QStringLiteral("export needs --format and --out"));
    const auto format = exportFormatFromExtension(formatName->toLower());
    if (!format)
        return cli.usageError(QStringLiteral("unknown format %1 (known: pdf, docx, txt)").arg(*formatName));
    const PoemPtr poem = findPoemArgument(cli, cli.positional().at(0));
    if (!poem)
        return 1;
    const QString path = QFileInfo(*out).absoluteFilePath();
    const Result<void> written = PoemExport::write(*poem, *format, path);
    if (!written)
        return cli.fail(PoemExport::statusLine(written, path));
    cli.print(PoemExport::statusLine(written, path));
    return 0;
}

} // namespace

std::vector<CliCommand> exportCommands()
{
    return {
        {QStringLiteral("export"), QStringLiteral("export ID --format pdf|docx|txt --out FILE"), runExport},
    };
}
