#include "archive/ArchiveContext.h"
#include "archive/PoemVersions.h"
#include "archive/VerseDiff.h"
#include "backup/ArchiveJson.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/PoemLookup.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

std::optional<qint64> versionNumber(const QString &text)
{
    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    if (!ok || number < 1)
        return std::nullopt;
    return number;
}

int runVersions(CliInvocation &cli)
{
    const bool json = cli.takeFlag(QStringLiteral("--json"));
    if (!cli.archiveAfterOptions(1, 1))
        return cli.exitCode();
    const PoemPtr poem = findPoemArgument(cli, cli.positional().at(0));
    if (!poem)
        return 1;
    const auto versions = PoemVersions::list(*poem->context(), *poem);
    if (!versions)
        return cli.fail(versions.errorMessage());
    if (json) {
        QJsonArray list;
        for (const PoemVersion &version : *versions) {
            QJsonObject entry{{QStringLiteral("number"), version.number},
                              {QStringLiteral("createdAt"), ArchiveJson::dateText(version.createdAt)},
                              {QStringLiteral("reason"), version.reason},
                              {QStringLiteral("wordsAdded"), version.wordsAdded},
                              {QStringLiteral("wordsRemoved"), version.wordsRemoved}};
            if (!version.name.isEmpty())
                entry.insert(QStringLiteral("name"), version.name);
            list.append(entry);
        }
        cli.printRaw(ArchiveJson::encode(list) + '\n');
        return 0;
    }
    for (const PoemVersion &version : *versions) {
        cli.print(QStringList{QString::number(version.number),
                              version.createdAt.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")),
                              version.label(), QString::number(version.wordsAdded),
                              QString::number(version.wordsRemoved)}
                      .join(QLatin1Char('\t')));
    }
    return 0;
}

int runVersionShow(CliInvocation &cli)
{
    const bool diff = cli.takeFlag(QStringLiteral("--diff"));
    if (!cli.archiveAfterOptions(2, 2))
        return cli.exitCode();
    const auto number = versionNumber(cli.positional().at(1));
    if (!number)
        return cli.usageError(QStringLiteral("N must be a version number"));
    const PoemPtr poem = findPoemArgument(cli, cli.positional().at(0));
    if (!poem)
        return 1;
    const auto version = PoemVersions::version(*poem->context(), *poem, *number);
    if (!version)
        return cli.fail(version.errorMessage());
    const QString text = version->values.text.value_or(QString());
    cli.print(diff ? VerseDiff::compare(text, poem->text().value_or(QString())).markedText() : text);
    return 0;
}

int runVersionSave(CliInvocation &cli)
{
    const QString name = cli.takeOption(QStringLiteral("--name")).value_or(QString());
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const PoemPtr poem = findPoemToChange(cli);
    if (!poem)
        return 1;
    if (auto saved = PoemVersions::saveByHand(*poem->context(), *poem, name); !saved)
        return cli.fail(saved.errorMessage());
    cli.print(PoemVersions::savedText());
    return 0;
}

int runVersionRestore(CliInvocation &cli)
{
    if (!cli.finishOptions(2, 2))
        return cli.usageError({});
    const auto number = versionNumber(cli.positional().at(1));
    if (!number)
        return cli.usageError(QStringLiteral("N must be a version number"));
    const PoemPtr poem = findPoemToChange(cli);
    if (!poem)
        return 1;
    if (auto restored = PoemVersions::restore(*poem->context(), *poem, *number); !restored)
        return cli.fail(restored.errorMessage());
    cli.print(PoemVersions::restoredText());
    return 0;
}

} // namespace

std::vector<CliCommand> versionCommands()
{
    return {
        {QStringLiteral("versions"), QStringLiteral("versions ID [--json]"), runVersions},
        {QStringLiteral("version-show"), QStringLiteral("version-show ID N [--diff]"), runVersionShow},
        {QStringLiteral("version-save"), QStringLiteral("version-save ID [--name NAME]"), runVersionSave},
        {QStringLiteral("version-restore"), QStringLiteral("version-restore ID N"), runVersionRestore},
    };
}
