#include "export/gui/PoemExportActions.h"

#include "archive/AppPreferences.h"
#include "archive/FolderKind.h"
#include "export/PoemExport.h"
#include "export/gui/PrintHelper.h"
#include "export/gui/PrintPreviewWindow.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QStandardPaths>

namespace {

// The wait cursor for the few hundred milliseconds a PDF with pictures takes.
class BusyCursor {
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};

} // namespace

PoemExportActions::PoemExportActions(PoemSource currentPoem, QWidget *window)
    : QObject(window), m_currentPoem(std::move(currentPoem)), m_window(window),
      m_menu(new QMenu(tr("Exportieren"), window))
{
    m_menu->setObjectName(QStringLiteral("exportMenu"));
    const std::map<ExportFormat, QKeySequence> shortcuts{
        {ExportFormat::pdf, QKeySequence(tr("Ctrl+Shift+E"))},
    };
    for (const ExportFormat format : allExportFormats) {
        QAction *action = m_menu->addAction(title(format) + QStringLiteral(" …"));
        action->setObjectName(QStringLiteral("export-") + fileExtension(format));
        if (const auto shortcut = shortcuts.find(format); shortcut != shortcuts.end())
            action->setShortcut(shortcut->second);
        connect(action, &QAction::triggered, this, [this, format] { exportPoem(format); });
        m_exportActions.emplace(format, action);
    }
    m_print = new QAction(tr("Drucken …"), this);
    m_print->setObjectName(QStringLiteral("printPoem"));
    m_print->setShortcut(QKeySequence::Print);
    connect(m_print, &QAction::triggered, this, &PoemExportActions::print);
    m_preview = new QAction(tr("Druckvorschau …"), this);
    m_preview->setObjectName(QStringLiteral("printPreview"));
    m_preview->setShortcut(QKeySequence(tr("Ctrl+Alt+P")));
    connect(m_preview, &QAction::triggered, this, &PoemExportActions::showPreview);
    m_menu->addSeparator();
    m_menu->addAction(m_print);
    m_menu->addAction(m_preview);
}

void PoemExportActions::setEnabled(bool enabled)
{
    m_menu->setEnabled(enabled);
    for (const auto &[format, action] : m_exportActions)
        action->setEnabled(enabled);
    m_print->setEnabled(enabled);
    m_preview->setEnabled(enabled);
}

QString PoemExportActions::askForDestination(const Poem &poem, ExportFormat format) const
{
    const QString folder = AppPreferences::resolvedFolder(FolderKind::exportFolder)
                               .value_or(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    const QString proposed = QDir(folder).filePath(PoemExport::proposedFileName(poem, format));
    QString path = QFileDialog::getSaveFileName(m_window, tr("Gedicht exportieren"), proposed, nameFilter(format));
    if (path.isEmpty())
        return {};
    const QString suffix = QLatin1Char('.') + fileExtension(format);
    if (!path.endsWith(suffix, Qt::CaseInsensitive))
        path += suffix;
    AppPreferences::saveFolder(QFileInfo(path).absolutePath(), FolderKind::exportFolder);
    return path;
}

void PoemExportActions::exportPoem(ExportFormat format)
{
    const PoemPtr poem = m_currentPoem();
    if (!poem)
        return;
    const QString path = askForDestination(*poem, format);
    if (!path.isEmpty())
        exportTo(format, path);
}

void PoemExportActions::exportTo(ExportFormat format, const QString &path)
{
    const PoemPtr poem = m_currentPoem();
    if (!poem)
        return;
    const Result<void> written = [&] {
        BusyCursor busy;
        return PoemExport::write(*poem, format, path);
    }();
    Q_EMIT statusMessage(PoemExport::statusLine(written, path));
    if (written)
        Q_EMIT fileWritten(path);
}

std::optional<PoemExportActions::PrintablePoem> PoemExportActions::printablePoem(const QString &failureText)
{
    const PoemPtr poem = m_currentPoem();
    if (!poem)
        return std::nullopt;
    const auto pdf = [&] {
        BusyCursor busy;
        return PoemExport::temporaryPdf(*poem);
    }();
    if (!pdf) {
        Q_EMIT statusMessage(failureText.arg(pdf.errorMessage()));
        return std::nullopt;
    }
    return PrintablePoem{*pdf, PoemExport::displayTitle(*poem)};
}

void PoemExportActions::print()
{
    const auto printable = printablePoem(PrintHelper::tr("Drucken fehlgeschlagen: %1"));
    if (!printable)
        return;
    const auto printed = PrintHelper::printPDF(printable->pdfPath, printable->title, m_window);
    if (!printed)
        Q_EMIT statusMessage(printed.errorMessage());
}

void PoemExportActions::showPreview()
{
    const auto printable = printablePoem(tr("Druckvorschau fehlgeschlagen: %1"));
    if (!printable)
        return;
    auto *window = new PrintPreviewWindow(printable->pdfPath, printable->title, m_window);
    if (!window->isLoaded()) {
        delete window;
        Q_EMIT statusMessage(
            tr("Druckvorschau fehlgeschlagen: %1").arg(tr("Die PDF-Datei konnte nicht gelesen werden.")));
        return;
    }
    connect(window, &PrintPreviewWindow::statusMessage, this, &PoemExportActions::statusMessage);
    window->open();
}
