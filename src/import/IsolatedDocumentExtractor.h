#pragma once

#include "archive/Result.h"
#include "import/ExtractedDocument.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>

class QObject;
class QProcess;

struct IsolatedExtraction {
    Result<ExtractedDocument> result;
    bool timedOut = false;
};

// Runs DocumentTextExtractor in the helper program "odeleaf-extract" next to the running
// binary. A document that crashes or hangs the readers (a ZIP bomb, a PDF that sends
// poppler into a loop) ends the helper, never the caller: after the timeout the helper is
// killed, the file counts as failed and the next file gets a fresh helper.
//
// One instance serves a whole import from one thread and keeps its helper running between
// files, so a folder of documents does not pay a process start per file.
class IsolatedDocumentExtractor {
    Q_DECLARE_TR_FUNCTIONS(IsolatedDocumentExtractor)

public:
    static constexpr int defaultDOCXTimeoutSeconds = 8;
    static constexpr int defaultPDFTimeoutSeconds = 15;

    IsolatedDocumentExtractor();
    // For tests: any program that speaks the helper's protocol.
    IsolatedDocumentExtractor(QString program, QStringList arguments);
    ~IsolatedDocumentExtractor();
    IsolatedDocumentExtractor(const IsolatedDocumentExtractor &) = delete;
    IsolatedDocumentExtractor &operator=(const IsolatedDocumentExtractor &) = delete;

    // Blocks the calling thread (never a window's main thread) until done or timed out.
    IsolatedExtraction extract(const QString &path, int timeoutMilliseconds);
    // From any thread: ends the helper at once, so that extract() returns without waiting
    // for its timeout (an import the poet cancelled).
    void abort();

    // One file in a helper of its own; done runs on context's thread (which needs an event
    // loop) when the helper has answered, failed or timed out.
    static void extractAsync(const QString &path, int timeoutMilliseconds, QObject *context,
                             std::function<void(IsolatedExtraction)> done);

    static int defaultTimeoutMilliseconds(const QString &path);
    static QString helperPath();

    // The protocol: the caller writes requests to the helper's standard input, the helper
    // answers each on standard output; both are length-prefixed frames.
    static QByteArray encodeRequest(const QString &path);
    static QByteArray encodeReply(const Result<ExtractedDocument> &result);
    static Result<ExtractedDocument> decodeReply(const QByteArray &payload);
    static QByteArray frame(const QByteArray &payload);

private:
    bool ensureRunning(int timeoutMilliseconds, QString &failureText);
    void stop();

    QString m_program;
    QStringList m_arguments;
    std::unique_ptr<QProcess> m_process;
    // The helper's process id while it has not been reaped, so abort() never hits a
    // recycled id.
    std::mutex m_pidMutex;
    qint64 m_pid = 0;
};
