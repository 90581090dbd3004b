#pragma once

#include "import/ImportWorkItem.h"
#include "import/ImportedRichText.h"
#include "import/IsolatedDocumentExtractor.h"

#include <QList>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class QObject;
class QThread;

// Reads files in several helper processes at once, one reader thread per helper. Each
// result is handed to the receiver's thread together with its job index; the order in
// which they arrive is not the job order, the caller puts them back in order.
class ExtractionPool {
public:
    struct Job {
        qsizetype index = 0;
        QString path;
        int timeoutMilliseconds = 0;
    };
    using ExtractorFactory = std::function<std::unique_ptr<IsolatedDocumentExtractor>()>;
    using ResultHandler = std::function<void(qsizetype index, ImportExtraction extraction)>;

    // Workers beyond the number of jobs are not started.
    ExtractionPool(QList<Job> jobs, int workers, ExtractorFactory makeExtractor,
                   ImportedRichText::EditorFont editorFont, QObject *receiver, ResultHandler handler);
    // Stops the readers after the file in hand and waits for them.
    ~ExtractionPool();
    ExtractionPool(const ExtractionPool &) = delete;
    ExtractionPool &operator=(const ExtractionPool &) = delete;

    // Stops handing out files and ends the helpers' work in hand.
    void cancel();

    static int defaultWorkerCount();
    // One file as the import reads it: a zero-byte file is not read at all, a DOCX
    // brings its formatted text along in the poem's encoding.
    static ImportExtraction extractOne(IsolatedDocumentExtractor &extractor, const Job &job,
                                       const ImportedRichText::EditorFont &editorFont);

private:
    void work(IsolatedDocumentExtractor &extractor, const ImportedRichText::EditorFont &editorFont);

    const QList<Job> m_jobs;
    std::atomic<qsizetype> m_next{0};
    std::atomic<bool> m_cancelled{false};
    QObject *m_receiver;
    ResultHandler m_handler;
    std::vector<QThread *> m_threads;
    std::mutex m_extractorsMutex;
    std::vector<IsolatedDocumentExtractor *> m_extractors;
};
