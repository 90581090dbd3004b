#include "archive/PersistenceController.h"

#include "archive/ApplicationSupport.h"
#include "archive/PoemStore.h"

#include <QCoreApplication>

namespace {

std::unique_ptr<PersistenceController> &sharedInstance()
{
    static std::unique_ptr<PersistenceController> instance;
    return instance;
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
    if (auto folder = ApplicationSupport::ensureDirectory(); !folder)
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
    auto store = PoemStore::open(storePath);
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
