#pragma once

#include "archive/ApplicationSupport.h"
#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

// Shared helpers of the backup tests.
namespace BackupTestSupport {

inline QDateTime utc(int year, int month, int day, int hour, int minute, int second, int msec = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second, msec), Qt::UTC);
}

inline QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// The file of that name in the folder, written; empty when it could not be.
inline QString writeFileIn(const QString &folder, const QString &name, const QByteArray &bytes)
{
    const QString path = folder + QLatin1Char('/') + name;
    return writeFile(path, bytes) ? path : QString();
}

// A poem with every attribute set, as an editor and a few days of work leave it.
inline PoemPtr addPoem(ArchiveContext &context, const QString &title, const QDateTime &updatedAt)
{
    PoemPtr poem = context.insertPoem();
    poem->setId(QUuid::createUuid());
    poem->setTitle(title);
    poem->setTitleNormalized(title.toLower());
    poem->setText(QStringLiteral("Text von ") + title);
    poem->setCategory(QStringLiteral("Lyrik"));
    poem->setDate(updatedAt.addDays(-3));
    poem->setCreatedAt(updatedAt.addDays(-2));
    poem->setUpdatedAt(updatedAt);
    return poem;
}

// A test's own application-support folder, below a temporary folder for its files, and an
// empty in-memory archive.
class TestArchive {
public:
    TestArchive() : m_store(PersistenceController::inMemory())
    {
        ApplicationSupport::setDirectory(path(QStringLiteral("OdeLeaf")));
        (void)ApplicationSupport::ensureDirectory();
    }

    ArchiveContext &context() { return m_store->viewContext(); }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString folder() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PersistenceController> m_store;
};

} // namespace BackupTestSupport
