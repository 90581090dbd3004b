#include "archive/AppPreferences.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/CliTexts.h"
#include "editor/RhymeProvider.h"

namespace {

int runRhymeUrl(CliInvocation &cli)
{
    const std::optional<QString> providerName = cli.takeOption(QStringLiteral("--provider"));
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    RhymeProvider provider = defaultRhymeProvider();
    if (providerName) {
        const auto named = rhymeProviderFromName(*providerName);
        if (!named) {
            QStringList known;
            for (const RhymeProvider candidate : allRhymeProviders)
                known.append(rawValue(candidate));
            return cli.usageError(
                QStringLiteral("unknown provider %1 (known: %2)").arg(*providerName, known.join(QStringLiteral(", "))));
        }
        provider = *named;
    }
    const QString word = RhymeLookup::normalizedRhymeWord(cli.positional().at(0));
    const auto url = RhymeLookup::url(provider, word);
    if (!url)
        return cli.fail(CliTexts::tr("Gib ein Wort ein, zu dem OdeLeaf Reime suchen soll."));
    cli.print(QString::fromLatin1(url->toEncoded()));
    return 0;
}

} // namespace

std::vector<CliCommand> editorCommands()
{
    return {
        {QStringLiteral("rhyme-url"), QStringLiteral("rhyme-url WORD [--provider NAME]"), runRhymeUrl},
    };
}
