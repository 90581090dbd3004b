#include "backup/BackupEncoder.h"

#include "backup/ArchiveJson.h"

#include <QCoreApplication>
#include <QIODevice>

namespace {

constexpr qsizetype flushThreshold = 1 << 20;

// Collects the document; with a device it hands over every full megabyte.
class DocumentSink {
public:
    explicit DocumentSink(QIODevice *device) : m_device(device)
    {
        if (m_device)
            m_buffer.reserve(flushThreshold + (64 << 10));
    }

    QByteArray &buffer() { return m_buffer; }

    void flushIfFull()
    {
        if (m_device && m_buffer.size() >= flushThreshold)
            flush();
    }

    bool flush()
    {
        if (!m_device || m_failed)
            return !m_failed;
        if (m_device->write(m_buffer) != m_buffer.size())
            m_failed = true;
        m_buffer.truncate(0);
        return !m_failed;
    }

    bool failed() const { return m_failed; }

private:
    QIODevice *m_device;
    QByteArray m_buffer;
    bool m_failed = false;
};

class EntryWriter {
public:
    explicit EntryWriter(QByteArray &out) : m_out(out) {}

    void key(const char *name)
    {
        m_out.append(m_first ? "\n      \"" : ",\n      \"");
        m_out.append(name);
        m_out.append("\" : ");
        m_first = false;
    }

    void text(const char *name, const std::optional<QString> &value)
    {
        if (!value)
            return;
        key(name);
        ArchiveJson::appendString(m_out, *value);
    }

    void date(const char *name, const std::optional<QDateTime> &value)
    {
        if (!value)
            return;
        key(name);
        ArchiveJson::appendString(m_out, ArchiveJson::dateText(*value));
    }

    void flag(const char *name, bool value)
    {
        key(name);
        m_out.append(value ? "true" : "false");
    }

private:
    QByteArray &m_out;
    bool m_first = true;
};

// Keys in code-point order; the order here is the order in the file.
void appendEntry(QByteArray &out, const PoemBackup &entry)
{
    out.append("    {");
    EntryWriter writer(out);
    writer.text("category", entry.category);
    writer.date("createdAt", entry.createdAt);
    writer.date("date", entry.date);
    writer.date("deletedAt", entry.deletedAt);
    writer.text("externalId", entry.externalId);
    if (entry.id)
        writer.text("id", uuidText(*entry.id));
    writer.flag("inPodcast", entry.inPodcast);
    writer.flag("isPublished", entry.isPublished);
    writer.text("objectURI", entry.objectURI);
    if (entry.richTextData) {
        writer.key("richTextData");
        ArchiveJson::appendUtf8String(out, entry.richTextData->toBase64());
    }
    writer.text("text", entry.text);
    writer.text("title", entry.title);
    writer.text("titleNormalized", entry.titleNormalized);
    writer.date("updatedAt", entry.updatedAt);
    writer.text("writerNotes", entry.writerNotes);
    out.append("\n    }");
}

void appendDocument(DocumentSink &sink, const Backup &backup)
{
    QByteArray &out = sink.buffer();
    out.append("{\n  \"app\" : ");
    ArchiveJson::appendString(out, backup.app);
    out.append(",\n  \"exportedAt\" : ");
    ArchiveJson::appendString(out, ArchiveJson::dateText(backup.exportedAt));
    out.append(",\n  \"poemCount\" : ");
    out.append(QByteArray::number(backup.poemCount));
    out.append(",\n  \"poems\" : ");
    if (backup.poems.isEmpty()) {
        out.append("[]");
    } else {
        out.append("[\n");
        for (qsizetype i = 0; i < backup.poems.size(); ++i) {
            appendEntry(out, backup.poems.at(i));
            out.append(i + 1 < backup.poems.size() ? ",\n" : "\n");
            sink.flushIfFull();
            if (sink.failed())
                return;
        }
        out.append("  ]");
    }
    out.append(",\n  \"schemaVersion\" : ");
    out.append(QByteArray::number(backup.schemaVersion));
    out.append("\n}");
}

// A rough size of the document, so that the buffer grows once.
qsizetype estimatedSize(const Backup &backup)
{
    qsizetype size = 256;
    for (const PoemBackup &entry : backup.poems) {
        size += 600 + entry.objectURI.size();
        size += 3 * (entry.text.value_or(QString()).size() + entry.title.value_or(QString()).size() * 2 +
                     entry.writerNotes.value_or(QString()).size() + entry.category.value_or(QString()).size());
        size += entry.richTextData ? entry.richTextData->size() * 4 / 3 + 64 : 0;
    }
    return size;
}

} // namespace

QByteArray BackupEncoder::encode(const Backup &backup)
{
    DocumentSink sink(nullptr);
    sink.buffer().reserve(estimatedSize(backup));
    appendDocument(sink, backup);
    return sink.buffer();
}

Result<void> BackupEncoder::write(const Backup &backup, QIODevice &device)
{
    DocumentSink sink(&device);
    appendDocument(sink, backup);
    if (!sink.flush())
        return Error{tr("Schreiben fehlgeschlagen: %1").arg(device.errorString())};
    return {};
}
