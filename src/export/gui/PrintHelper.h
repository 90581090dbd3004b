#pragma once

#include "archive/Result.h"

#include <QCoreApplication>

class QWidget;

// Prints a PDF file of the program's page layout through the print dialog.
class PrintHelper {
    Q_DECLARE_TR_FUNCTIONS(PrintHelper)

public:
    enum class Outcome { printed, cancelled };
    // "Druckdialog konnte nicht geöffnet werden." when no printer can be set up,
    // "Drucken fehlgeschlagen: …" for everything after the dialog.
    static Result<Outcome> printPDF(const QString &pdfPath, const QString &jobName, QWidget *parent);
};
