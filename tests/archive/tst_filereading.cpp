#include "archive/BoundedFileReader.h"
#include "archive/TextFileReader.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

class FileReadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesThatAreNoFilesAreRefusedAtOnce()
    {
        QTemporaryDir dir;
        const QString fifo = dir.filePath(QStringLiteral("backup.json"));
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        // A FIFO nobody writes to would block a plain open; /dev/zero never ends.
        for (const QString &path : {fifo, QStringLiteral("/dev/zero"), dir.path()}) {
            QElapsedTimer timer;
            timer.start();
            const auto read = BoundedFileReader::read(path, 1 << 20);
            QCOMPARE(read.errorMessage(), QStringLiteral("Keine normale Datei: %1").arg(path));
            QCOMPARE(BoundedFileReader::checkRegularFile(path).errorMessage(), read.errorMessage());
            QVERIFY(timer.elapsed() < 5000);
        }
        QCOMPARE(BoundedFileReader::read(dir.filePath(QStringLiteral("absent.csv")), 100).errorMessage(),
                 QStringLiteral("Die Datei „absent.csv“ wurde nicht gefunden."));
    }

    void theLimitHoldsWhileReading()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("list.csv"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(3000, 'a'));
        file.close();
        QCOMPARE(BoundedFileReader::read(path, 3000)->size(), 3000);
        QVERIFY(!BoundedFileReader::read(path, 2999));

        // Files under /proc claim to be empty yet have content: the size is never trusted.
        const auto status = BoundedFileReader::read(QStringLiteral("/proc/self/status"), 1 << 20);
        QVERIFY(status.ok());
        QVERIFY(status->contains("Name:"));
        const auto capped = BoundedFileReader::read(QStringLiteral("/proc/self/status"), 16);
        QCOMPARE(capped.errorMessage(), QStringLiteral("Die Datei „status“ ist zu groß (über 1 MB)."));
    }

    void textIsUtf8OrElseWindows1252_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("fallback");
        QTest::newRow("utf-8") << QByteArray("Gr\xc3\xbc\xc3\x9f"
                                             "e \xe2\x80\x94 \xf0\x9f\x8c\xbf")
                               << QStringLiteral("Grüße — 🌿") << false;
        QTest::newRow("utf-8 with mark") << QByteArray("\xef\xbb\xbfMond") << QStringLiteral("Mond") << false;
        QTest::newRow("utf-16") << QByteArray("\xff\xfeM\0o\0n\0d\0", 10) << QStringLiteral("Mond") << false;
        QTest::newRow("windows-1252") << QByteArray("Gr\xfc\xdf"
                                                    "e \x84Mond\x93 \x80 \x96 \x81")
                                      << QStringLiteral("Grüße „Mond“ € – \u0081") << true;
        // One bad byte at the very end is enough to read the whole file the other way.
        QTest::newRow("late fault") << QByteArray("\xc3\xa4 ... \xe4") << QStringLiteral("Ã¤ ... ä") << true;
        QTest::newRow("cut sequence") << QByteArray("Zeile \xe2\x80") << QStringLiteral("Zeile â€") << true;
    }

    void textIsUtf8OrElseWindows1252()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QFETCH(bool, fallback);
        const TextFileReader::Text decoded = TextFileReader::decode(bytes);
        QCOMPARE(decoded.text, text);
        QCOMPARE(decoded.readAsWindows1252, fallback);
        QVERIFY(!decoded.text.contains(QChar::ReplacementCharacter));
    }
};

QTEST_GUILESS_MAIN(FileReadingTest)
#include "tst_filereading.moc"
