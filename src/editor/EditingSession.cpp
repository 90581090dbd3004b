#include "editor/EditingSession.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemVersions.h"

EditingSession::EditingSession(ArchiveContext &context, QObject *parent) : QObject(parent), m_context(context)
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(defaultIdleMilliseconds);
    connect(&m_idle, &QTimer::timeout, this, &EditingSession::recordIfEdited);
    connect(&m_context, &ArchiveContext::contextDidChange, this, &EditingSession::archiveChanged);
}

EditingSession::~EditingSession()
{
    end();
}

void EditingSession::begin(const PoemPtr &poem)
{
    if (poem == m_poem)
        return;
    end();
    m_poem = poem;
    if (m_poem)
        m_atStart = m_poem->values();
}

void EditingSession::end()
{
    m_idle.stop();
    recordIfEdited();
    m_poem.reset();
}

void EditingSession::archiveChanged()
{
    // Every edit is saved at once, so a change of the archive is the sign of typing. Only the
    // timer restarts here, nothing is compared: a keystroke costs no more than it did.
    if (m_poem)
        m_idle.start();
}

void EditingSession::recordIfEdited()
{
    if (!m_poem || !m_poem->context() || m_poem->values() == m_atStart)
        return;
    if (const auto kept = PoemVersions::recordSessionEnd(m_context, *m_poem); !kept) {
        Q_EMIT recordingFailed(kept.errorMessage());
        return;
    }
    m_atStart = m_poem->values();
}
