#pragma once

#include "archive/Result.h"
#include "export/ExportDocument.h"
#include "export/ExportFormat.h"

#include <QCoreApplication>

class Poem;

// Exporting one poem: what the exporters get from the record, the plain-text form, the
// written file's check and the status lines. Reads the poem only; the archive never changes.
class PoemExport {
    Q_DECLARE_TR_FUNCTIONS(PoemExport)

public:
    static ExportDocument document(const Poem &poem);
    // The trimmed title, or "(ohne Titel)".
    static QString displayTitle(const Poem &poem);
    static QStringList metaLines(const Poem &poem);
    static QString textContent(const Poem &poem);
    // The title made safe as a file name, with the format's extension.
    static QString proposedFileName(const Poem &poem, ExportFormat format);

    // Writes the file atomically and checks it.
    static Result<void> write(const Poem &poem, ExportFormat format, const QString &path);
    // The written file must exist and not be empty.
    static Result<void> validateWrittenFile(const QString &path);

    // The poem's PDF in a private temporary folder, for printing and the preview; its path.
    static Result<QString> temporaryPdf(const Poem &poem);

    // "Exportiert: …" or "Export fehlgeschlagen: …".
    static QString statusLine(const Result<void> &outcome, const QString &path);

    static QString dateText(const Poem &poem);
};
