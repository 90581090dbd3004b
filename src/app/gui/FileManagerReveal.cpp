#include "app/gui/FileManagerReveal.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace {

void openFolder(const QString &filePath)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(filePath).absolutePath()));
}

} // namespace

void FileManagerReveal::reveal(const QString &filePath, QObject *owner)
{
    const QString dbusSend = QStandardPaths::findExecutable(QStringLiteral("dbus-send"));
    if (dbusSend.isEmpty()) {
        openFolder(filePath);
        return;
    }
    auto *process = new QProcess(owner);
    QObject::connect(process, &QProcess::finished, process,
                     [process, filePath](int exitCode, QProcess::ExitStatus status) {
                         // No file manager answering on the bus: the folder is the next best thing.
                         if (status != QProcess::NormalExit || exitCode != 0)
                             openFolder(filePath);
                         process->deleteLater();
                     });
    QObject::connect(process, &QProcess::errorOccurred, process, [process, filePath](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        openFolder(filePath);
        process->deleteLater();
    });
    const QString fileUrl = QUrl::fromLocalFile(QFileInfo(filePath).absoluteFilePath()).toString(QUrl::FullyEncoded);
    process->start(dbusSend, {QStringLiteral("--session"), QStringLiteral("--print-reply"),
                              QStringLiteral("--dest=org.freedesktop.FileManager1"),
                              QStringLiteral("--type=method_call"), QStringLiteral("/org/freedesktop/FileManager1"),
                              QStringLiteral("org.freedesktop.FileManager1.ShowItems"),
                              QStringLiteral("array:string:") + fileUrl, QStringLiteral("string:")});
}
