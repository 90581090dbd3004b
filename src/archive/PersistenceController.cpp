#include "archive/PersistenceController.h"

#include "archive/ApplicationSupport.h"
#include "archive/PoemStore.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::unique_ptr<PersistenceController> &sharedInstance()
{
    static std::unique_ptr<PersistenceController> instance;
    return instance;
}

// SQLite keeps journal files beside the store, so the folder must be writable too.
bool canWriteStore(const QString &storePath)
{
    const QByteArray file = QFile::encodeName(storePath);
    const QByteArray folder = QFile::encodeName(QFileInfo(storePath).absolutePath());
    if (::access(folder.constData(), W_OK) != 0)
        return false;
    return ::access(file.constData(), F_OK) != 0 || ::access(file.constData(), W_OK) == 0;
}

// A new store starts as an empty file for its owner only; SQLite gives its journal
// files the mode of the store.
void createPrivately(const QString &storePath)
{
    const int descriptor =
        ::open(QFile::encodeName(storePath).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor >= 0)
        ::close(descriptor);
}

Result<std::unique_ptr<PoemStore>> openStore(const QString &storePath)
{
    const bool exists = QFileInfo(storePath).size() > 0;
    if (exists && !canWriteStore(storePath))
        return PoemStore::openReadOnly(storePath);
    createPrivately(storePath);
    auto store = PoemStore::open(storePath);
    if (store || !exists)
        return store;
    // A full disk can refuse the journal files; the archive can still be read.
    auto readOnly = PoemStore::openReadOnly(storePath);
    return readOnly ? std::move(readOnly) : std::move(store);
}

} // namespace

PersistenceController::PersistenceController(std::unique_ptr<ArchiveContext> context, QString path)
    : m_context(std::move(context)), m_storePath(std::move(path))
{
}

Result<void> PersistenceController::openShared()
{
    if (sharedInstance())
        return {};
    // A folder that cannot be created or tightened may still hold an archive to read.
    if (auto folder = ApplicationSupport::ensureDirectory();
        !folder && !QFileInfo::exists(ApplicationSupport::storePath()))
        return Error{loadFailureText(folder.errorMessage(), ApplicationSupport::storePath())};
    auto controller = open(ApplicationSupport::storePath());
    if (!controller)
        return controller.error();
    sharedInstance() = std::move(controller.value());
    return {};
}

PersistenceController &PersistenceController::shared()
{
    Q_ASSERT(sharedInstance());
    return *sharedInstance();
}

Result<std::unique_ptr<PersistenceController>> PersistenceController::open(const QString &storePath)
{
    auto store = openStore(storePath);
    if (!store)
        return Error{loadFailureText(store.errorMessage(), storePath)};
    auto context = std::make_unique<ArchiveContext>(std::move(store.value()));
    if (auto loaded = context->load(); !loaded)
        return Error{loadFailureText(loaded.errorMessage(), storePath)};
    return std::unique_ptr<PersistenceController>(new PersistenceController(std::move(context), storePath));
}

std::unique_ptr<PersistenceController> PersistenceController::inMemory()
{
    auto store = PoemStore::openInMemory();
    Q_ASSERT(store.ok()); // an in-memory database only fails when memory is gone
    auto context = std::make_unique<ArchiveContext>(std::move(store.value()));
    return std::unique_ptr<PersistenceController>(new PersistenceController(std::move(context), QString()));
}

QString PersistenceController::loadFailureText(const QString &reason, const QString &path)
{
    return QCoreApplication::translate("PersistenceController", "Archiv konnte nicht geöffnet werden: %1")
        .arg(QStringLiteral("%1 (%2)").arg(reason, path));
}
