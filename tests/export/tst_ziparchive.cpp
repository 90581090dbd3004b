#include "export/CRC32.h"
#include "export/ZipArchive.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <zip.h>

namespace {

// The textbook byte-at-a-time loop, as the reference for the sliced one.
quint32 bytewiseCrc(QByteArrayView data)
{
    quint32 reg = 0xFFFFFFFFu;
    for (const char byte : data)
        reg = CRC32::table()[(reg ^ quint8(byte)) & 0xFF] ^ (reg >> 8);
    return ~reg;
}

quint32 le32(const QByteArray &bytes, qsizetype at)
{
    return quint8(bytes[at]) | quint8(bytes[at + 1]) << 8 | quint8(bytes[at + 2]) << 16 |
           quint32(quint8(bytes[at + 3])) << 24;
}

quint16 le16(const QByteArray &bytes, qsizetype at)
{
    return quint16(quint8(bytes[at]) | quint8(bytes[at + 1]) << 8);
}

std::vector<ZipArchive::Entry> smallPackage()
{
    return {
        {QStringLiteral("mimetype"), QByteArrayLiteral("text/plain")},
        {QStringLiteral("gedichte/über.txt"), QByteArrayLiteral("Die Nacht ist still.\nDer Mond geht auf.\n")},
        {QStringLiteral("leer"), QByteArray()},
    };
}

const QString goldenZip = QStringLiteral(ODELEAF_TEST_DATA "/export/small-package.zip");

} // namespace

class ZipArchiveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void crcMatchesKnownVectors()
    {
        QCOMPARE(CRC32::checksum(QByteArrayView()), 0u);
        QCOMPARE(CRC32::checksum("123456789"), 0xCBF43926u);
        QCOMPARE(CRC32::checksum("a"), 0xE8B7BE43u);
        QCOMPARE(CRC32::checksum("The quick brown fox jumps over the lazy dog"), 0x414FA339u);
        QCOMPARE(CRC32::table()[1], 0x77073096u);
        QCOMPARE(CRC32::table()[255], 0x2D02EF8Du);
    }

    void slicedCrcAgreesWithBytewiseAtEveryLengthAndSplit()
    {
        QByteArray data(1000, Qt::Uninitialized);
        quint32 seed = 12345;
        for (char &byte : data) {
            seed = seed * 1103515245u + 12345u;
            byte = char(seed >> 16);
        }
        for (qsizetype length = 0; length <= 40; ++length)
            QCOMPARE(CRC32::checksum(QByteArrayView(data).first(length)),
                     bytewiseCrc(QByteArrayView(data).first(length)));
        // Unaligned starts: the eight-byte loop must not depend on alignment.
        for (qsizetype start = 1; start < 8; ++start)
            QCOMPARE(CRC32::checksum(QByteArrayView(data).sliced(start)),
                     bytewiseCrc(QByteArrayView(data).sliced(start)));
        const quint32 whole = CRC32::checksum(data);
        for (const qsizetype split : {1, 7, 8, 9, 333, 999})
            QCOMPARE(
                CRC32::update(CRC32::checksum(QByteArrayView(data).first(split)), QByteArrayView(data).sliced(split)),
                whole);
    }

    void emptyArchiveIsTheBareEndRecord()
    {
        const auto bytes = ZipArchive({}).data();
        QVERIFY(bytes.ok());
        QCOMPARE(*bytes, QByteArray::fromHex("504b0506000000000000000000000000000000000000"));
    }

    void headersCarryTheFixedFieldsSizesAndOffsets()
    {
        const QByteArray name = QStringLiteral("gedichte/über.txt").toUtf8();
        const auto bytes = ZipArchive(smallPackage()).data();
        QVERIFY(bytes.ok());
        const QByteArray &zip = *bytes;

        QCOMPARE(le32(zip, 0), 0x04034B50u);
        QCOMPARE(le16(zip, 4), quint16(20));
        QCOMPARE(le16(zip, 6), quint16(0x0800)); // also for a plain ASCII name
        QCOMPARE(le16(zip, 8), quint16(0));
        QCOMPARE(le32(zip, 10), 0u); // time and date
        QCOMPARE(le32(zip, 14), CRC32::checksum("text/plain"));
        QCOMPARE(le32(zip, 18), 10u);
        QCOMPARE(le32(zip, 22), 10u);
        QCOMPARE(le16(zip, 26), quint16(8));

        const qsizetype second = 30 + 8 + 10;
        QCOMPARE(le32(zip, second), 0x04034B50u);
        QCOMPARE(le16(zip, second + 26), quint16(name.size())); // bytes, not characters
        QVERIFY(name.size() > QStringLiteral("gedichte/über.txt").size());
        QCOMPARE(zip.mid(second + 30, name.size()), name);

        const qsizetype end = zip.size() - 22;
        QCOMPARE(le32(zip, end), 0x06054B50u);
        QCOMPARE(le16(zip, end + 8), quint16(3));
        QCOMPARE(le16(zip, end + 10), quint16(3));
        const quint32 directorySize = le32(zip, end + 12);
        const quint32 directoryOffset = le32(zip, end + 16);
        QCOMPARE(qsizetype(directoryOffset + directorySize), end);
        QCOMPARE(directorySize, quint32(3 * 46 + 8 + name.size() + 4));

        // Third central header: the empty entry, with CRC 0, sizes 0 and its local offset.
        qsizetype at = directoryOffset;
        QList<quint32> offsets;
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(le32(zip, at), 0x02014B50u);
            QCOMPARE(le16(zip, at + 4), quint16(20));
            QCOMPARE(le16(zip, at + 6), quint16(20));
            QCOMPARE(le16(zip, at + 8), quint16(0x0800));
            QCOMPARE(le32(zip, at + 38), 0u);
            offsets.append(le32(zip, at + 42));
            if (i == 2) {
                QCOMPARE(le32(zip, at + 16), 0u);
                QCOMPARE(le32(zip, at + 20), 0u);
                QCOMPARE(le32(zip, at + 24), 0u);
            }
            at += 46 + le16(zip, at + 28);
        }
        for (const quint32 offset : offsets)
            QCOMPARE(le32(zip, offset), 0x04034B50u);
        QCOMPARE(offsets.at(1), quint32(second));
    }

    void packageIsByteForByteStableAndReadable()
    {
        const auto first = ZipArchive(smallPackage()).data();
        const auto second = ZipArchive(smallPackage()).data();
        QVERIFY(first.ok() && second.ok());
        QCOMPARE(*first, *second);

        QFile golden(goldenZip);
        QVERIFY2(golden.open(QIODevice::ReadOnly), qPrintable(goldenZip));
        QCOMPARE(*first, golden.readAll());

        // An independent reader accepts it and checks every CRC while reading.
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t *source = zip_source_buffer_create(first->constData(), zip_uint64_t(first->size()), 0, &error);
        QVERIFY(source);
        zip_t *archive = zip_open_from_source(source, ZIP_CHECKCONS, &error);
        QVERIFY2(archive, zip_error_strerror(&error));
        QCOMPARE(zip_get_num_entries(archive, 0), zip_int64_t(3));
        for (const ZipArchive::Entry &entry : smallPackage()) {
            const QByteArray name = entry.path.toUtf8();
            zip_file_t *file = zip_fopen(archive, name.constData(), 0);
            QVERIFY2(file, name.constData());
            QByteArray content(entry.data.size() + 16, '\0');
            const zip_int64_t read = zip_fread(file, content.data(), zip_uint64_t(content.size()));
            QCOMPARE(zip_fclose(file), 0);
            QCOMPARE(content.left(read), entry.data);
        }
        zip_close(archive);
    }
};

QTEST_GUILESS_MAIN(ZipArchiveTest)
#include "tst_ziparchive.moc"
