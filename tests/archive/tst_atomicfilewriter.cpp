#include "TmpfsMount.h"
#include "archive/AtomicFileWriter.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

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
        QTest::addColumn<int>("syncError");
        QTest::addColumn<QString>("cause");
        const QString full = QStringLiteral("Nicht genug Speicherplatz");
        const QString device = QStringLiteral("Ein-/Ausgabefehler des Datenträgers");
        const qint64 everything = 200000;
        QTest::newRow("nothing fits") << qint64(0) << ENOSPC << 0 << full;
        QTest::newRow("one byte") << qint64(1) << ENOSPC << 0 << full;
        QTest::newRow("first block") << qint64(65536) << EDQUOT << 0 << full;
        QTest::newRow("all but the last block") << qint64(196608) << ENOSPC << 0 << full;
        QTest::newRow("all but one byte") << everything - 1 << ENOSPC << 0 << full;
        QTest::newRow("read-only disk") << qint64(70000) << EROFS << 0
                                        << QStringLiteral("Das Dateisystem ist schreibgeschützt");
        QTest::newRow("failing device") << qint64(123457) << EIO << 0 << device;
        // Every byte taken, but the disk cannot make them durable: the data may be lost
        // at the next power cut, so the older file must stay.
        QTest::newRow("fsync fails") << everything << 0 << EIO << device;
        QTest::newRow("fsync finds the quota full") << everything << 0 << EDQUOT << full;
    }

    void failingDiskKeepsTheOlderFile()
    {
        QFETCH(qint64, capacity);
        QFETCH(int, error);
        QFETCH(int, syncError);
        QFETCH(QString, cause);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("backup.json"));
        put(path, "the good older backup");
        const QByteArray payload = randomBytes(200000);
        int syncs = 0;
        const AtomicFileWriter::SystemSync sync = [&syncs, syncError](int descriptor) {
            ++syncs;
            if (syncError == 0)
                return ::fsync(descriptor);
            errno = syncError;
            return -1;
        };
        // In small pieces, like an encoder: the failure may fall into the buffered last block.
        const auto written = AtomicFileWriter::write(path,
                                                     [&payload](QIODevice &device) -> Result<void> {
                                                         for (qsizetype at = 0; at < payload.size(); at += 1000) {
                                                             if (device.write(payload.mid(at, 1000)) < 0)
                                                                 return Error{device.errorString()};
                                                         }
                                                         return {};
                                                     },
                                                     {limitedDisk(capacity, error, 4096), sync});
        QVERIFY(!written);
        QCOMPARE(written.errorMessage(), cause);
        QCOMPARE(contents(path), QByteArray("the good older backup"));
        QCOMPARE(entries(dir.path()), QStringList{QStringLiteral("backup.json")});
        QCOMPARE(syncs, syncError == 0 ? 0 : 1);
    }

    // The temporary file's name must not grow with the destination's: a name the file
    // system takes is never refused as too long.
    void longNamesAreWritten_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("200 bytes") << 200;
        QTest::newRow("248 bytes") << 248;
        QTest::newRow("255 bytes, the limit") << 255;
    }

    void longNamesAreWritten()
    {
        QFETCH(int, length);
        QTemporaryDir dir;
        // Umlauts take two bytes each: the limit is in bytes, not in letters.
        QString name = QString(length / 2 - 3, QChar(u'ä')) + QStringLiteral(".json");
        name += QString(length - QFile::encodeName(name).size(), QLatin1Char('x'));
        QCOMPARE(QFile::encodeName(name).size(), length);
        const QString path = dir.filePath(name);
        put(path, "old");
        const auto written = AtomicFileWriter::write(path, QByteArray("new"));
        QVERIFY2(written.ok(), qPrintable(written.errorMessage()));
        QCOMPARE(contents(path), QByteArray("new"));
        QCOMPARE(entries(dir.path()), QStringList{name});
    }

    void writeNewNeverReplaces()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("pre-restore.json"));
        const auto produce = [](const QByteArray &bytes) {
            return [bytes](QIODevice &device) -> Result<void> {
                device.write(bytes);
                return {};
            };
        };
        QCOMPARE(AtomicFileWriter::writeNew(path, produce("first")).value(), true);
        QCOMPARE(AtomicFileWriter::writeNew(path, produce("second")).value(), false);
        QCOMPARE(contents(path), QByteArray("first"));
        // Nor the file behind a link of that name.
        const QString link = dir.filePath(QStringLiteral("link.json"));
        QVERIFY(QFile::link(path, link));
        QCOMPARE(AtomicFileWriter::writeNew(link, produce("third")).value(), false);
        QCOMPARE(contents(path), QByteArray("first"));
        QCOMPARE(entries(dir.path()), (QStringList{QStringLiteral("link.json"), QStringLiteral("pre-restore.json")}));
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

    // As the kernel's protected_symlinks rule: in a sticky world-writable folder only a
    // link of the writer's own, or of the folder's owner, is followed.
    void linksInSharedFoldersAreFollowedOnlyWhenTheyAreTrusted_data()
    {
        QTest::addColumn<int>("folderMode");
        QTest::addColumn<bool>("othersFolder");
        QTest::addColumn<bool>("othersLink");
        QTest::addColumn<bool>("followed");
        QTest::newRow("another user's link in /tmp") << 01777 << false << true << false;
        QTest::newRow("own link in /tmp") << 01777 << false << false << true;
        QTest::newRow("link of the shared folder's owner") << 01777 << true << true << true;
        QTest::newRow("another user's link, not sticky") << 0777 << false << true << true;
        QTest::newRow("another user's link, sticky but private") << 01755 << false << true << true;
    }

    void linksInSharedFoldersAreFollowedOnlyWhenTheyAreTrusted()
    {
        QFETCH(int, folderMode);
        QFETCH(bool, othersFolder);
        QFETCH(bool, othersLink);
        QFETCH(bool, followed);
        if (::geteuid() != 0)
            QSKIP("giving a link to another user needs root (as on CI)");
        const uid_t other = 65534;
        QTemporaryDir dir;
        const QString victim = dir.filePath(QStringLiteral("passwd"));
        put(victim, "root:x:0:0");
        const QString shared = dir.filePath(QStringLiteral("tmp"));
        QVERIFY(QDir().mkdir(shared));
        const QByteArray sharedName = QFile::encodeName(shared);
        QCOMPARE(::chmod(sharedName.constData(), mode_t(folderMode)), 0);
        if (othersFolder)
            QCOMPARE(::chown(sharedName.constData(), other, other), 0);
        const QString link = shared + QStringLiteral("/OdeLeaf-Backup.json");
        QVERIFY(QFile::link(victim, link));
        if (othersLink)
            QCOMPARE(::lchown(QFile::encodeName(link).constData(), other, other), 0);

        const auto written = AtomicFileWriter::write(link, QByteArray("backup"));
        QCOMPARE(written.ok(), followed);
        QCOMPARE(contents(victim), followed ? QByteArray("backup") : QByteArray("root:x:0:0"));
        if (!followed)
            QVERIFY2(written.errorMessage().contains(QStringLiteral("Verknüpfung eines anderen Benutzers")),
                     qPrintable(written.errorMessage()));
        QVERIFY(S_ISLNK(modeOf(link)));
    }

    void staleTemporaryFilesOfEndedWritersAreRemoved()
    {
        QTemporaryDir dir;
        QProcess ended;
        ended.start(QStringLiteral("/bin/true"));
        QVERIFY(ended.waitForFinished());
        const qint64 endedPid = ended.processId() > 0 ? ended.processId() : 999999;
        const QString prefix = AtomicFileWriter::temporaryPrefix();
        const QStringList stale{prefix + QStringLiteral("%1-4eZOKM").arg(endedPid)};
        const QStringList kept{
            prefix + QStringLiteral("%1-Uf6yQW").arg(::getpid()), // a write under way
            prefix + QStringLiteral("%1-kurz").arg(endedPid),     // not a name the writer gives
            QStringLiteral(".pre-restore.json"),
            QStringLiteral("Gedichte.docx"),
        };
        for (const QString &name : stale + kept)
            put(dir.filePath(name), "x");
        const QString below = dir.filePath(QStringLiteral("Unterordner"));
        QVERIFY(QDir().mkdir(below));
        put(below + QLatin1Char('/') + stale.first(), "x");

        QCOMPARE(AtomicFileWriter::removeStaleTemporaryFiles({dir.path(), dir.filePath(QStringLiteral("fehlt"))}), 1);
        QStringList expected = kept;
        expected.append(QStringLiteral("Unterordner"));
        expected.sort();
        QCOMPARE(entries(dir.path()), expected);
        QCOMPARE(entries(below), stale);
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
        QStringList left = entries(disk.path());
        left.removeIf([](const QString &name) { return name.startsWith(QLatin1String("filler")); });
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
