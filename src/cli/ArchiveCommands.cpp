#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/CategoryCatalog.h"
#include "archive/PoemEdit.h"
#include "archive/PoemFactory.h"
#include "archive/PoemVersions.h"
#include "archive/TextFileReader.h"
#include "backup/ArchiveJson.h"
#include "backup/PoemBackup.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"
#include "cli/CliTexts.h"
#include "cli/PoemLookup.h"
#include "editor/PoemRichText.h"
#include "matching/FuzzyMatcher.h"
#include "matching/TitleKey.h"

#include <QCoreApplication>

namespace {

struct PoemFieldOptions {
    std::optional<QString> title;
    std::optional<QString> text;
    std::optional<QString> textFile;
    std::optional<QString> category;
    std::optional<QString> date;
    std::optional<QString> notes;
    std::optional<QString> published;
    std::optional<QString> podcast;
};

PoemFieldOptions takeFieldOptions(CliInvocation &cli, bool flagsAreSwitches)
{
    PoemFieldOptions options;
    options.title = cli.takeOption(QStringLiteral("--title"));
    options.text = cli.takeOption(QStringLiteral("--text"));
    options.textFile = cli.takeOption(QStringLiteral("--text-file"));
    options.category = cli.takeOption(QStringLiteral("--category"));
    options.date = cli.takeOption(QStringLiteral("--date"));
    options.notes = cli.takeOption(QStringLiteral("--notes"));
    if (flagsAreSwitches) {
        if (cli.takeFlag(QStringLiteral("--published")))
            options.published = QStringLiteral("true");
        if (cli.takeFlag(QStringLiteral("--podcast")))
            options.podcast = QStringLiteral("true");
    } else {
        options.published = cli.takeOption(QStringLiteral("--published"));
        options.podcast = cli.takeOption(QStringLiteral("--podcast"));
    }
    return options;
}

std::optional<bool> parseBool(const QString &text)
{
    if (text == QLatin1String("true"))
        return true;
    if (text == QLatin1String("false"))
        return false;
    return std::nullopt;
}

// Checks every value before anything is changed, so a bad option leaves the poem alone.
int applyFieldOptions(CliInvocation &cli, ArchiveContext &context, Poem &poem, const PoemFieldOptions &options)
{
    if (options.text && options.textFile)
        return cli.usageError(QStringLiteral("--text and --text-file exclude each other"));
    std::optional<QString> text = options.text;
    if (options.textFile) {
        const auto read = TextFileReader::read(*options.textFile);
        if (!read)
            return cli.fail(CliTexts::tr("Datei konnte nicht gelesen werden: %1").arg(read.errorMessage()));
        if (read->readAsWindows1252)
            cli.note(TextFileReader::windows1252Note(*options.textFile));
        text = read->text;
    }
    std::optional<QDateTime> date;
    if (options.date) {
        const QDate day = QDate::fromString(*options.date, QStringLiteral("yyyy-MM-dd"));
        if (!day.isValid())
            return cli.usageError(QStringLiteral("--date takes YYYY-MM-DD"));
        date = day.startOfDay().toUTC();
    }
    // The formatted text is written with the plain one, as the editor would store it.
    std::optional<QByteArray> richText;
    if (text) {
        auto encoded = PoemRichText::encodePlainText(*text);
        if (!encoded)
            return cli.fail(CliTexts::tr("Speichern fehlgeschlagen: %1").arg(encoded.errorMessage()));
        richText = std::move(*encoded);
    }
    std::optional<bool> published;
    std::optional<bool> podcast;
    if (options.published && !(published = parseBool(*options.published)))
        return cli.usageError(QStringLiteral("--published takes true or false"));
    if (options.podcast && !(podcast = parseBool(*options.podcast)))
        return cli.usageError(QStringLiteral("--podcast takes true or false"));

    const auto saved = PoemEdit::apply(
        context, poem,
        [&](Poem &p) {
            if (options.title)
                PoemEdit::setTitle(p, *options.title);
            if (text && p.text() != text) {
                p.setRichTextData(richText);
                p.setText(*text);
            }
            if (options.category)
                p.setCategory(*options.category);
            if (date)
                p.setDate(*date);
            if (options.notes)
                p.setWriterNotes(*options.notes);
            if (published)
                p.setPublished(*published);
            if (podcast)
                p.setInPodcast(*podcast);
        },
        QDateTime::currentDateTimeUtc());
    if (!saved)
        return cli.fail(CliTexts::tr("Speichern fehlgeschlagen: %1").arg(saved.errorMessage()));
    return 0;
}

int runAdd(CliInvocation &cli)
{
    const PoemFieldOptions options = takeFieldOptions(cli, true);
    if (!cli.finishOptions(0, 0))
        return cli.usageError({});
    if (!options.title)
        return cli.usageError(QStringLiteral("--title is required"));
    ArchiveContext *context = cli.writableArchive();
    if (!context)
        return 1;
    PoemPtr poem = PoemFactory::makeNewPoem(*context, QDateTime::currentDateTimeUtc());
    if (const int status = applyFieldOptions(cli, *context, *poem, options); status != 0) {
        context->rollback();
        return status;
    }
    cli.print(uuidText(*poem->id()));
    return 0;
}

int runShow(CliInvocation &cli)
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const PoemPtr poem = findPoemArgument(cli, cli.positional().at(0));
    if (!poem)
        return 1;
    if (auto read = poem->readFully(); !read)
        return cli.fail(read.errorMessage());
    cli.printRaw(ArchiveJson::encode(PoemBackup::fromPoem(*poem).toJson()) + '\n');
    return 0;
}

