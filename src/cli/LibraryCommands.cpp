#include "archive/ArchiveContext.h"
#include "archive/LibraryBrowser.h"
#include "archive/Trash.h"
#include "backup/ArchiveJson.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/CliTexts.h"
#include "cli/PoemLookup.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QJsonObject rowJson(const PoemRow &row)
{
    QJsonObject object{
        {QStringLiteral("id"), row.id},
        {QStringLiteral("title"), row.title},
        {QStringLiteral("dateText"), row.dateText},
        {QStringLiteral("excerpt"), row.excerpt},
        {QStringLiteral("statusText"), row.statusText},
        {QStringLiteral("hasText"), row.hasText},
        {QStringLiteral("isPublished"), row.isPublished},
        {QStringLiteral("inPodcast"), row.inPodcast},
    };
    if (row.category)
        object.insert(QStringLiteral("category"), *row.category);
    return object;
}

QJsonObject countsJson(const LibraryCounts &counts)
{
    return {
        {QStringLiteral("activePoemCount"), counts.activePoemCount},
        {QStringLiteral("missingTextCount"), counts.missingTextCount},
        {QStringLiteral("publishedCount"), counts.publishedCount},
        {QStringLiteral("podcastCount"), counts.podcastCount},
        {QStringLiteral("scopedActivePoemCount"), counts.scopedActivePoemCount},
        {QStringLiteral("scopedMissingTextCount"), counts.scopedMissingTextCount},
        {QStringLiteral("scopedPublishedCount"), counts.scopedPublishedCount},
        {QStringLiteral("scopedPodcastCount"), counts.scopedPodcastCount},
        {QStringLiteral("trashCount"), counts.trashCount},
    };
}

QJsonObject listJson(const LibraryBrowser &browser)
{
    QJsonArray rows;
    for (const PoemRow &row : browser.rows())
        rows.append(rowJson(row));
    QJsonArray filters;
    for (const CategoryFilter &filter : browser.categoryFilters())
        filters.append(QJsonObject{{QStringLiteral("name"), filter.name}, {QStringLiteral("count"), filter.count}});
    QJsonObject document{
        {QStringLiteral("rows"), rows},
        {QStringLiteral("counts"), countsJson(browser.counts())},
        {QStringLiteral("categoryFilters"), filters},
    };
    if (browser.showsResultSummary())
        document.insert(QStringLiteral("summary"), browser.resultSummaryText());
    return document;
}

// Tabs and line breaks inside a field would break the one-row-per-line output.
QString field(QString text)
{
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text;
}

int runList(CliInvocation &cli)
{
    const auto search = cli.takeOption(QStringLiteral("--search"));
    const auto mode = cli.takeOption(QStringLiteral("--mode"));
    const auto scope = cli.takeOption(QStringLiteral("--scope"));
    const auto category = cli.takeOption(QStringLiteral("--category"));
    const auto sort = cli.takeOption(QStringLiteral("--sort"));
    const bool json = cli.takeFlag(QStringLiteral("--json"));
    if (!cli.finishOptions(0, 0))
        return cli.usageError({});

    const auto searchMode = mode ? searchModeFromRaw(*mode) : storedSearchMode();
    if (!searchMode)
        return cli.usageError(QStringLiteral("--mode takes Titel, Text, Kategorie or Alles"));
    const auto sidebarScope = scope ? sidebarScopeFromRaw(*scope) : SidebarScope::archive;
    if (!sidebarScope)
        return cli.usageError(QStringLiteral("--scope takes Archiv, \"Ohne Text\", Veröffentlicht or Podcast"));
    const auto sortMode = sort ? poemSortModeFromRaw(*sort) : PoemSortMode::recentlyChanged;
    if (!sortMode)
        return cli.usageError(QStringLiteral("--sort takes one of the five sort labels"));

    ArchiveContext *context = cli.archive();
    if (!context)
        return 1;
    LibraryBrowser browser(*context);
    browser.searchText = search.value_or(QString());
    browser.searchMode = *searchMode;
    browser.sidebarScope = *sidebarScope;
    browser.sortMode = *sortMode;
    browser.selectedCategory = category;
    browser.reloadRows();

    if (json) {
        cli.printRaw(ArchiveJson::encode(listJson(browser)) + '\n');
        return 0;
    }
    for (const PoemRow &row : browser.rows()) {
        cli.print(QStringList{field(row.displayTitle()), row.dateText, field(row.category.value_or(QString())),
                              row.statusText, row.excerpt}
                      .join(QLatin1Char('\t')));
    }
    if (browser.showsResultSummary())
        cli.print(browser.resultSummaryText());
    return 0;
}

