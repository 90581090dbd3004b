#pragma once

#include <QString>

#include <array>
#include <optional>

// The formats a poem can be exported to, in menu order.
enum class ExportFormat { pdf, docx, txt };

inline constexpr std::array<ExportFormat, 3> allExportFormats = {ExportFormat::pdf, ExportFormat::docx,
                                                                 ExportFormat::txt};

QString title(ExportFormat format); // the menu label
QString fileExtension(ExportFormat format);
QString mimeType(ExportFormat format);
// A file dialog filter that allows only this format.
QString nameFilter(ExportFormat format);
// "pdf", "docx", "txt" as the command line names them.
std::optional<ExportFormat> exportFormatFromExtension(const QString &extension);
