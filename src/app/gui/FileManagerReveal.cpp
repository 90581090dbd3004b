#include "app/gui/FileManagerReveal.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace {

void openFolder(const QString &filePath, const std::function<void(const QString &)> &reportFailure)
{
    const QString folder = QFileInfo(filePath).absolutePath();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        reportFailure(FileManagerReveal::tr("Kein Dateimanager gefunden. Der Ordner ist: %1").arg(folder));
}

} // namespace

void FileManagerReveal::reveal(const QString &filePath, QObject *owner,
                               const std::function<void(const QString &)> &reportFailure)
{
    const QString dbusSend = QStandardPaths::findExecutable(QStringLiteral("dbus-send"));
    if (dbusSend.isEmpty()) {
        openFolder(filePath, reportFailure);
        return;
    }
    auto *process = new QProcess(owner);
    QObject::connect(process, &QProcess::finished, process,
                     [process, filePath, reportFailure](int exitCode, QProcess::ExitStatus status) {
                         // No file manager answering on the bus: the folder is the next best thing.
                         if (status != QProcess::NormalExit || exitCode != 0)
                             openFolder(filePath, reportFailure);
                         process->deleteLater();
                     });
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [process, filePath, reportFailure](QProcess::ProcessError error) {
                         if (error != QProcess::FailedToStart)
                             return;
                         openFolder(filePath, reportFailure);
                         process->deleteLater();
                     });
    const QString fileUrl = QUrl::fromLocalFile(QFileInfo(filePath).absoluteFilePath()).toString(QUrl::FullyEncoded);
    process->start(dbusSend, {QStringLiteral("--session"), QStringLiteral("--print-reply"),
                              QStringLiteral("--dest=org.freedesktop.FileManager1"),
                              QStringLiteral("--type=method_call"), QStringLiteral("/org/freedesktop/FileManager1"),
                              QStringLiteral("org.freedesktop.FileManager1.ShowItems"),
                              QStringLiteral("array:string:") + fileUrl, QStringLiteral("string:")});
}
