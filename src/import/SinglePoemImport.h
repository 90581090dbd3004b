#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"
#include "import/ImportedRichText.h"
#include "import/IsolatedDocumentExtractor.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

class ArchiveContext;

// A file's text ready for one poem.
struct ImportedPoemText {
    QString text;
    std::optional<QByteArray> richTextData;
    // Said in the status line, e.g. that a text file was not UTF-8.
    QString note;
};

// "Text importieren…" of the detail pane: one DOCX, PDF or plain-text file into the poem
// on screen, with a one-poem undo file so that "Import rückgängig" can take it back.
class SinglePoemImport {
    Q_DECLARE_TR_FUNCTIONS(SinglePoemImport)

public:
    static constexpr qint64 maximumTextFileSize = 16 * 1024 * 1024;

    static bool isTextFile(const QString &path);
    static QString fileDialogFilter();
    static QString replaceQuestion();

    // Plain text: UTF-8, or Windows-1252 when it is not valid UTF-8 (with a note).
    static Result<ImportedPoemText> readTextFile(const QString &path);
    // A document read by the helper (synchronously or through extractAsync).
    static Result<ImportedPoemText> fromExtraction(const IsolatedExtraction &extraction,
                                                   const ImportedRichText::EditorFont &editorFont);
    // Any accepted file, blocking: the helper for documents.
    static Result<ImportedPoemText> read(const QString &path);

    // Writes the text like the folder import does; the undo file is on disk before the
    // poem is saved. Returns the status line.
    static Result<QString> apply(ArchiveContext &context, Poem &poem, const ImportedPoemText &imported,
                                 const QString &fileName, const QDateTime &now = QDateTime::currentDateTimeUtc());
};
