#pragma once

#include "archive/Poem.h"
#include "archive/PoemValues.h"

#include <QObject>
#include <QTimer>

class ArchiveContext;

// Where an editing session of a poem ends: another poem is chosen, the window closes, or
// the poet stops typing for a while. Only then is the poem kept as a version, so typing
// itself never writes one; and only when it was changed in the session and differs from
// its newest version.
class EditingSession : public QObject {
    Q_OBJECT

public:
    static constexpr int defaultIdleMilliseconds = 10 * 60 * 1000;

    explicit EditingSession(ArchiveContext &context, QObject *parent = nullptr);
    ~EditingSession() override;

    void setIdleInterval(int milliseconds) { m_idle.setInterval(milliseconds); }

    // The poem now open in the editor; ends the session of the one before.
    void begin(const PoemPtr &poem);
    void end();

Q_SIGNALS:
    // A version could not be kept; the poem itself is saved.
    void recordingFailed(const QString &message);

private:
    void archiveChanged();
    void recordIfEdited();

    ArchiveContext &m_context;
    PoemPtr m_poem;
    PoemValues m_atStart;
    QTimer m_idle;
};
