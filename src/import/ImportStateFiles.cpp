#include "import/ImportStateFiles.h"

#include "archive/ApplicationSupport.h"
#include "archive/AtomicFileWriter.h"
#include "backup/ArchiveJson.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

// An undo file of a whole archive with long poems stays far below this.
constexpr qint64 maximumStateFileSize = 1024LL * 1024 * 1024;

Result<void> writeState(const QString &path, const QByteArray &bytes)
{
    if (auto folder = ApplicationSupport::ensureDirectory(); !folder)
        return folder.error();
    return AtomicFileWriter::write(path, bytes);
}

} // namespace

QString ImportStateFiles::reportPath()
{
    return ApplicationSupport::filePath(QStringLiteral("last_import_report.json"));
}

QString ImportStateFiles::undoPath()
{
    return ApplicationSupport::filePath(QStringLiteral("last_text_import_undo.json"));
}

QString ImportStateFiles::failureLogPath()
{
    return ApplicationSupport::filePath(QStringLiteral("import_failures.txt"));
}

Result<QByteArray> ImportStateFiles::readStateFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return Error{tr("Keine normale Datei: %1").arg(info.fileName())};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{file.errorString()};
    QByteArray bytes = file.read(maximumStateFileSize + 1);
    if (bytes.size() > maximumStateFileSize)
        return Error{tr("Die Datei „%1“ ist zu groß.").arg(info.fileName())};
    return bytes;
}

Result<void> ImportStateFiles::saveReport(const ImportReport &report)
{
    return writeState(reportPath(), ArchiveJson::encode(report.toJson()));
}

std::optional<ImportReport> ImportStateFiles::loadReport()
{
    if (!QFileInfo::exists(reportPath()))
        return std::nullopt;
    const auto bytes = readStateFile(reportPath());
    if (!bytes)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(*bytes);
    return document.isObject() ? ImportReport::fromJson(document.object()) : std::nullopt;
}

Result<void> ImportStateFiles::saveUndo(const QList<ImportUndoItem> &items)
{
    QJsonArray array;
    for (const ImportUndoItem &item : items)
        array.append(item.toJson());
    return writeState(undoPath(), ArchiveJson::encode(array));
}

Result<std::optional<QList<ImportUndoItem>>> ImportStateFiles::loadUndo()
{
    if (!QFileInfo::exists(undoPath()))
        return std::optional<QList<ImportUndoItem>>();
    const auto bytes = readStateFile(undoPath());
    if (!bytes)
        return bytes.error();
    const QJsonDocument document = QJsonDocument::fromJson(*bytes);
    if (!document.isArray())
        return std::optional<QList<ImportUndoItem>>();
    QList<ImportUndoItem> items;
    for (const QJsonValue value : document.array()) {
        auto item = ImportUndoItem::fromJson(value.toObject());
        if (!item)
            return std::optional<QList<ImportUndoItem>>();
        items.append(std::move(*item));
    }
    return std::optional<QList<ImportUndoItem>>(std::move(items));
}

Result<void> ImportStateFiles::clearUndo()
{
    QFile file(undoPath());
    if (file.exists() && !file.remove())
        return Error{file.errorString()};
    return {};
}

bool ImportStateFiles::hasPendingUndo()
{
    const auto loaded = loadUndo();
    return loaded && loaded->has_value() && !(*loaded)->isEmpty();
}

Result<void> ImportStateFiles::saveFailureLog(const QString &logText, const QDateTime &now)
{
    const QString firstLine = QStringLiteral("OdeLeaf import failures – %1").arg(ArchiveJson::dateText(now));
    QString text = firstLine + QLatin1Char('\n');
    if (!logText.isEmpty())
        text += logText + QLatin1Char('\n');
    return writeState(failureLogPath(), text.toUtf8());
}

QString ImportStateFiles::loadFailureLog()
{
    if (!QFileInfo::exists(failureLogPath()))
        return {};
    const auto bytes = readStateFile(failureLogPath());
    return bytes ? QString::fromUtf8(*bytes) : QString();
}