int runSet(CliInvocation &cli)
{
    const PoemFieldOptions options = takeFieldOptions(cli, false);
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const PoemPtr poem = findPoemToChange(cli);
    if (!poem)
        return 1;
    if (const int status = applyFieldOptions(cli, *poem->context(), *poem, options); status != 0)
        return status;
    // One call is a whole editing session; the next one must not write over it unkept.
    if (auto kept = PoemVersions::recordSessionEnd(*poem->context(), *poem); !kept)
        cli.note(kept.errorMessage());
    cli.print(CliTexts::tr("Gespeichert"));
    return 0;
}

int runNormalize(CliInvocation &cli)
{
    const bool fuzzy = cli.takeFlag(QStringLiteral("--fuzzy"));
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    const QString text = cli.positional().at(0);
    cli.print(fuzzy ? FuzzyMatcher::normalize(text) : normalize(text));
    return 0;
}

int runPrefs(CliInvocation &cli)
{
    if (!cli.finishOptions(2, 3))
        return cli.usageError({});
    const QString action = cli.positional().at(0);
    const QString key = cli.positional().at(1);
    if (!AppPreferences::knownKeys().contains(key))
        return cli.usageError(QStringLiteral("unknown preference key %1").arg(key));
    if (action == QLatin1String("get") && cli.positional().size() == 2) {
        cli.print(AppPreferences::valueText(key).value_or(QString()));
        return 0;
    }
    if (action == QLatin1String("set") && cli.positional().size() == 3) {
        const auto stored = AppPreferences::setValueText(key, cli.positional().at(2));
        if (!stored)
            return cli.fail(stored.errorMessage());
        if (!*stored)
            return cli.usageError(QStringLiteral("invalid value for %1").arg(key));
        cli.print(AppPreferences::valueText(key).value_or(QString()));
        return 0;
    }
    return cli.usageError(QStringLiteral("use 'prefs get KEY' or 'prefs set KEY VALUE'"));
}

int runCategoryAdd(CliInvocation &cli)
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    if (auto added = CategoryCatalog::addCategory(cli.positional().at(0)); !added)
        return cli.fail(added.errorMessage());
    return 0;
}

int runCategoryRename(CliInvocation &cli)
{
    if (!cli.finishOptions(2, 2))
        return cli.usageError({});
    ArchiveContext *context = cli.writableArchive();
    if (!context)
        return 1;
    const auto renamed = CategoryCatalog::renameCategory(*context, cli.positional().at(0), cli.positional().at(1),
                                                         QDateTime::currentDateTimeUtc());
    if (!renamed)
        return cli.fail(renamed.errorMessage());
    return 0;
}

int runCategoryRemove(CliInvocation &cli)
{
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    ArchiveContext *context = cli.writableArchive();
    if (!context)
        return 1;
    if (auto removed =
            CategoryCatalog::removeCategory(*context, cli.positional().at(0), QDateTime::currentDateTimeUtc());
        !removed)
        return cli.fail(removed.errorMessage());
    return 0;
}

} // namespace

std::vector<CliCommand> archiveCommands()
{
    return {
        {QStringLiteral("add"),
         QStringLiteral("add --title T [--text T | --text-file F] [--category C] [--date YYYY-MM-DD] [--notes N] "
                        "[--published] [--podcast]"),
         runAdd},
        {QStringLiteral("show"), QStringLiteral("show ID"), runShow},
        {QStringLiteral("set"),
         QStringLiteral("set ID [--title T] [--text T | --text-file F] [--category C] [--date D] [--notes N] "
                        "[--published true|false] [--podcast true|false]"),
         runSet},
        {QStringLiteral("normalize"), QStringLiteral("normalize [--fuzzy] TEXT"), runNormalize},
        {QStringLiteral("prefs"), QStringLiteral("prefs get KEY | prefs set KEY VALUE"), runPrefs},
        {QStringLiteral("category-add"), QStringLiteral("category-add NAME"), runCategoryAdd},
        {QStringLiteral("category-rename"), QStringLiteral("category-rename OLD NEW"), runCategoryRename},
        {QStringLiteral("category-remove"), QStringLiteral("category-remove NAME"), runCategoryRemove},
    };
}
