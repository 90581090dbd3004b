#include "import/ExtractionPool.h"

#include "import/ExtractError.h"

#include <QFileInfo>
#include <QThread>

ExtractionPool::ExtractionPool(QList<Job> jobs, int workers, ExtractorFactory makeExtractor,
                               ImportedRichText::EditorFont editorFont, QObject *receiver, ResultHandler handler)
    : m_jobs(std::move(jobs)), m_receiver(receiver), m_handler(std::move(handler))
{
    const int count = int(std::min<qsizetype>(std::max(1, workers), m_jobs.size()));
    for (int i = 0; i < count; ++i) {
        // Each thread gets copies of its own: factories are not shared across threads.
        QThread *thread = QThread::create([this, makeExtractor, editorFont] {
            const std::unique_ptr<IsolatedDocumentExtractor> extractor = makeExtractor();
            {
                const std::lock_guard lock(m_extractorsMutex);
                m_extractors.push_back(extractor.get());
            }
            work(*extractor, editorFont);
            const std::lock_guard lock(m_extractorsMutex);
            std::erase(m_extractors, extractor.get());
        });
        thread->setObjectName(QStringLiteral("ImportReader"));
        m_threads.push_back(thread);
        thread->start();
    }
}

ExtractionPool::~ExtractionPool()
{
    cancel();
    for (QThread *thread : m_threads) {
        thread->wait();
        delete thread;
    }
}

void ExtractionPool::cancel()
{
    m_cancelled = true;
    const std::lock_guard lock(m_extractorsMutex);
    for (IsolatedDocumentExtractor *extractor : m_extractors)
        extractor->abort();
}

int ExtractionPool::defaultWorkerCount()
{
    return std::max(1, QThread::idealThreadCount());
}

void ExtractionPool::work(IsolatedDocumentExtractor &extractor, const ImportedRichText::EditorFont &editorFont)
{
    while (!m_cancelled) {
        const qsizetype next = m_next++;
        if (next >= m_jobs.size())
            return;
        const Job &job = m_jobs.at(next);
        ImportExtraction extraction = extractOne(extractor, job, editorFont);
        if (m_cancelled)
            return;
        QMetaObject::invokeMethod(
            m_receiver,
            [handler = m_handler, index = job.index, extraction = std::move(extraction)]() mutable {
                handler(index, std::move(extraction));
            },
            Qt::QueuedConnection);
    }
}

ImportExtraction ExtractionPool::extractOne(IsolatedDocumentExtractor &extractor, const Job &job,
                                            const ImportedRichText::EditorFont &editorFont)
{
    ImportExtraction extraction;
    const QFileInfo file(job.path);
    if (file.isFile() && file.size() == 0) {
        extraction.emptyFile = true;
        return extraction;
    }
    IsolatedExtraction isolated = extractor.extract(job.path, job.timeoutMilliseconds);
    extraction.timedOut = isolated.timedOut;
    if (!isolated.result) {
        extraction.errorHint = isolated.result.errorMessage();
        return extraction;
    }
    extraction.text = isolated.result->text;
    if (isolated.result->richText && !extraction.text.trimmed().isEmpty()) {
        auto encoded = ImportedRichText::encode(*isolated.result->richText, editorFont);
        if (!encoded) {
            extraction.errorHint = ExtractError::failed(encoded.errorMessage()).description();
            extraction.text.clear();
            return extraction;
        }
        extraction.richTextData = std::move(*encoded);
    }
    return extraction;
}
