#include "archive/ByteSearch.h"

#include <QTest>

class ByteSearchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The wide scan works in blocks of sixteen; a match must be found at every offset,
    // across block borders and in the short tail, and never past the end.
    void findsANeedleAtEveryPosition()
    {
        for (const QByteArray &needle : {QByteArray("ab"), QByteArray("xyz"), QByteArray("lang genug fuer zwei")}) {
            for (int length = int(needle.size()); length < 70; ++length) {
                for (int at = 0; at + needle.size() <= length; ++at) {
                    QByteArray haystack(length, 'q');
                    haystack.replace(at, needle.size(), needle);
                    QVERIFY2(ByteSearch::contains(haystack, needle),
                             qPrintable(QStringLiteral("%1 at %2 of %3").arg(needle).arg(at).arg(length)));
                }
                QByteArray without(length, 'q');
                QVERIFY(!ByteSearch::contains(without, needle));
                // First and last byte in place but the middle wrong is no match.
                without[0] = needle.front();
                without[qsizetype(needle.size()) - 1] = needle.back();
                QCOMPARE(ByteSearch::contains(without, needle), needle.size() <= 2);
            }
        }
    }

    void edgeCases()
    {
        QVERIFY(!ByteSearch::contains(QByteArray("abc"), QByteArray()));
        QVERIFY(!ByteSearch::contains(QByteArray(), QByteArray("a")));
        QVERIFY(ByteSearch::contains(QByteArray("abc"), QByteArray("c")));
        QVERIFY(!ByteSearch::contains(QByteArray("ab"), QByteArray("abc")));
        // A needle cut off by the end of a longer buffer's range is no match.
        const QByteArray text("title\0text", 10);
        QVERIFY(!ByteSearch::contains(text.constData(), 5, "titl\0", 5));
        QVERIFY(ByteSearch::contains(QStringLiteral("Straße über Brücken").toUtf8(), QStringLiteral("über").toUtf8()));
    }
};

QTEST_GUILESS_MAIN(ByteSearchTest)
#include "tst_bytesearch.moc"
