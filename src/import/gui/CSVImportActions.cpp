#include "import/gui/CSVImportActions.h"

#include "archive/AppPreferences.h"
#include "import/CSVImporter.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

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

CSVImportActions::~CSVImportActions()
{
    // The reader reports to this object; it has to be done before this goes.
    if (m_reader)
        m_reader->wait();
}

QString CSVImportActions::startFolder()
{
    if (const auto remembered = AppPreferences::resolvedFolder(FolderKind::csv))
        return *remembered;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

void CSVImportActions::chooseFileAndImport()
{
    if (m_reader)
        return;
    const QString path = chooseFile(startFolder());
    if (path.isEmpty()) {
        Q_EMIT statusChanged(CSVImporter::cancelledStatus());
        return;
    }
    AppPreferences::saveFolder(QFileInfo(path).absolutePath(), FolderKind::csv);
    importFile(path);
}

void CSVImportActions::importFile(const QString &path)
{
    if (m_reader)
        return;
    setBusy(true);
    m_reader = QThread::create([this, path] {
        const CSVPreparedImport prepared = CSVImporter::read(path);
        QMetaObject::invokeMethod(
            this, [this, prepared] { finishImport(prepared); }, Qt::QueuedConnection);
    });
    m_reader->setObjectName(QStringLiteral("CSVReader"));
    connect(m_reader, &QThread::finished, m_reader, &QObject::deleteLater);
    m_reader->start(QThread::LowPriority);
}

void CSVImportActions::finishImport(const CSVPreparedImport &prepared)
{
    if (m_reader) {
        m_reader->wait();
        m_reader = nullptr;
    }
    // The archive is written here, on its own thread.
    const CSVImportResult result = CSVImporter::apply(prepared, m_context);
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
        QApplication::setOverrideCursor(Qt::BusyCursor);
    else
        QApplication::restoreOverrideCursor();
    m_import->setEnabled(!busy);
    Q_EMIT busyChanged(busy);
}
