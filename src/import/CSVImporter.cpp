#include "import/CSVImporter.h"

#include "archive/ArchiveContext.h"
#include "archive/CategoryCatalog.h"
#include "archive/PoemVersion.h"
#include "archive/VersionReason.h"
#include "backup/BackupExporter.h"
#include "import/CSVDateParser.h"
#include "import/CSVDocument.h"
#include "import/CSVFileReader.h"
#include "import/CSVFlagParser.h"
#include "matching/TitleKey.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

namespace {

struct KnownCategoryColumn {
    int column;
    QString headerName; // as the sheet spells it
};

// The columns of one sheet, resolved once for all its rows.
struct Columns {
    explicit Columns(const CSVDocument &document)
        : title(document.firstColumn({u"gedicht", u"titel", u"title"})), category(document.firstColumn({u"kategorie"})),
          date(document.firstColumn({u"datum", u"date"})), podcast(document.firstColumn({u"podcast"})),
          published(document.firstColumn({u"veroeffentlicht", u"veröffentlicht", u"published"}))
    {
        for (const QString &name : CSVImporter::knownCategories()) {
            if (const auto column = document.column(name))
                knownCategories.append({*column, document.header.at(*column).trimmed().remove(QChar(0xFEFF))});
        }
    }

    std::optional<int> title, category, date, podcast, published;
    QList<KnownCategoryColumn> knownCategories;
};

// A category column holds either the category's own text or a mark ("x", "ja") that the
// row belongs to it; a mark writes the column's name as the sheet spells it. The
// "kategorie" column states the category directly, so it wins whenever it is filled; the
// category columns fill in when it is blank, the first filled one in list order.
QString rowCategory(const CSVTable::Row &row, const Columns &columns)
{
    if (const QString stated = CSVImporter::cleanCategory(CSVDocument::cell(row, columns.category)); !stated.isEmpty())
        return stated;
    for (const KnownCategoryColumn &known : columns.knownCategories) {
        const QString cell = CSVImporter::cleanCategory(CSVDocument::cell(row, known.column));
        if (cell.isEmpty())
            continue;
        return CSVFlagParser::parseBool(cell) == true ? known.headerName : cell;
    }
    return {};
}

struct RowValues {
    QString title;
    QString key;
    QString category;
    std::optional<QDateTime> date;
    std::optional<bool> inPodcast;
    std::optional<bool> isPublished;
};

void applyToNewPoem(Poem &poem, const RowValues &row, const QDateTime &now)
{
    poem.setId(QUuid::createUuid());
    poem.setTitle(row.title);
    poem.setTitleNormalized(row.key);
    if (!row.category.isEmpty())
        poem.setCategory(row.category);
    poem.setDate(row.date);
    poem.setInPodcast(row.inPodcast.value_or(false));
    poem.setPublished(row.isPublished.value_or(false));
    poem.setCreatedAt(now);
    poem.setUpdatedAt(now);
}

// Blank or unreadable cells leave what the poem has.
void applyToExistingPoem(Poem &poem, const RowValues &row, const QDateTime &now)
{
    poem.setTitle(row.title);
    poem.setTitleNormalized(row.key);
    if (!row.category.isEmpty())
        poem.setCategory(row.category);
    if (row.date)
        poem.setDate(row.date);
    if (row.inPodcast)
        poem.setInPodcast(*row.inPodcast);
    if (row.isPublished)
        poem.setPublished(*row.isPublished);
    poem.setUpdatedAt(now);
}

// Messages end in the status line and in dialogs: a header of a million names must not
// make a text of megabytes.
QString readable(const QString &text)
{
    constexpr qsizetype limit = 300;
    if (text.size() <= limit)
        return text;
    const qsizetype cut = text.at(limit - 2).isHighSurrogate() ? limit - 2 : limit - 1;
    return text.left(cut) + QChar(0x2026);
}

QString otherError(const QString &message, const QString &diagnostics)
{
    return CSVImporter::tr("CSV Fehler: %1 | %2").arg(readable(message), readable(diagnostics));
}

QString noDataRowsMessage(qsizetype byteCount, const QStringList &header)
{
    const QString summary = header.isEmpty()
                                ? CSVImporter::tr("(kein Header geparst)")
                                : CSVImporter::tr("Header: %1").arg(readable(header.join(QStringLiteral(", "))));
    return CSVImporter::tr("Keine Datenzeilen. Diagnose: bytes=%1").arg(byteCount) + QLatin1Char(' ') + summary;
}

// Each row looks its title key up among the live poems; a poem in the trash never matches,
// and of two live poems with one key the first in store order does.
QHash<QString, PoemPtr> livePoemsByKey(const ArchiveContext &context)
{
    QHash<QString, PoemPtr> byKey;
    for (const PoemPtr &poem : context.fetch([](const Poem &p) { return !p.isInTrash(); })) {
        const QString key = poem->titleNormalized().value_or(normalize(poem->title().value_or(QString())));
        if (!byKey.contains(key))
            byKey.insert(key, poem);
    }
    return byKey;
}

void applyRows(const CSVDocument &document, ArchiveContext &context, const QDateTime &now, CSVImportResult &result)
{
    const Columns columns(document);
    QHash<QString, PoemPtr> byKey = livePoemsByKey(context);
    QSet<QString> seenCategories;
    // Lists repeat their dates, and making a day's start asks the system's time zone.
    QHash<QString, std::optional<QDateTime>> datesByText;
    for (qsizetype index = 0; index < document.dataRows.rowCount(); ++index) {
        const CSVTable::Row cells = document.dataRows.row(index);
        RowValues row;
        row.title = CSVDocument::cell(cells, columns.title);
        row.key = normalize(row.title);
        // A title of punctuation only has an empty key, which untitled poems share.
        if (row.title.isEmpty() || row.key.isEmpty()) {
            ++result.skipped;
            continue;
        }
        row.category = rowCategory(cells, columns);
        const QString dateText = CSVDocument::cell(cells, columns.date);
        auto knownDate = datesByText.constFind(dateText);
        if (knownDate == datesByText.constEnd())
            knownDate = datesByText.insert(dateText, CSVDateParser::parseDate(dateText));
        row.date = *knownDate;
        row.inPodcast = CSVFlagParser::parseBool(CSVDocument::cell(cells, columns.podcast));
        row.isPublished = CSVFlagParser::parsePublished(CSVDocument::cell(cells, columns.published));
        if (const PoemPtr existing = byKey.value(row.key)) {
            applyToExistingPoem(*existing, row, now);
            ++result.updated;
        } else {
            const PoemPtr created = context.insertPoem();
            applyToNewPoem(*created, row, now);
            // A later row with the same title meets this poem, as if it had been there.
            byKey.insert(row.key, created);
            ++result.inserted;
        }
        if (!row.category.isEmpty() && !seenCategories.contains(row.category)) {
            seenCategories.insert(row.category);
            result.categories.append(row.category);
        }
    }
}

} // namespace

