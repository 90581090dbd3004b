#include "import/SinglePoemImport.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemVersion.h"
#include "archive/VersionReason.h"
#include "editor/RtfCodePage.h"
#include "import/ExtractError.h"
#include "import/ImportStateFiles.h"
#include "import/ImportedRichText.h"
#include "import/TextCleanup.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

bool SinglePoemImport::isTextFile(const QString &path)
{
    return QFileInfo(path).suffix().compare(QLatin1String("txt"), Qt::CaseInsensitive) == 0;
}

QString SinglePoemImport::fileDialogFilter()
{
    return tr("Texte (*.docx *.pdf *.txt)");
}

QString SinglePoemImport::replaceQuestion()
{
    return tr("Vorhandenen Gedichttext ersetzen?");
}

Result<ImportedPoemText> SinglePoemImport::readTextFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return Error{tr("Keine normale Datei: %1").arg(info.fileName())};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{tr("Die Datei „%1“ konnte nicht gelesen werden: %2").arg(info.fileName(), file.errorString())};
    // The limit holds while reading, whatever size the file claims.
    const QByteArray bytes = file.read(maximumTextFileSize + 1);
    if (bytes.size() > maximumTextFileSize)
        return Error{tr("Die Datei „%1“ ist zu groß für ein Gedicht.").arg(info.fileName())};
    ImportedPoemText imported;
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (utf8.hasError()) {
        text = RtfCodePage(1252).decode(bytes);
        imported.note = tr("Die Datei ist kein UTF-8 und wurde als Windows-1252 gelesen.");
    }
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    imported.text = TextCleanup::cleanup(text);
    if (imported.text.isEmpty())
        return Error(ExtractError::emptyText());
    return imported;
}

Result<ImportedPoemText> SinglePoemImport::fromExtraction(const IsolatedExtraction &extraction,
                                                          const ImportedRichText::EditorFont &editorFont)
{
    if (!extraction.result)
        return extraction.result.error();
    const ExtractedDocument &document = *extraction.result;
    if (document.text.trimmed().isEmpty())
        return Error(ExtractError::emptyText());
    ImportedPoemText imported{document.text, std::nullopt, QString()};
    if (document.richText) {
        auto encoded = ImportedRichText::encode(*document.richText, editorFont);
        if (!encoded)
            return encoded.error();
        imported.richTextData = std::move(*encoded);
    }
    return imported;
}

Result<ImportedPoemText> SinglePoemImport::read(const QString &path)
{
    if (isTextFile(path))
        return readTextFile(path);
    IsolatedDocumentExtractor extractor;
    return fromExtraction(extractor.extract(path, IsolatedDocumentExtractor::defaultTimeoutMilliseconds(path)),
                          ImportedRichText::EditorFont::current());
}

Result<QString> SinglePoemImport::apply(ArchiveContext &context, Poem &poem, const ImportedPoemText &imported,
                                        const QString &fileName, const QDateTime &now)
{
    const ImportUndoItem undo{poem.id().value_or(QUuid()), poem.title().value_or(QString()), poem.text(),
                              poem.richTextData()};
    if (auto written = ImportStateFiles::saveUndo({undo}); !written)
        return written.error();
    poem.setText(imported.text);
    poem.setRichTextData(imported.richTextData);
    poem.setUpdatedAt(now);
    const VersionReason reason(context, PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Textimport")));
    if (auto saved = context.save(); !saved) {
        context.rollback();
        return saved.error();
    }
    QString status = tr("Text importiert aus %1. Rückgängig ist im Hauptfenster verfügbar.").arg(fileName);
    if (!imported.note.isEmpty())
        status += QLatin1Char(' ') + imported.note;
    return status;
}
