#include "archive/TextFileReader.h"
#include "backup/ArchiveJson.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/CliTexts.h"
#include "cli/PoemLookup.h"
#include "editor/SpellChecker.h"
#include "verse/VerseAnalyzer.h"

namespace {

// The poem's text from --text-file or from the archive; null after saying what went wrong.
std::optional<QString> verseText(CliInvocation &cli, const std::optional<QString> &textFile)
{
    if (textFile) {
        if (!cli.positional().isEmpty()) {
            cli.usageError(QStringLiteral("give either a poem id or --text-file"));
            return std::nullopt;
        }
        const auto read = TextFileReader::read(*textFile);
        if (!read) {
            cli.fail(CliTexts::tr("Datei konnte nicht gelesen werden: %1").arg(read.errorMessage()));
            return std::nullopt;
        }
        if (read->readAsWindows1252)
            cli.note(TextFileReader::windows1252Note(*textFile));
        return read->text;
    }
    if (cli.positional().isEmpty()) {
        cli.usageError(QStringLiteral("give a poem id or --text-file"));
        return std::nullopt;
    }
    const PoemPtr poem = findPoemArgument(cli, cli.positional().at(0));
    if (!poem)
        return std::nullopt;
    return poem->text().value_or(QString());
}

int runVerse(CliInvocation &cli)
{
    const bool json = cli.takeFlag(QStringLiteral("--json"));
    const std::optional<QString> language = cli.takeOption(QStringLiteral("--language"));
    const std::optional<QString> textFile = cli.takeOption(QStringLiteral("--text-file"));
    if (!cli.finishOptions(0, 1))
        return cli.usageError({});
    if (language && *language != QLatin1String("de") && *language != QLatin1String("en"))
        return cli.usageError(QStringLiteral("--language takes de or en"));
    const std::optional<QString> text = verseText(cli, textFile);
    if (!text)
        return cli.exitCode();

    const QString chosen = language ? *language : SpellChecker().paragraphLanguage(*text);
    const VerseAnalysis analysis = VerseAnalyzer().analyse(*text, chosen);
    if (json) {
        cli.printRaw(ArchiveJson::encode(analysis.toJson()) + '\n');
        return 0;
    }
    for (const QString &line : analysis.textLines())
        cli.print(line);
    return 0;
}

} // namespace

std::vector<CliCommand> verseCommands()
{
    return {
        {QStringLiteral("verse"), QStringLiteral("verse (ID | --text-file F) [--language de|en] [--json]"), runVerse},
    };
}
