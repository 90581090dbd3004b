#include "TmpfsMount.h"
#include "archive/AtomicFileWriter.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace {

QByteArray randomBytes(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator(size);
    for (char &byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

mode_t modeOf(const QString &path)
{
    struct stat status {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return status.st_mode;
}

// A disk that takes `capacity` bytes, then refuses with `error`; it hands over at most
// `perCall` bytes a call and is interrupted now and then, as real writes may be.
AtomicFileWriter::SystemWrite limitedDisk(qint64 capacity, int error, size_t perCall = 1 << 20)
{
    auto written = std::make_shared<qint64>(0);
    auto calls = std::make_shared<int>(0);
    return [=](int descriptor, const char *data, size_t size) -> ssize_t {
        if (++*calls % 5 == 0) {
            errno = EINTR;
            return -1;
        }
        const qint64 room = capacity - *written;
        if (room <= 0) {
            errno = error;
            return -1;
        }
        const size_t take = std::min({size, perCall, size_t(room)});
        const ssize_t done = ::write(descriptor, data, take);
        if (done > 0)
            *written += done;
        return done;
    };
}

} // namespace

class AtomicFileWriterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void failingDiskKeepsTheOlderFile_data()
    {
        QTest::addColumn<qint64>("capacity");
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("cause");
        const QString full = QStringLiteral("Nicht genug Speicherplatz");
        QTest::newRow("nothing fits") << qint64(0) << ENOSPC << full;
        QTest::newRow("one byte") << qint64(1) << ENOSPC << full;
        QTest::newRow("first block") << qint64(65536) << EDQUOT << full;
        QTest::newRow("all but the last block") << qint64(196608) << ENOSPC << full;
        QTest::newRow("all but one byte") << qint64(200000 - 1) << ENOSPC << full;
        QTest::newRow("read-only disk") << qint64(70000) << EROFS
                                        << QStringLiteral("Das Dateisystem ist schreibgeschützt");
        QTest::newRow("failing device") << qint64(123457) << EIO
                                        << QStringLiteral("Ein-/Ausgabefehler des Datenträgers");
    }

    void failingDiskKeepsTheOlderFile()
    {
        QFETCH(qint64, capacity);
        QFETCH(int, error);
        QFETCH(QString, cause);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("backup.json"));
        put(path, "the good older backup");
        const QByteArray payload = randomBytes(200000);
        // In small pieces, like an encoder: the failure may fall into the buffered last block.
        const auto written = AtomicFileWriter::write(
            path,
            [&payload](QIODevice &device) -> Result<void> {
                for (qsizetype at = 0; at < payload.size(); at += 1000) {
                    if (device.write(payload.mid(at, 1000)) < 0)
                        return Error{device.errorString()};
                }
                return {};
            },
            limitedDisk(capacity, error, 4096));
        QVERIFY(!written);
        QCOMPARE(written.errorMessage(), cause);
        QCOMPARE(contents(path), QByteArray("the good older backup"));
        QCOMPARE(entries(dir.path()), QStringList{QStringLiteral("backup.json")});
    }

    void shortAndInterruptedWritesStillGiveTheWholeFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("export.txt"));
        const QByteArray payload = randomBytes(150001);
        QVERIFY(AtomicFileWriter::write(
                    path,
                    [&payload](QIODevice &device) -> Result<void> {
                        device.write(payload);
                        return {};
                    },
                    limitedDisk(payload.size(), ENOSPC, 7))
                    .ok());
        QCOMPARE(contents(path), payload);
    }

    void producerFailureLeavesNoTrace()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("report.json"));
        put(path, "old");
        const auto written = AtomicFileWriter::write(path, [](QIODevice &device) -> Result<void> {
            device.write(QByteArray(100000, 'a'));
            return Error{QStringLiteral("Abgebrochen")};
        });
        QCOMPARE(written.errorMessage(), QStringLiteral("Abgebrochen"));
        QCOMPARE(contents(path), QByteArray("old"));
        QCOMPARE(entries(dir.path()), QStringList{QStringLiteral("report.json")});
    }

    void writtenFilesAreTheOwnersOnly()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("notes.txt"));
        put(path, "old");
        QVERIFY(
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther));
        QVERIFY(AtomicFileWriter::write(path, QByteArray("new")).ok());
        QCOMPARE(modeOf(path) & 0777, mode_t(0600));

        // A link stays a link; the file it names gets the new text.
        const QString link = dir.filePath(QStringLiteral("link.txt"));
        QVERIFY(QFile::link(path, link));
        QVERIFY(AtomicFileWriter::write(link, QByteArray("through the link")).ok());
        QVERIFY(S_ISLNK(modeOf(link)));
        QCOMPARE(contents(path), QByteArray("through the link"));

        const QString nested = dir.filePath(QStringLiteral("a/b/c"));
        QVERIFY(AtomicFileWriter::ensurePrivateFolder(nested).ok());
        QCOMPARE(modeOf(nested) & 0777, mode_t(0700));
        QCOMPARE(modeOf(dir.filePath(QStringLiteral("a"))) & 0777, mode_t(0700));
    }

    void destinationsThatAreNoFilesAreRefused()
    {
        QTemporaryDir dir;
        const QString fifo = dir.filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        const QString folder = dir.filePath(QStringLiteral("folder.json"));
        QVERIFY(QDir().mkdir(folder));
        QStringList targets{fifo, folder};
        // A device node of its own, so a fault can never replace the system's /dev/null.
        const QString device = dir.filePath(QStringLiteral("null"));
        if (::mknod(QFile::encodeName(device).constData(), S_IFCHR | 0600, makedev(1, 3)) == 0)
            targets.append(device);
        for (const QString &target : std::as_const(targets)) {
            const mode_t before = modeOf(target);
            const auto written = AtomicFileWriter::write(target, QByteArray("poems"));
            QCOMPARE(written.errorMessage(), QStringLiteral("Keine normale Datei: %1").arg(target));
            QCOMPARE(modeOf(target), before);
        }
        QCOMPARE(entries(dir.path()).size(), targets.size());
    }

    // A real file system, filled up so that the write fails at or near its last block.
    void fullTmpfs_data()
    {
        QTest::addColumn<int>("missingPages");
        QTest::newRow("twenty pages short") << 20;
        QTest::newRow("two pages short") << 2;
        QTest::newRow("last page short") << 1;
        QTest::newRow("exactly enough") << 0;
        QTest::newRow("one page to spare") << -1;
    }

    void fullTmpfs()
    {
        QFETCH(int, missingPages);
        TmpfsMount disk(4 << 20);
        if (!disk.isMounted())
            QSKIP(TmpfsMount::skipReason());
        const QString path = disk.filePath(QStringLiteral("backup.json"));
        put(path, "the good older backup");
        const qint64 page = 4096;
        // Not a multiple of the buffer or the page: the last block is a partial one.
        const QByteArray payload = randomBytes(300000 + 123);
        const qint64 pagesNeeded = (payload.size() + page - 1) / page;
        QVERIFY(disk.leaveFree((pagesNeeded - missingPages) * page));
        const auto written = AtomicFileWriter::write(path, payload);
        const QStringList left = entries(disk.path()).filter(QStringLiteral("backup"));
        QCOMPARE(left, QStringList{QStringLiteral("backup.json")});
        if (missingPages > 0) {
            QCOMPARE(written.errorMessage(), QStringLiteral("Nicht genug Speicherplatz"));
            QCOMPARE(contents(path), QByteArray("the good older backup"));
        } else {
            QVERIFY2(written.ok(), qPrintable(written.errorMessage()));
            QCOMPARE(contents(path), payload);
        }
    }
};

QTEST_GUILESS_MAIN(AtomicFileWriterTest)
#include "tst_atomicfilewriter.moc"
