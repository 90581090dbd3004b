#include "export/PoemExport.h"

#include "archive/AtomicFileWriter.h"
#include "archive/Poem.h"
#include "editor/PoemRichText.h"
#include "export/DOCXExporter.h"
#include "export/PDFExporter.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUuid>

namespace {

QString labelled(const QString &label, const QString &value)
{
    return label + QStringLiteral(": ") + value;
}

QString yesNo(bool value)
{
    return value ? PoemExport::tr("ja") : PoemExport::tr("nein");
}

QString trimmedCategory(const Poem &poem)
{
    return poem.category().value_or(QString()).trimmed();
}

} // namespace

QString PoemExport::dateText(const Poem &poem)
{
    if (!poem.date())
        return {};
    return poem.date()->toLocalTime().date().toString(tr("dd.MM.yyyy"));
}

QStringList PoemExport::metaLines(const Poem &poem)
{
    QStringList lines;
    if (const QString date = dateText(poem); !date.isEmpty())
        lines << labelled(tr("Datum"), date);
    if (const QString category = trimmedCategory(poem); !category.isEmpty())
        lines << labelled(tr("Kategorie"), category);
    return lines;
}

ExportDocument PoemExport::document(const Poem &poem)
{
    ExportDocument document;
    document.title = displayTitle(poem);
    document.metaLines = metaLines(poem);
    document.plainText = poem.text().value_or(QString());
    if (poem.richTextData())
        document.richText = PoemRichText::decode(*poem.richTextData());
    return document;
}

QString PoemExport::displayTitle(const Poem &poem)
{
    const QString title = poem.title().value_or(QString()).trimmed();
    return title.isEmpty() ? tr("(ohne Titel)") : title;
}

QString PoemExport::textContent(const Poem &poem)
{
    const QString date = dateText(poem);
    const QString category = trimmedCategory(poem);
    const QString text = poem.text().value_or(QString()).trimmed();
    const QStringList lines{
        displayTitle(poem),
        labelled(tr("Datum"), date.isEmpty() ? tr("unbekannt") : date),
        labelled(tr("Kategorie"), category.isEmpty() ? QStringLiteral("—") : category),
        labelled(tr("Veröffentlicht"), yesNo(poem.isPublished())),
        labelled(tr("Podcast"), yesNo(poem.inPodcast())),
        QString(),
        text.isEmpty() ? tr("— kein Text —") : text,
    };
    return lines.join(QLatin1Char('\n'));
}

QString PoemExport::proposedFileName(const Poem &poem, ExportFormat format)
{
    QString base = poem.title().value_or(QString()).simplified();
    // Characters file systems or file managers choke on.
    static const QRegularExpression unsafe(QStringLiteral("[/\\\\:*?\"<>|\\x00-\\x1F]"));
    base.replace(unsafe, QStringLiteral("-"));
    while (base.startsWith(QLatin1Char('.')))
        base.remove(0, 1);
    base = base.trimmed().left(120);
    if (base.isEmpty())
        base = tr("Gedicht");
    return base + QLatin1Char('.') + fileExtension(format);
}

Result<void> PoemExport::validateWrittenFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile() || info.size() <= 0)
        return Error{tr("Die Exportdatei wurde nicht korrekt geschrieben: %1").arg(info.fileName())};
    return {};
}

Result<void> PoemExport::write(const Poem &poem, ExportFormat format, const QString &path)
{
    if (auto read = poem.readFully(); !read)
        return read;
    Result<void> written;
    switch (format) {
    case ExportFormat::pdf:
        written = PDFExporter::write(document(poem), path);
        break;
    case ExportFormat::docx:
        written = DOCXExporter::write(document(poem), path);
        break;
    case ExportFormat::txt:
        written = AtomicFileWriter::write(path, textContent(poem).toUtf8());
        break;
    }
    if (!written)
        return written;
    return validateWrittenFile(path);
}

QString PoemExport::statusLine(const Result<void> &outcome, const QString &path)
{
    if (!outcome)
        return tr("Export fehlgeschlagen: %1").arg(outcome.errorMessage());
    return tr("Exportiert: %1").arg(QFileInfo(path).fileName());
}

Result<QString> PoemExport::temporaryPdf(const Poem &poem)
{
    const QString folder =
        QDir::temp().filePath(QStringLiteral("OdeLeaf-%1").arg(QString::fromLocal8Bit(qgetenv("USER"))));
    if (auto made = AtomicFileWriter::ensurePrivateFolder(folder); !made)
        return made.error();
    // A fresh name each time: a viewer may still hold the previous file open.
    const QString name = proposedFileName(poem, ExportFormat::pdf);
    const QString path =
        QDir(folder).filePath(QUuid::createUuid().toString(QUuid::WithoutBraces).left(8) + QLatin1Char('-') + name);
    if (auto read = poem.readFully(); !read)
        return read.error();
    if (auto written = PDFExporter::write(document(poem), path); !written)
        return written.error();
    if (auto valid = validateWrittenFile(path); !valid)
        return valid.error();
    return path;
}
