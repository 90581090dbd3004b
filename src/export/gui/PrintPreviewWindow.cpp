#include "export/gui/PrintPreviewWindow.h"

#include "export/gui/PrintHelper.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QPdfDocument>
#include <QPdfView>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

PrintPreviewWindow::PrintPreviewWindow(const QString &pdfPath, const QString &title, QWidget *parent)
    : QDialog(parent), m_pdfPath(pdfPath), m_title(title)
{
    setWindowTitle(tr("Druckvorschau – %1").arg(title));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(720, 900);

    m_document = new QPdfDocument(this);
    m_document->load(pdfPath);
    m_view = new QPdfView(this);
    m_view->setObjectName(QStringLiteral("printPreviewView"));
    m_view->setDocument(m_document);
    m_view->setPageMode(QPdfView::PageMode::MultiPage);
    m_view->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    m_view->setPageSpacing(16);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *print = buttons->addButton(tr("Drucken"), QDialogButtonBox::AcceptRole);
    print->setObjectName(QStringLiteral("printButton"));
    print->setDefault(true);
    print->setShortcut(QKeySequence::Print);
    QPushButton *viewer = buttons->addButton(tr("In Vorschau öffnen"), QDialogButtonBox::ActionRole);
    viewer->setObjectName(QStringLiteral("openInViewerButton"));
    buttons->addButton(QDialogButtonBox::Close);
    connect(print, &QPushButton::clicked, this, &PrintPreviewWindow::print);
    connect(viewer, &QPushButton::clicked, this, &PrintPreviewWindow::openInViewer);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view, 1);
    layout->addWidget(buttons);
}

bool PrintPreviewWindow::isLoaded() const
{
    return m_document->status() == QPdfDocument::Status::Ready && m_document->pageCount() > 0;
}

void PrintPreviewWindow::print()
{
    const auto printed = PrintHelper::printPDF(m_pdfPath, m_title, this);
    if (!printed) {
        Q_EMIT statusMessage(printed.errorMessage());
        return;
    }
    if (*printed == PrintHelper::Outcome::printed)
        accept();
}

void PrintPreviewWindow::openInViewer()
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(m_pdfPath)))
        Q_EMIT statusMessage(tr("Druckvorschau fehlgeschlagen: %1").arg(tr("Kein PDF-Programm gefunden.")));
}
