#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QString>

#include <vector>

// A ZIP container of stored (uncompressed) entries, built in memory. No time stamps and no
// permissions are written, so the same entries always give the same bytes. ZIP64 is not
// supported: more than 65,535 entries or anything beyond 4 GiB is a programming error.
class ZipArchive {
public:
    struct Entry {
        QString path; // "/" separated, e.g. "word/document.xml"
        QByteArray data;
    };

    explicit ZipArchive(std::vector<Entry> entries);

    // Never fails today; callers pass a failure on all the same.
    Result<QByteArray> data() const;

    static void appendUInt16(QByteArray &buffer, quint32 value);
    static void appendUInt32(QByteArray &buffer, quint64 value);
    static void appendLocalFileHeader(const QByteArray &name, const QByteArray &data, QByteArray &buffer);
    static void appendCentralDirectoryHeader(const QByteArray &name, const QByteArray &data, quint64 localHeaderOffset,
                                             QByteArray &buffer);

private:
    std::vector<Entry> m_entries;
};
