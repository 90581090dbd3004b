#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QCoreApplication>
#include <QSet>
#include <QString>

#include <vector>

// A strict pull reader over a UTF-8 JSON document (RFC 8259, no extensions). The caller
// walks the document value by value, so a large backup is decoded straight into its
// records without a tree in between. A name twice in one object is an error. After the first error every call returns
// false and errorText() says what and where.
class JsonCursor {
    Q_DECLARE_TR_FUNCTIONS(JsonCursor)

public:
    enum class Kind { object, array, string, number, boolean, null, invalid };

    explicit JsonCursor(QByteArrayView document);

    // The kind of the next value; invalid at the end of the input or at a syntax error.
    Kind peek();

    bool enterObject();
    // The next member's key of the innermost object (valid until the next call); false at
    // the end of the object, which is then left, or on an error.
    bool nextMember(QByteArrayView &key);
    bool enterArray();
    // True when another element follows; false at the end of the array or on an error.
    bool nextElement();

    bool readString(QString &value);
    // The string's UTF-8 bytes, unescaped and checked.
    bool readUtf8(QByteArray &value);
    bool readBool(bool &value);
    bool readNumber(double &value);
    bool readNull();
    bool skipValue();
    // Only white space may follow the root value.
    bool finish();

    bool failed() const { return !m_error.isEmpty(); }
    // The reason with line and column, in German.
    QString errorText() const;

private:
    bool fail(const QString &reason);
    // Points the error at the opening quote of the string just read.
    bool failAtString(const QString &reason);
    void skipWhitespace();
    bool expect(char c);
    struct RawString {
        QByteArrayView bytes; // between the quotes, escapes not yet resolved
        bool escaped = false;
        bool ascii = true;
    };
    bool scanString(RawString &raw);
    bool readRawString(RawString &raw);
    bool enterContainer(Kind kind, const QString &expected);
    bool unescape(QByteArrayView raw, QByteArray &out);
    bool scanNumber(QByteArrayView &raw);
    bool readLiteral(const char *literal);
    bool nextInContainer(char closing);

    QByteArrayView m_document;
    qsizetype m_pos = 0;
    qsizetype m_stringStart = 0;
    // One entry per open container: whether its first member is still to come.
    std::vector<bool> m_first;
    // The member names met so far, per open container (empty for lists).
    std::vector<QSet<QByteArray>> m_keys;
    QByteArray m_keyBuffer;
    QByteArray m_stringBuffer;
    QString m_error;
    qsizetype m_errorPos = 0;
};
