#include "export/ExportFormat.h"

#include <QCoreApplication>

QString title(ExportFormat format)
{
    switch (format) {
    case ExportFormat::pdf:
        return QCoreApplication::translate("ExportFormat", "PDF: Druckfertig");
    case ExportFormat::docx:
        return QCoreApplication::translate("ExportFormat", "DOCX: Word-Dokument");
    case ExportFormat::txt:
        return QCoreApplication::translate("ExportFormat", "TXT: Rohtext speichern");
    }
    return {};
}

QString fileExtension(ExportFormat format)
{
    switch (format) {
    case ExportFormat::pdf:
        return QStringLiteral("pdf");
    case ExportFormat::docx:
        return QStringLiteral("docx");
    case ExportFormat::txt:
        return QStringLiteral("txt");
    }
    return {};
}

QString mimeType(ExportFormat format)
{
    switch (format) {
    case ExportFormat::pdf:
        return QStringLiteral("application/pdf");
    case ExportFormat::docx:
        return QStringLiteral("application/vnd.openxmlformats-officedocument.wordprocessingml.document");
    case ExportFormat::txt:
        return QStringLiteral("text/plain");
    }
    return {};
}

QString nameFilter(ExportFormat format)
{
    switch (format) {
    case ExportFormat::pdf:
        return QCoreApplication::translate("ExportFormat", "PDF-Dokument (*.pdf)");
    case ExportFormat::docx:
        return QCoreApplication::translate("ExportFormat", "Word-Dokument (*.docx)");
    case ExportFormat::txt:
        return QCoreApplication::translate("ExportFormat", "Textdatei (*.txt)");
    }
    return {};
}

std::optional<ExportFormat> exportFormatFromExtension(const QString &extension)
{
    for (const ExportFormat format : allExportFormats) {
        if (fileExtension(format) == extension)
            return format;
    }
    return std::nullopt;
}
