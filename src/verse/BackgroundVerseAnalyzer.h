#pragma once

#include "verse/VerseAnalysis.h"

#include <QObject>
#include <QThread>

#include <atomic>
#include <memory>

class VerseAnalyzer;

// Runs the verse analysis on a thread of its own, so typing never waits for espeak-ng. Only
// the newest request counts: one still waiting when a newer comes is dropped, and a result
// that a newer request has overtaken is never delivered.
class BackgroundVerseAnalyzer : public QObject {
    Q_OBJECT

public:
    explicit BackgroundVerseAnalyzer(QObject *parent = nullptr);
    ~BackgroundVerseAnalyzer() override;

    void request(const QString &text, const QString &language);

Q_SIGNALS:
    // On the thread that owns this object.
    void analysed(const VerseAnalysis &analysis);

private:
    QThread m_thread;
    QObject *m_worker;
    std::shared_ptr<VerseAnalyzer> m_analyzer;
    std::shared_ptr<std::atomic<quint64>> m_newest;
};
