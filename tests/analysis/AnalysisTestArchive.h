#pragma once

#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "matching/TitleKey.h"

#include <QDateTime>

// An empty in-memory archive and a short way to put poems into it.
class AnalysisTestArchive {
public:
    AnalysisTestArchive() : m_store(PersistenceController::inMemory()) {}

    ArchiveContext &context() { return m_store->viewContext(); }

    PoemPtr add(const QString &title, const QString &text = QStringLiteral("Text"))
    {
        PoemPtr poem = context().insertPoem();
        poem->setId(QUuid::createUuid());
        poem->setTitle(title);
        poem->setTitleNormalized(normalize(title));
        poem->setText(text);
        return poem;
    }

    QList<PoemPtr> poems() const { return m_store->viewContext().fetch(); }

private:
    std::unique_ptr<PersistenceController> m_store;
};