const QStringList &CSVImporter::knownCategories()
{
    static const QStringList names = {
        QStringLiteral("familie"),           QStringLiteral("kindergedichte"),    QStringLiteral("polizei"),
        QStringLiteral("gefuehle"),          QStringLiteral("zeitkr./pol."),      QStringLiteral("philosophisches"),
        QStringLiteral("krankheits-zyklus"), QStringLiteral("alanya anthologie"),
    };
    return names;
}

QString CSVImporter::cleanCategory(const QString &cell)
{
    QString cleaned = cell.trimmed();
    while (cleaned.endsWith(QLatin1Char(',')))
        cleaned.chop(1);
    return cleaned.trimmed();
}

CSVImportResult CSVImporter::importGedichte(const QString &path, ArchiveContext &context, const QDateTime &now)
{
    return apply(read(path), context, now);
}

CSVPreparedImport CSVImporter::read(const QString &path)
{
    CSVPreparedImport prepared;
    CSVImportResult &result = prepared.result;
    const auto bytes = CSVFileReader::read(path);
    if (!bytes) {
        const QString access = QFileInfo(path).isReadable() ? tr("ja") : tr("nein");
        result.diagnostics = QStringLiteral("Security-Scope=") + access;
        result.error =
            tr("Datei konnte nicht gelesen werden: %1 | %2").arg(readable(bytes.errorMessage()), result.diagnostics);
        return prepared;
    }
    result.diagnostics = QStringLiteral("bytes=%1").arg(bytes->size());
    if (bytes->isEmpty()) {
        result.error = otherError(tr("Leere Datei"), result.diagnostics);
        return prepared;
    }
    auto document = CSVDocument::read(*bytes);
    if (!document) {
        result.error = otherError(document.errorMessage(), result.diagnostics);
        return prepared;
    }
    result.rows = int(document->dataRows.rowCount());
    result.maxColumns = document->maxColumns;
    result.delimiter = document->delimiter;
    result.diagnostics = QStringLiteral("Encoding: ") + document->encoding;
    if (document->dataRows.rowCount() == 0) {
        result.error = otherError(noDataRowsMessage(bytes->size(), document->header), result.diagnostics);
        return prepared;
    }
    prepared.document = std::move(*document);
    return prepared;
}

CSVImportResult CSVImporter::apply(const CSVPreparedImport &prepared, ArchiveContext &context, const QDateTime &now)
{
    CSVImportResult result = prepared.result;
    if (result.error || !prepared.document)
        return result;
    const auto safetyBackup =
        BackupExporter::writeAutomaticSafetyBackup(context.fetch(), QStringLiteral("pre-csv-import"), now);
    if (!safetyBackup) {
        result.error =
            tr("CSV-Import abgebrochen: Sicherheitsbackup fehlgeschlagen (%1)").arg(safetyBackup.errorMessage());
        return result;
    }
    result.safetyBackupPath = *safetyBackup;

    const VersionReason reason(context, PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor CSV-Import")));
    applyRows(*prepared.document, context, now.toUTC(), result);
    // A failed save keeps the rows in memory for a later save; the safety backup is the way back.
    if (context.hasChanges()) {
        if (const auto saved = context.save(); !saved)
            result.error = otherError(saved.errorMessage(), result.diagnostics);
    }
    // Categories the sheet brought in are offered in the detail pane from now on.
    // The rows are stored; the status says so before it tells what went missing.
    if (const auto adopted = CategoryCatalog::adoptCategories(result.categories); !adopted && !result.error)
        result.error =
            statusLine(result) + QLatin1Char(' ') +
            tr("Die Kategorien der Tabelle wurden nicht in die Liste übernommen: %1").arg(adopted.errorMessage());
    return result;
}

QString CSVImporter::statusLine(const CSVImportResult &result)
{
    if (result.error)
        return *result.error;
    // The separator as it is, a tab character too: the line names what the file holds.
    const QString &delimiter = result.delimiter;
    return tr("CSV Import: %1 neu, %2 aktualisiert, %3 übersprungen. Zeilen: %4, Spalten: %5, Trennzeichen: %6. "
              "Sicherheitsbackup: %7. %8")
        .arg(QString::number(result.inserted), QString::number(result.updated), QString::number(result.skipped),
             QString::number(result.rows), QString::number(result.maxColumns), delimiter,
             QFileInfo(result.safetyBackupPath).fileName(), result.diagnostics);
}

QString CSVImporter::cancelledStatus()
{
    return tr("CSV-Auswahl abgebrochen.");
}
