#pragma once

#include <QString>
#include <QStringList>

// The technical side of a run: what went wrong and the readers' own words. Keeps the
// first lines only, so a folder of broken files cannot fill memory.
class ImportLog {
public:
    static constexpr qsizetype defaultLimit = 5000;

    explicit ImportLog(qsizetype limit = defaultLimit) : m_limit(limit) {}

    void add(const QString &line);
    const QStringList &lines() const { return m_lines; }
    qsizetype limit() const { return m_limit; }
    QString dumpText() const;

private:
    QStringList m_lines;
    qsizetype m_limit;
    qsizetype m_dropped = 0;
};
