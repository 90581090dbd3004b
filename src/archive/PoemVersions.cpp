#include "archive/PoemVersions.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemEdit.h"
#include "archive/PoemFactory.h"
#include "archive/PoemStore.h"
#include "archive/PoemVersion.h"
#include "archive/VersionReason.h"

namespace {

template <typename T, typename Fn> Result<T> inWrite(ArchiveContext &context, Fn &&fn)
{
    auto write = context.store().beginWrite();
    if (!write)
        return write.error();
    auto done = fn(**write);
    if (!done)
        return done.error();
    if (auto committed = (*write)->commit(); !committed)
        return committed.error();
    return std::move(done.value());
}

void setContent(Poem &poem, const PoemValues &values)
{
    poem.setText(values.text);
    poem.setRichTextData(values.richTextData);
    poem.setCategory(values.category);
    poem.setDate(values.date);
    poem.setWriterNotes(values.writerNotes);
    poem.setPublished(values.isPublished);
    poem.setInPodcast(values.inPodcast);
}

Error notSaved()
{
    return Error{PoemVersions::tr("Das Gedicht ist noch nicht gespeichert.")};
}

} // namespace

Result<bool> PoemVersions::recordSessionEnd(ArchiveContext &context, const Poem &poem)
{
    if (poem.storeRowKey() == 0 || poem.context() != &context)
        return false;
    return inWrite<bool>(context, [&](PoemStore::Write &write) -> Result<bool> {
        const auto kept = write.recordVersion(poem.storeRowKey(),
                                              PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "Bearbeitung")),
                                              QString(), context.now(), true);
        if (!kept)
            return kept.error();
        return kept->has_value();
    });
}

Result<qint64> PoemVersions::saveByHand(ArchiveContext &context, const Poem &poem, const QString &name)
{
    if (poem.storeRowKey() == 0)
        return notSaved();
    return inWrite<qint64>(context, [&](PoemStore::Write &write) -> Result<qint64> {
        const auto kept = write.recordVersion(
            poem.storeRowKey(), PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "von Hand gesichert")), name,
            context.now());
        if (!kept)
            return kept.error();
        if (!*kept)
            return notSaved();
        return **kept;
    });
}

Result<std::vector<PoemVersion>> PoemVersions::list(ArchiveContext &context, const Poem &poem)
{
    if (poem.storeRowKey() == 0)
        return std::vector<PoemVersion>();
    return context.store().versions(poem.storeRowKey());
}

Result<PoemVersion> PoemVersions::version(ArchiveContext &context, const Poem &poem, qint64 number)
{
    const auto found = context.store().version(poem.storeRowKey(), number);
    if (!found)
        return found.error();
    if (!*found)
        return Error{tr("Fassung %1 gibt es nicht.").arg(number)};
    return std::move(**found);
}

QString PoemVersions::restoreReason(qint64 number)
{
    // The number is part of the key; reasonText() finds it again.
    return QStringLiteral("vor Wiederherstellung von Fassung %1").arg(number);
}

Result<void> PoemVersions::restore(ArchiveContext &context, Poem &poem, qint64 number)
{
    const auto found = version(context, poem, number);
    if (!found)
        return found.error();
    const VersionReason reason(context, restoreReason(number));
    PoemEdit::setTitle(poem, found->values.title.value_or(QString()));
    setContent(poem, found->values);
    poem.setUpdatedAt(context.now());
    if (auto saved = context.save(); !saved) {
        context.rollback();
        return saved;
    }
    return {};
}

Result<PoemPtr> PoemVersions::copyAsNewPoem(ArchiveContext &context, const PoemVersion &version)
{
    const PoemPtr copy = PoemFactory::makeNewPoem(context, context.now());
    PoemEdit::setTitle(*copy, PoemFactory::duplicateTitle(version.values.title));
    setContent(*copy, version.values);
    if (auto saved = context.save(); !saved) {
        context.rollback();
        return saved.error();
    }
    return copy;
}

Result<int> PoemVersions::pruneAll(ArchiveContext &context)
{
    return inWrite<int>(context, [&](PoemStore::Write &write) { return write.pruneVersions(context.now()); });
}

Result<qint64> PoemVersions::storageBytes(ArchiveContext &context)
{
    return context.store().versionStorageBytes();
}
