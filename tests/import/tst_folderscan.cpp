#include "archive/PoemValues.h"
#include "import/FolderScan.h"
#include "import/FolderScanner.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

namespace {

void touch(const QDir &root, const QString &relativePath)
{
    const QString path = root.filePath(relativePath);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

QStringList relativeSorted(const QDir &root, const QStringList &paths)
{
    QStringList relative;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isAbsolute())
            return {QStringLiteral("not absolute: ") + path};
        relative.append(root.relativeFilePath(path));
    }
    relative.sort();
    return relative;
}

} // namespace

class FolderScanTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void collectsVisibleDocumentsRecursively()
    {
        QTemporaryDir dir;
        const QDir root(dir.path());
        for (const char *path : {"Herbst.docx", "Mond.PDF", "Lied.DocX", "2019/Winter.pdf", "2019/tief/unten/Rose.docx",
                                 ".versteckt.docx", "2019/.~lock.Winter.docx", ".Papierkorb/Alt.docx",
                                 "2019/.cache/tief/Alt.pdf", "notizen.txt", "Bild.png", "ohne-endung", "docx"})
            touch(root, QString::fromLatin1(path));
        QVERIFY(QDir().mkpath(root.filePath(QStringLiteral("Ordner.docx"))));

        QCOMPARE(relativeSorted(root, FolderScanner::collectFiles(dir.path(), FolderScanner::documentExtensions())),
                 (QStringList{"2019/Winter.pdf", "2019/tief/unten/Rose.docx", "Herbst.docx", "Lied.DocX", "Mond.PDF"}));
        QCOMPARE(relativeSorted(root, FolderScanner::collectFiles(dir.path(), FolderScanner::imageExtensions())),
                 QStringList{"Bild.png"});
    }

    void fallsBackToPathsWhenTheWalkFindsNothing()
    {
        // A linked file is no regular file to the walk; the listing by path still finds it,
        // and still skips what is hidden.
        QTemporaryDir dir;
        QTemporaryDir elsewhere;
        const QDir root(dir.path());
        touch(QDir(elsewhere.path()), QStringLiteral("Echt.docx"));
        QVERIFY(QDir().mkpath(root.filePath(QStringLiteral("a"))));
        QVERIFY(
            QFile::link(elsewhere.filePath(QStringLiteral("Echt.docx")), root.filePath(QStringLiteral("a/Link.docx"))));
        QVERIFY(
            QFile::link(elsewhere.filePath(QStringLiteral("Echt.docx")), root.filePath(QStringLiteral(".Link.docx"))));
        QCOMPARE(relativeSorted(root, FolderScanner::collectFiles(dir.path(), FolderScanner::documentExtensions())),
                 QStringList{"a/Link.docx"});
        QVERIFY(FolderScanner::collectFiles(dir.path(), FolderScanner::imageExtensions()).isEmpty());
    }

    // A name that is no valid UTF-8 (a copy from an old Latin-1 disk) cannot be read, but
    // must not vanish either: the listing names it apart from the readable files.
    void namesThatAreNoUtf8AreListedAsUnreadable()
    {
        QTemporaryDir dir;
        const QDir root(dir.path());
        touch(root, QStringLiteral("Lesbar.docx"));
        QVERIFY(QDir().mkpath(root.filePath(QStringLiteral("2019"))));
        for (const QByteArray &name : {QByteArray("Gr\xfc\xdf"
                                                  "e.docx"),
                                       QByteArray("2019/M\xe4rz.pdf"), QByteArray("Notiz \xe4.txt")}) {
            const int descriptor =
                ::open((QFile::encodeName(dir.path()) + '/' + name).constData(), O_CREAT | O_WRONLY, 0600);
            QVERIFY(descriptor >= 0);
            ::close(descriptor);
        }
        const FolderScanner::Listing listing = FolderScanner::list(dir.path(), FolderScanner::documentExtensions());
        QCOMPARE(relativeSorted(root, listing.paths), QStringList{"Lesbar.docx"});
        QStringList unreadable = listing.unreadable;
        unreadable.sort();
        QCOMPARE(unreadable, (QStringList{QFile::decodeName("2019/M\xe4rz.pdf"), QFile::decodeName("Gr\xfc\xdf"
                                                                                                   "e.docx")}));
        QVERIFY(unreadable.first().contains(QChar::ReplacementCharacter));
        const FolderScanOutcome outcome = FolderScan::run(dir.path(), {}, false);
        QCOMPARE(outcome.unreadableFiles.size(), 2);
    }

    void relativePathIsBelowTheFolder()
    {
        const ScannedFile file = FolderScanner::scannedFile(QStringLiteral("/home/a/Gedichte/"),
                                                            QStringLiteral("/home/a/Gedichte/2019/Mond.docx"));
        QCOMPARE(file.fileName, QStringLiteral("Mond.docx"));
        QCOMPARE(file.relativePath, QStringLiteral("2019/Mond.docx"));
        QCOMPARE(
            FolderScanner::scannedFile(QStringLiteral("/home/a/Gedichte"), QStringLiteral("/home/a/Gedichte/M.pdf"))
                .relativePath,
            QStringLiteral("M.pdf"));
    }

    void scanReportsEachStageAndMatches()
    {
        QTemporaryDir dir;
        const QDir root(dir.path());
        touch(root, QStringLiteral("Herbstlied.docx"));
        touch(root, QStringLiteral("sonstiges/Zzz.pdf"));
        const QList<PoemSnapshotEntry> poems = {{QUuid::createUuid(), QStringLiteral("Herbstlied")}};
        QStringList statuses;
        const FolderScanOutcome outcome =
            FolderScan::run(dir.path(), poems, false, [&](const QString &status) { statuses.append(status); });

        QCOMPARE(outcome.scannedFilesCount, 2);
        QCOMPARE(outcome.proposals.size(), 2);
        const auto herbst =
            std::find_if(outcome.proposals.begin(), outcome.proposals.end(),
                         [](const ImportProposal &p) { return p.fileName == QLatin1String("Herbstlied.docx"); });
        QVERIFY(herbst != outcome.proposals.end());
        QCOMPARE(herbst->chosenPoemObjectURI, uuidText(poems[0].id));

        QCOMPARE(statuses.size(), 4);
        QCOMPARE(statuses[0], QStringLiteral("Dateien sammeln…"));
        QVERIFY(QRegularExpression(QStringLiteral("^Dateien: 2 \\| Scan-Time: \\d+\\.\\d\\ds \\| Mapping…$"))
                    .match(statuses[1])
                    .hasMatch());
        QVERIFY(QRegularExpression(
                    QStringLiteral("^Dateien: 2 \\| Scan: \\d+\\.\\d\\ds \\| Map: \\d+\\.\\d\\ds \\| Matching…$"))
                    .match(statuses[2])
                    .hasMatch());
        QVERIFY(QRegularExpression(QStringLiteral("^Scan: 2 \\| Proposals: 2 \\| Scan \\d+\\.\\d\\ds \\| Map "
                                                  "\\d+\\.\\d\\ds \\| Match \\d+\\.\\d\\ds$"))
                    .match(statuses[3])
                    .hasMatch());
        QCOMPARE(statuses[3], outcome.summary());
    }

    void emptyFolderStillEndsInASummary()
    {
        QTemporaryDir dir;
        const FolderScanOutcome outcome = FolderScan::run(dir.path(), {}, true);
        QCOMPARE(outcome.scannedFilesCount, 0);
        QVERIFY(outcome.proposals.isEmpty());
        QVERIFY(outcome.imagesOnly);
        QVERIFY(outcome.summary().startsWith(QStringLiteral("Scan: 0 | Proposals: 0 | Scan ")));
    }
};

QTEST_GUILESS_MAIN(FolderScanTest)
#include "tst_folderscan.moc"
