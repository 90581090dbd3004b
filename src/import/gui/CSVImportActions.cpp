#include "import/gui/CSVImportActions.h"

#include "archive/AppPreferences.h"
#include "import/CSVImporter.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

CSVImportActions::CSVImportActions(ArchiveContext &context, QWidget *window)
    : QObject(window), m_context(context), m_window(window),
      m_import(new QAction(
          QIcon::fromTheme(QStringLiteral("x-office-spreadsheet"), QIcon::fromTheme(QStringLiteral("text-csv"))),
          tr("CSV-Datei importieren"), this))
{
    m_import->setObjectName(QStringLiteral("csvImportAction"));
    m_import->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_K));
    m_import->setToolTip(tr("Titel, Kategorien, Daten und Markierungen aus einer Tabelle übernehmen"));
    connect(m_import, &QAction::triggered, this, &CSVImportActions::chooseFileAndImport);
}

void CSVImportActions::chooseFileAndImport()
{
    const QString folder = AppPreferences::resolvedFolder(FolderKind::csv)
                               .value_or(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    const QString path = chooseFile(folder);
    if (path.isEmpty()) {
        Q_EMIT statusChanged(CSVImporter::cancelledStatus());
        return;
    }
    AppPreferences::saveFolder(QFileInfo(path).absolutePath(), FolderKind::csv);
    importFile(path);
}

void CSVImportActions::importFile(const QString &path)
{
    setBusy(true);
    // Shows the busy state before the window is blocked for a long list.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    const CSVImportResult result = CSVImporter::importGedichte(path, m_context);
    setBusy(false);
    Q_EMIT statusChanged(CSVImporter::statusLine(result));
}

QString CSVImportActions::chooseFile(const QString &folder)
{
    return QFileDialog::getOpenFileName(m_window, tr("CSV-Datei auswählen"), folder,
                                        tr("CSV-Dateien (*.csv *.txt);;Alle Dateien (*)"));
}

void CSVImportActions::setBusy(bool busy)
{
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
    m_import->setEnabled(!busy);
    Q_EMIT busyChanged(busy);
}
