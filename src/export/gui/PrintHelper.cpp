#include "export/gui/PrintHelper.h"

#include <QPainter>
#include <QPdfDocument>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>

#include <memory>

namespace {

Error printFailure(const QString &reason)
{
    return Error{PrintHelper::tr("Drucken fehlgeschlagen: %1").arg(reason)};
}

// Each page goes out as an image at the printer's resolution, fitted to the paper with its
// proportions kept; the PDF's own page is A4, the paper may not be.
bool printPage(QPdfDocument &document, int page, QPrinter &printer, QPainter &painter)
{
    const QRectF paper = printer.pageLayout().paintRectPixels(printer.resolution());
    const QSizeF points = document.pagePointSize(page);
    if (points.isEmpty())
        return false;
    const double scale = std::min(paper.width() / points.width(), paper.height() / points.height());
    const QSize pixels = (points * scale).toSize();
    const QImage image = document.render(page, pixels);
    if (image.isNull())
        return false;
    const QPointF origin((paper.width() - pixels.width()) / 2, (paper.height() - pixels.height()) / 2);
    painter.drawImage(origin, image);
    return true;
}

} // namespace

Result<PrintHelper::Outcome> PrintHelper::printPDF(const QString &pdfPath, const QString &jobName, QWidget *parent)
{
    QPdfDocument document;
    if (document.load(pdfPath) != QPdfDocument::Error::None || document.pageCount() < 1)
        return printFailure(tr("Die PDF-Datei konnte nicht gelesen werden."));

    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(jobName);
    printer.setPageSize(QPageSize(QPageSize::A4));
    if (!printer.isValid())
        return Error{tr("Druckdialog konnte nicht geöffnet werden.")};
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle(tr("Drucken"));
    dialog.setMinMax(1, document.pageCount());
    if (dialog.exec() != QDialog::Accepted)
        return Outcome::cancelled;

    int first = 0;
    int last = document.pageCount() - 1;
    if (printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0) {
        first = std::max(0, printer.fromPage() - 1);
        last = std::min(last, printer.toPage() - 1);
    }

    QPainter painter;
    if (!painter.begin(&printer))
        return printFailure(tr("Der Drucker nimmt keinen Auftrag an."));
    QProgressDialog progress(tr("Drucke …"), tr("Abbrechen"), first, last + 1, parent);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(300);
    for (int page = first; page <= last; ++page) {
        progress.setValue(page);
        if (progress.wasCanceled()) {
            printer.abort();
            return Outcome::cancelled;
        }
        if (page > first && !printer.newPage()) {
            painter.end();
            return printFailure(tr("Seite %1 konnte nicht begonnen werden.").arg(page + 1));
        }
        if (!printPage(document, page, printer, painter)) {
            painter.end();
            return printFailure(tr("Seite %1 konnte nicht gezeichnet werden.").arg(page + 1));
        }
    }
    progress.setValue(last + 1);
    if (!painter.end())
        return printFailure(tr("Der Druckauftrag wurde nicht abgeschlossen."));
    return Outcome::printed;
}
