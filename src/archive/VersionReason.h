#pragma once

#include "archive/ArchiveContext.h"

// For an operation that rewrites poems from outside the editor: while it lives, every save
// keeps the replaced state of each poem it changes as a version named by the operation, so
// the operation can be undone for one poem alone.
class VersionReason {
public:
    VersionReason(ArchiveContext &context, const QString &reason)
        : m_context(context), m_previous(context.versionReason())
    {
        m_context.setVersionReason(reason);
    }
    ~VersionReason() { m_context.setVersionReason(m_previous); }
    VersionReason(const VersionReason &) = delete;
    VersionReason &operator=(const VersionReason &) = delete;

private:
    ArchiveContext &m_context;
    std::optional<QString> m_previous;
};
