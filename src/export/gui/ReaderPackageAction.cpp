#include "export/gui/ReaderPackageAction.h"

#include "app/gui/SaveFileDialog.h"
#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "export/OdeLeafReaderPackageExporter.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWidget>

ReaderPackageAction::ReaderPackageAction(ArchiveContext &context, QWidget *window)
    : QObject(window), m_context(context), m_window(window), m_clock([] { return QDateTime::currentDateTime(); })
{
    m_action = new QAction(QIcon::fromTheme(QStringLiteral("phone")), tr("Reader-Paket exportieren…"), this);
    m_action->setObjectName(QStringLiteral("readerPackageAction"));
    m_action->setStatusTip(tr("Alle Gedichte außerhalb des Papierkorbs für die App „OdeLeaf Reader“ speichern"));
    connect(m_action, &QAction::triggered, this, &ReaderPackageAction::exportPackage);
}

void ReaderPackageAction::exportPackage()
{
    const QDateTime now = m_clock();
    const QString folder = AppPreferences::resolvedFolder(FolderKind::exportFolder)
                               .value_or(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    const QString path =
        chooseDestination(folder + QLatin1Char('/') + OdeLeafReaderPackageExporter::proposedFileName(now));
    if (path.isEmpty()) {
        Q_EMIT statusChanged(OdeLeafReaderPackageExporter::cancelledStatus());
        return;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto written =
        OdeLeafReaderPackageExporter::write(m_context.fetch(), AppPreferences::poemCategories(), path, now);
    QApplication::restoreOverrideCursor();
    if (!written) {
        Q_EMIT statusChanged(OdeLeafReaderPackageExporter::failedStatus(written.errorMessage()));
        return;
    }
    AppPreferences::saveFolder(QFileInfo(path).absolutePath(), FolderKind::exportFolder);
    Q_EMIT fileWritten(path);
    Q_EMIT statusChanged(OdeLeafReaderPackageExporter::createdStatus(*written, path));
}

QString ReaderPackageAction::chooseDestination(const QString &proposedPath)
{
    return SaveFileDialog::ask(m_window, tr("OdeLeaf Reader-Paket speichern"),
                               tr("OdeLeaf Reader-Pakete (*.odeleafreader)"),
                               OdeLeafReaderPackageExporter::fileExtension(), proposedPath);
}
