#include "export/ZipArchive.h"

#include "export/CRC32.h"

#include <limits>

namespace {

constexpr quint32 localHeaderSignature = 0x04034B50;
constexpr quint32 centralHeaderSignature = 0x02014B50;
constexpr quint32 endRecordSignature = 0x06054B50;
constexpr quint32 version = 20;
constexpr quint32 utf8NameFlag = 0x0800;
constexpr qsizetype localHeaderSize = 30;
constexpr qsizetype centralHeaderSize = 46;
constexpr qsizetype endRecordSize = 22;

void appendSharedFields(const QByteArray &name, const QByteArray &data, QByteArray &buffer)
{
    ZipArchive::appendUInt16(buffer, version); // needed to extract
    ZipArchive::appendUInt16(buffer, utf8NameFlag);
    ZipArchive::appendUInt16(buffer, 0); // stored
    ZipArchive::appendUInt16(buffer, 0); // time
    ZipArchive::appendUInt16(buffer, 0); // date
    ZipArchive::appendUInt32(buffer, CRC32::checksum(data));
    ZipArchive::appendUInt32(buffer, quint64(data.size()));
    ZipArchive::appendUInt32(buffer, quint64(data.size()));
    ZipArchive::appendUInt16(buffer, quint32(name.size()));
    ZipArchive::appendUInt16(buffer, 0); // extra field
}

} // namespace

ZipArchive::ZipArchive(std::vector<Entry> entries) : m_entries(std::move(entries))
{
    Q_ASSERT_X(m_entries.size() <= 0xFFFF, "ZipArchive", "more entries than ZIP without ZIP64 holds");
    if (m_entries.size() > 0xFFFF)
        qFatal("ZipArchive: %zu entries exceed the ZIP limit", m_entries.size());
}

void ZipArchive::appendUInt16(QByteArray &buffer, quint32 value)
{
    if (value > 0xFFFF)
        qFatal("ZipArchive: %u does not fit 16 bits", value);
    buffer.append(char(value & 0xFF));
    buffer.append(char((value >> 8) & 0xFF));
}

void ZipArchive::appendUInt32(QByteArray &buffer, quint64 value)
{
    if (value > std::numeric_limits<quint32>::max())
        qFatal("ZipArchive: %llu does not fit 32 bits", static_cast<unsigned long long>(value));
    for (int shift = 0; shift < 32; shift += 8)
        buffer.append(char((value >> shift) & 0xFF));
}

void ZipArchive::appendLocalFileHeader(const QByteArray &name, const QByteArray &data, QByteArray &buffer)
{
    appendUInt32(buffer, localHeaderSignature);
    appendSharedFields(name, data, buffer);
    buffer.append(name);
}

void ZipArchive::appendCentralDirectoryHeader(const QByteArray &name, const QByteArray &data, quint64 localHeaderOffset,
                                              QByteArray &buffer)
{
    appendUInt32(buffer, centralHeaderSignature);
    appendUInt16(buffer, version); // made by
    appendSharedFields(name, data, buffer);
    appendUInt16(buffer, 0); // comment length
    appendUInt16(buffer, 0); // disk number start
    appendUInt16(buffer, 0); // internal attributes
    appendUInt32(buffer, 0); // external attributes
    appendUInt32(buffer, localHeaderOffset);
    buffer.append(name);
}

Result<QByteArray> ZipArchive::data() const
{
    std::vector<QByteArray> names;
    names.reserve(m_entries.size());
    qsizetype total = endRecordSize;
    for (const Entry &entry : m_entries) {
        names.push_back(entry.path.toUtf8());
        total += localHeaderSize + centralHeaderSize + 2 * names.back().size() + entry.data.size();
    }

    QByteArray buffer;
    buffer.reserve(total);
    std::vector<quint64> offsets;
    offsets.reserve(m_entries.size());
    for (size_t i = 0; i < m_entries.size(); ++i) {
        offsets.push_back(quint64(buffer.size()));
        appendLocalFileHeader(names[i], m_entries[i].data, buffer);
        buffer.append(m_entries[i].data);
    }

    const quint64 directoryOffset = quint64(buffer.size());
    for (size_t i = 0; i < m_entries.size(); ++i)
        appendCentralDirectoryHeader(names[i], m_entries[i].data, offsets[i], buffer);
    const quint64 directorySize = quint64(buffer.size()) - directoryOffset;

    appendUInt32(buffer, endRecordSignature);
    appendUInt16(buffer, 0); // this disk
    appendUInt16(buffer, 0); // disk of the central directory
    appendUInt16(buffer, quint32(m_entries.size()));
    appendUInt16(buffer, quint32(m_entries.size()));
    appendUInt32(buffer, directorySize);
    appendUInt32(buffer, directoryOffset);
    appendUInt16(buffer, 0); // comment length
    return buffer;
}
