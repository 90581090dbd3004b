#include "export/OdeLeafReaderPackageExporter.h"

#include "archive/AtomicFileWriter.h"
#include "editor/PoemRichText.h"
#include "export/OdeLeafReaderPackageCodec.h"
#include "matching/TextClusters.h"

#include <QFileInfo>
#include <QLocale>
#include <QTextBlock>

#include <algorithm>

namespace {

TextAlignment alignmentOf(const QTextBlockFormat &format)
{
    if (!format.hasProperty(QTextFormat::BlockAlignment))
        return TextAlignment::natural;
    const Qt::Alignment horizontal = format.alignment() & Qt::AlignHorizontal_Mask;
    if (horizontal & Qt::AlignJustify)
        return TextAlignment::justified;
    if (horizontal & Qt::AlignHCenter)
        return TextAlignment::center;
    if (horizontal & Qt::AlignRight)
        return TextAlignment::right;
    if (horizontal & Qt::AlignLeft)
        return TextAlignment::left;
    return TextAlignment::natural;
}

QString collapsedWhiteSpace(const QString &text)
{
    QString collapsed;
    collapsed.reserve(text.size());
    bool inRun = false;
    for (const QChar c : text) {
        if (c.isSpace()) {
            if (!inRun)
                collapsed.append(QLatin1Char(' '));
            inRun = true;
            continue;
        }
        inRun = false;
        collapsed.append(c);
    }
    return collapsed;
}

const QString &sortTitle(const ReaderPoem &poem)
{
    return poem.titleNormalized.isEmpty() ? poem.title : poem.titleNormalized;
}

} // namespace

OdeLeafReaderPackage OdeLeafReaderPackageExporter::makePackage(const QList<PoemPtr> &poems,
                                                               const QStringList &categories, const QDateTime &now)
{
    OdeLeafReaderPackage package;
    package.exportedAt = now;
    package.categories = categories;
    std::sort(package.categories.begin(), package.categories.end());
    for (const PoemPtr &poem : poems) {
        if (poem && !poem->isInTrash())
            package.poems.append(readerPoem(*poem));
    }
    std::stable_sort(package.poems.begin(), package.poems.end(),
                     [](const ReaderPoem &a, const ReaderPoem &b) { return sortTitle(a) < sortTitle(b); });
    package.poemCount = int(package.poems.size());
    return package;
}

ReaderPoem OdeLeafReaderPackageExporter::readerPoem(const Poem &poem)
{
    ReaderPoem reader;
    reader.id = poem.id() ? uuidText(*poem.id()) : QString();
    reader.title = poem.title().value_or(QString());
    reader.titleNormalized = poem.titleNormalized().value_or(QString());
    reader.category = cleanedOptional(poem.category());
    reader.date = poem.date();
    reader.text = poem.text().value_or(QString());
    reader.excerpt = excerpt(reader.text);
    reader.isPublished = poem.isPublished();
    reader.inPodcast = poem.inPodcast();
    reader.createdAt = poem.createdAt();
    reader.updatedAt = poem.updatedAt();
    if (poem.richTextData() && !poem.richTextData()->isEmpty()) {
        reader.richTextData = poem.richTextData();
        reader.paragraphAlignments = paragraphAlignments(reader.text, poem.richTextData());
    }
    return reader;
}

std::optional<QList<ParagraphAlignment>>
OdeLeafReaderPackageExporter::paragraphAlignments(const QString &, const std::optional<QByteArray> &richTextData)
{
    if (!richTextData)
        return std::nullopt;
    const auto document = PoemRichText::decode(*richTextData);
    if (!document)
        return std::nullopt;
    // Block positions count one unit for each paragraph break, as the text does; the
    // document's closing break is no part of the text.
    const int textLength = document->characterCount() - 1;
    QList<ParagraphAlignment> runs;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        const int start = block.position();
        const int length = std::min(block.length(), textLength - start);
        if (length <= 0)
            continue;
        const TextAlignment alignment = alignmentOf(block.blockFormat());
        if (!runs.isEmpty() && runs.last().alignment == alignment) {
            runs.last().length += length;
            continue;
        }
        runs.append({start, length, alignment});
    }
    return runs;
}

QString OdeLeafReaderPackageExporter::excerpt(const QString &text)
{
    const QString line = collapsedWhiteSpace(text).trimmed();
    // Characters as a reader counts them: an emoji or an accent is one.
    if (TextClusters::count(line) <= excerptLimit)
        return line;
    QString cut = TextClusters::prefix(line, excerptCut).toString();
    while (!cut.isEmpty() && cut.back().isSpace())
        cut.chop(1);
    return cut + QStringLiteral("...");
}

std::optional<QString> OdeLeafReaderPackageExporter::cleanedOptional(const std::optional<QString> &value)
{
    if (!value)
        return std::nullopt;
    const QString trimmed = value->trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    return trimmed;
}

Result<int> OdeLeafReaderPackageExporter::write(const QList<PoemPtr> &poems, const QStringList &categories,
                                                const QString &path, const QDateTime &now)
{
    for (const PoemPtr &poem : poems) {
        if (auto read = poem->readFully(); !read)
            return read.error();
    }
    const OdeLeafReaderPackage package = makePackage(poems, categories, now);
    if (auto written = AtomicFileWriter::write(path, OdeLeafReaderPackageCodec::encode(package)); !written)
        return written.error();
    return package.poemCount;
}

QString OdeLeafReaderPackageExporter::proposedFileName(const QDateTime &now)
{
    return QStringLiteral("OdeLeaf-Reader-") +
           QLocale(QLocale::German, QLocale::Germany).toString(now.toLocalTime(), QStringLiteral("yyyy-MM-dd-HHmm")) +
           QLatin1Char('.') + fileExtension();
}

QString OdeLeafReaderPackageExporter::createdStatus(int poemCount, const QString &path)
{
    // German has no plural translation loaded: the form is chosen here, and English has both.
    return (poemCount == 1 ? tr("Reader-Paket erstellt: %n Gedicht gespeichert. Datei: %1", nullptr, poemCount)
                           : tr("Reader-Paket erstellt: %n Gedichte gespeichert. Datei: %1", nullptr, poemCount))
        .arg(QFileInfo(path).fileName());
}

QString OdeLeafReaderPackageExporter::failedStatus(const QString &reason)
{
    return tr("Reader-Paket konnte nicht erstellt werden: %1").arg(reason);
}

QString OdeLeafReaderPackageExporter::cancelledStatus()
{
    return tr("Reader-Paket abgebrochen.");
}