// The list actions report like the window; a save the window would retry later is a
// failure for a script, which ends here.
int reportListAction(CliInvocation &cli, const LibraryBrowser::ActionOutcome &outcome)
{
    if (!outcome.saveError.isEmpty())
        return cli.fail(CliTexts::tr("Speichern fehlgeschlagen: %1").arg(outcome.saveError));
    cli.print(outcome.statusText);
    return 0;
}

// duplicate and trash: one live poem, one list action.
int runLivePoemAction(CliInvocation &cli, const QString &inTrashText,
                      LibraryBrowser::ActionOutcome (LibraryBrowser::*action)(const PoemPtr &, const QDateTime &))
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const PoemPtr poem = findPoemToChange(cli);
    if (!poem)
        return 1;
    if (poem->isInTrash())
        return cli.fail(inTrashText.arg(cli.positional().at(0)));
    LibraryBrowser browser(*poem->context());
    return reportListAction(cli, (browser.*action)(poem, QDateTime::currentDateTimeUtc()));
}

int runDuplicate(CliInvocation &cli)
{
    return runLivePoemAction(cli, CliTexts::tr("Gedicht liegt im Papierkorb: %1"), &LibraryBrowser::duplicatePoem);
}

int runTrash(CliInvocation &cli)
{
    return runLivePoemAction(cli, CliTexts::tr("Gedicht liegt bereits im Papierkorb: %1"),
                             &LibraryBrowser::moveToTrash);
}

int runTrashList(CliInvocation &cli)
{
    const bool json = cli.takeFlag(QStringLiteral("--json"));
    ArchiveContext *context = cli.archiveAfterOptions(0, 0);
    if (!context)
        return cli.exitCode();
    const QList<PoemPtr> poems = Trash(*context).poems();
    if (json) {
        QJsonArray list;
        for (const PoemPtr &poem : poems) {
            list.append(QJsonObject{{QStringLiteral("id"), poem->id() ? uuidText(*poem->id()) : QString()},
                                    {QStringLiteral("title"), Trash::displayTitle(*poem)},
                                    {QStringLiteral("deletedAt"), ArchiveJson::dateText(*poem->deletedAt())}});
        }
        cli.printRaw(ArchiveJson::encode(list) + '\n');
        return 0;
    }
    for (const PoemPtr &poem : poems) {
        cli.print(QStringList{poem->id() ? uuidText(*poem->id()) : QString(), field(Trash::displayTitle(*poem)),
                              ArchiveJson::dateText(*poem->deletedAt())}
                      .join(QLatin1Char('\t')));
    }
    return 0;
}

PoemPtr findTrashedPoem(CliInvocation &cli)
{
    if (!cli.writableArchive())
        return nullptr;
    const PoemPtr poem = findPoemArgument(cli, cli.positional().at(0));
    if (poem && !poem->isInTrash()) {
        cli.fail(CliTexts::tr("Gedicht liegt nicht im Papierkorb: %1").arg(cli.positional().at(0)));
        return nullptr;
    }
    return poem;
}

int reportTrashAction(CliInvocation &cli, const Result<QString> &outcome)
{
    if (!outcome)
        return cli.fail(outcome.errorMessage());
    cli.print(outcome.value());
    return 0;
}

int runTrashRestore(CliInvocation &cli)
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const PoemPtr poem = findTrashedPoem(cli);
    if (!poem)
        return 1;
    return reportTrashAction(cli, Trash(*poem->context()).restore(poem, QDateTime::currentDateTimeUtc()));
}

int runTrashDelete(CliInvocation &cli)
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const PoemPtr poem = findTrashedPoem(cli);
    if (!poem)
        return 1;
    return reportTrashAction(cli, Trash(*poem->context()).deletePermanently(poem));
}

int runTrashEmpty(CliInvocation &cli)
{
    if (!cli.finishOptions(0, 0))
        return cli.usageError({});
    ArchiveContext *context = cli.writableArchive();
    if (!context)
        return 1;
    return reportTrashAction(cli, Trash(*context).emptyTrash());
}

} // namespace

std::vector<CliCommand> libraryCommands()
{
    return {
        {QStringLiteral("list"),
         QStringLiteral("list [--search S] [--mode Titel|Text|Kategorie|Alles] [--scope Archiv|\"Ohne Text\"|"
                        "Veröffentlicht|Podcast] [--category NAME] [--sort LABEL] [--json]"),
         runList},
        {QStringLiteral("duplicate"), QStringLiteral("duplicate ID"), runDuplicate},
        {QStringLiteral("trash"), QStringLiteral("trash ID"), runTrash},
        {QStringLiteral("trash-list"), QStringLiteral("trash-list [--json]"), runTrashList},
        {QStringLiteral("trash-restore"), QStringLiteral("trash-restore ID"), runTrashRestore},
        {QStringLiteral("trash-delete"), QStringLiteral("trash-delete ID"), runTrashDelete},
        {QStringLiteral("trash-empty"), QStringLiteral("trash-empty"), runTrashEmpty},
    };
}
