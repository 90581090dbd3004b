#include "backup/JsonCursor.h"

#include "archive/HexDigit.h"

#include <QCoreApplication>

#include <charconv>
#include <cstring>

namespace {

constexpr std::size_t maximumDepth = 256;

void appendUtf8(QByteArray &out, char32_t code)
{
    if (code < 0x80) {
        out.append(char(code));
    } else if (code < 0x800) {
        out.append(char(0xC0 | (code >> 6)));
        out.append(char(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out.append(char(0xE0 | (code >> 12)));
        out.append(char(0x80 | ((code >> 6) & 0x3F)));
        out.append(char(0x80 | (code & 0x3F)));
    } else {
        out.append(char(0xF0 | (code >> 18)));
        out.append(char(0x80 | ((code >> 12) & 0x3F)));
        out.append(char(0x80 | ((code >> 6) & 0x3F)));
        out.append(char(0x80 | (code & 0x3F)));
    }
}

bool isValidUtf8(QByteArrayView bytes)
{
    const auto *p = reinterpret_cast<const unsigned char *>(bytes.data());
    const auto *const end = p + bytes.size();
    while (p < end) {
        if (end - p >= 8) {
            quint64 word;
            std::memcpy(&word, p, 8);
            if ((word & 0x8080808080808080ULL) == 0) {
                p += 8;
                continue;
            }
        }
        if (*p < 0x80) {
            ++p;
            continue;
        }
        int extra = 0;
        char32_t code = 0;
        char32_t smallest = 0;
        if ((*p & 0xE0) == 0xC0) {
            extra = 1, code = *p & 0x1F, smallest = 0x80;
        } else if ((*p & 0xF0) == 0xE0) {
            extra = 2, code = *p & 0x0F, smallest = 0x800;
        } else if ((*p & 0xF8) == 0xF0) {
            extra = 3, code = *p & 0x07, smallest = 0x10000;
        } else {
            return false;
        }
        if (end - p <= extra)
            return false;
        for (int k = 1; k <= extra; ++k) {
            if ((p[k] & 0xC0) != 0x80)
                return false;
            code = (code << 6) | (p[k] & 0x3F);
        }
        // Overlong forms, surrogates and values beyond Unicode are not UTF-8.
        if (code < smallest || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
            return false;
        p += extra + 1;
    }
    return true;
}

// Eight bytes at once: true when none is a quote, a backslash or a control character.
// A false alarm only sends the bytes through the exact loop.
bool isPlainWord(quint64 word)
{
    constexpr quint64 ones = 0x0101010101010101ULL;
    constexpr quint64 highs = 0x8080808080808080ULL;
    const auto hasZeroByte = [](quint64 x) { return (x - ones) & ~x & highs; };
    const quint64 controls = (word - ones * 0x20) & ~word & highs;
    return (hasZeroByte(word ^ (ones * '"')) | hasZeroByte(word ^ (ones * '\\')) | controls) == 0;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

JsonCursor::JsonCursor(QByteArrayView document) : m_document(document)
{
}

bool JsonCursor::fail(const QString &reason)
{
    if (m_error.isEmpty()) {
        m_error = reason;
        m_errorPos = m_pos;
    }
    return false;
}

QString JsonCursor::errorText() const
{
    if (m_error.isEmpty())
        return {};
    int line = 1;
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i < m_errorPos && i < m_document.size(); ++i) {
        if (m_document[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    const QByteArrayView lineText = m_document.sliced(lineStart, std::min(m_errorPos, m_document.size()) - lineStart);
    const qsizetype column = QString::fromUtf8(lineText).size() + 1;
    return tr("%1 (Zeile %2, Spalte %3)").arg(m_error).arg(line).arg(column);
}

bool JsonCursor::failAtString(const QString &reason)
{
    m_pos = m_stringStart;
    return fail(reason);
}

void JsonCursor::skipWhitespace()
{
    while (m_pos < m_document.size()) {
        const char c = m_document[m_pos];
        if (c != ' ' && c != '\n' && c != '\r' && c != '\t')
            return;
        ++m_pos;
    }
}

bool JsonCursor::expect(char c)
{
    skipWhitespace();
    if (m_pos >= m_document.size())
        return fail(tr("unerwartetes Dateiende"));
    if (m_document[m_pos] != c)
        return fail(tr("„%1“ erwartet").arg(QLatin1Char(c)));
    ++m_pos;
    return true;
}

JsonCursor::Kind JsonCursor::peek()
{
    if (failed())
        return Kind::invalid;
    skipWhitespace();
    if (m_pos >= m_document.size()) {
        fail(tr("unerwartetes Dateiende"));
        return Kind::invalid;
    }
    const char c = m_document[m_pos];
    switch (c) {
    case '{':
        return Kind::object;
    case '[':
        return Kind::array;
    case '"':
        return Kind::string;
    case 't':
    case 'f':
        return Kind::boolean;
    case 'n':
        return Kind::null;
    default:
        if (c == '-' || isDigit(c))
            return Kind::number;
        fail(tr("unerwartetes Zeichen"));
        return Kind::invalid;
    }
}

bool JsonCursor::enterContainer(Kind kind, const QString &expected)
{
    if (peek() != kind)
        return fail(expected);
    if (m_first.size() >= maximumDepth)
        return fail(tr("zu tief verschachtelt"));
    ++m_pos;
    m_first.push_back(true);
    m_keys.emplace_back();
    return true;
}

bool JsonCursor::enterObject()
{
    return enterContainer(Kind::object, tr("Objekt erwartet"));
}

bool JsonCursor::enterArray()
{
    return enterContainer(Kind::array, tr("Liste erwartet"));
}

// Consumes the separator before the next entry, or the closing bracket.
bool JsonCursor::nextInContainer(char closing)
{
    if (failed() || m_first.empty())
        return false;
    skipWhitespace();
    if (m_pos >= m_document.size())
        return fail(tr("unerwartetes Dateiende"));
    const char c = m_document[m_pos];
    if (c == closing) {
        ++m_pos;
        m_first.pop_back();
        m_keys.pop_back();
        return false;
    }
    if (m_first.back()) {
        m_first.back() = false;
        return true;
    }
    if (c != ',')
        return fail(tr("„,“ oder „%1“ erwartet").arg(QLatin1Char(closing)));
    ++m_pos;
    skipWhitespace();
    return true;
}

bool JsonCursor::nextMember(QByteArrayView &key)
{
    if (!nextInContainer('}'))
        return false;
    if (m_pos >= m_document.size() || m_document[m_pos] != '"')
        return fail(tr("Feldname erwartet"));
    RawString raw;
    if (!scanString(raw))
        return false;
    if (raw.escaped) {
        if (!unescape(raw.bytes, m_keyBuffer))
            return false;
        key = m_keyBuffer;
    } else {
        key = raw.bytes;
    }
    // A second "poems" would silently replace the first; no reader may guess which one counts.
    QSet<QByteArray> &seen = m_keys.back();
    const QByteArray name = key.toByteArray();
    if (seen.contains(name))
        return failAtString(tr("Feldname „%1“ kommt doppelt vor").arg(QString::fromUtf8(name)));
    seen.insert(name);
    return expect(':');
}

bool JsonCursor::nextElement()
{
    return nextInContainer(']');
}

// Leaves m_pos after the closing quote; raw is the text between the quotes.
bool JsonCursor::scanString(RawString &raw)
{
    m_stringStart = m_pos;
    const qsizetype start = ++m_pos;
    const char *const data = m_document.data();
    const qsizetype size = m_document.size();
    raw.escaped = false;
    quint64 seen = 0; // every byte or-ed in: its high bits tell whether all were ASCII
    while (true) {
        while (m_pos + 8 <= size) {
            quint64 word;
            std::memcpy(&word, data + m_pos, 8);
            if (!isPlainWord(word))
                break;
            seen |= word;
            m_pos += 8;
        }
        if (m_pos >= size)
            break;
        const auto c = static_cast<unsigned char>(data[m_pos]);
        if (c == '"') {
            raw.bytes = m_document.sliced(start, m_pos - start);
            raw.ascii = (seen & 0x8080808080808080ULL) == 0;
            ++m_pos;
            return true;
        }
        if (c < 0x20)
            return fail(tr("Steuerzeichen in einer Zeichenkette"));
        if (c == '\\') {
            raw.escaped = true;
            if (++m_pos >= size)
                break;
            seen |= static_cast<unsigned char>(data[m_pos]);
        } else {
            seen |= c;
        }
        ++m_pos;
    }
    return fail(tr("unerwartetes Dateiende in einer Zeichenkette"));
}

bool JsonCursor::unescape(QByteArrayView raw, QByteArray &out)
{
    out.resize(0);
    out.reserve(raw.size());
    const auto badEscape = [this, &raw](qsizetype at) {
        m_pos -= raw.size() + 1 - at; // point at the escape, not at the string's end
        return fail(tr("ungültige Escape-Sequenz"));
    };
    const auto readHex4 = [&raw](qsizetype at) -> int {
        if (at + 4 > raw.size())
            return -1;
        int value = 0;
        for (qsizetype i = at; i < at + 4; ++i) {
            const int digit = hexDigitValue(raw[i]);
            if (digit < 0)
                return -1;
            value = value * 16 + digit;
        }
        return value;
    };
    qsizetype i = 0;
    while (i < raw.size()) {
        // Text between escapes is copied in one piece.
        const char *from = raw.data() + i;
        const auto *backslash = static_cast<const char *>(std::memchr(from, '\\', size_t(raw.size() - i)));
        const qsizetype run = backslash ? backslash - from : raw.size() - i;
        out.append(from, run);
        i += run;
        if (i >= raw.size())
            break;
        const qsizetype escape = i++;
        if (i >= raw.size())
            return badEscape(escape);
        switch (raw[i]) {
        case '"':
        case '\\':
        case '/':
            out.append(raw[i]);
            break;
        case 'b':
            out.append('\b');
            break;
        case 'f':
            out.append('\f');
            break;
        case 'n':
            out.append('\n');
            break;
        case 'r':
            out.append('\r');
            break;
        case 't':
            out.append('\t');
            break;
        case 'u': {
            const int unit = readHex4(i + 1);
            if (unit < 0 || (unit >= 0xDC00 && unit <= 0xDFFF))
                return badEscape(escape);
            char32_t code = char32_t(unit);
            i += 4;
            if (unit >= 0xD800 && unit <= 0xDBFF) {
                // A high surrogate counts only together with the low one that must follow.
                const bool pairFollows = i + 2 < raw.size() && raw[i + 1] == '\\' && raw[i + 2] == 'u';
                const int low = pairFollows ? readHex4(i + 3) : -1;
                if (low < 0xDC00 || low > 0xDFFF)
                    return badEscape(escape);
                code = 0x10000 + ((code - 0xD800) << 10) + char32_t(low - 0xDC00);
                i += 6;
            }
            appendUtf8(out, code);
            break;
        }
        default:
            return badEscape(escape);
        }
        ++i;
    }
    return true;
}

// Escapes are ASCII and \u escapes always yield valid UTF-8, so checking the raw bytes
// checks the result; a string of ASCII bytes needs no check at all.
bool JsonCursor::readRawString(RawString &raw)
{
    if (peek() != Kind::string)
        return fail(tr("Zeichenkette erwartet"));
    if (!scanString(raw))
        return false;
    if (!raw.ascii && !isValidUtf8(raw.bytes))
        return failAtString(tr("ungültige UTF-8-Kodierung"));
    return true;
}

bool JsonCursor::readUtf8(QByteArray &value)
{
    RawString raw;
    if (!readRawString(raw))
        return false;
    if (!raw.escaped) {
        value = raw.bytes.toByteArray();
        return true;
    }
    return unescape(raw.bytes, value);
}

bool JsonCursor::readString(QString &value)
{
    RawString raw;
    if (!readRawString(raw))
        return false;
    QByteArrayView text = raw.bytes;
    if (raw.escaped) {
        if (!unescape(raw.bytes, m_stringBuffer))
            return false;
        text = m_stringBuffer;
    }
    // fromUtf8 drops a leading byte-order mark, which inside a string is text.
    static constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    if (text.startsWith(byteOrderMark))
        value = QChar(0xFEFF) + QString::fromUtf8(text.sliced(3));
    else
        value = QString::fromUtf8(text);
    return true;
}

bool JsonCursor::readLiteral(const char *literal)
{
    const QByteArrayView expected(literal);
    if (m_document.sliced(m_pos).startsWith(expected)) {
        m_pos += expected.size();
        return true;
    }
    return fail(tr("unerwartetes Zeichen"));
}

bool JsonCursor::readBool(bool &value)
{
    if (peek() != Kind::boolean)
        return fail(tr("Wahrheitswert erwartet"));
    value = m_document[m_pos] == 't';
    return readLiteral(value ? "true" : "false");
}

bool JsonCursor::readNull()
{
    if (peek() != Kind::null)
        return fail(tr("„null“ erwartet"));
    return readLiteral("null");
}

// -?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?
bool JsonCursor::scanNumber(QByteArrayView &raw)
{
    const qsizetype start = m_pos;
    const auto at = [this](qsizetype i) { return i < m_document.size() ? m_document[i] : '\0'; };
    qsizetype i = m_pos;
    // One or more digits, or the position of the first character that should have been one.
    const auto digits = [&at, &i] {
        if (!isDigit(at(i)))
            return false;
        while (isDigit(at(i)))
            ++i;
        return true;
    };
    const auto invalid = [this, &i] {
        m_pos = i;
        return fail(tr("ungültige Zahl"));
    };
    if (at(i) == '-')
        ++i;
    if (at(i) == '0')
        ++i;
    else if (!digits())
        return invalid();
    if (at(i) == '.') {
        ++i;
        if (!digits())
            return invalid();
    }
    if (at(i) == 'e' || at(i) == 'E') {
        ++i;
        if (at(i) == '+' || at(i) == '-')
            ++i;
        if (!digits())
            return invalid();
    }
    raw = m_document.sliced(start, i - start);
    m_pos = i;
    return true;
}

bool JsonCursor::readNumber(double &value)
{
    if (peek() != Kind::number)
        return fail(tr("Zahl erwartet"));
    QByteArrayView raw;
    if (!scanNumber(raw))
        return false;
    const auto parsed = std::from_chars(raw.data(), raw.data() + raw.size(), value);
    if (parsed.ec != std::errc())
        return fail(tr("Zahl außerhalb des gültigen Bereichs"));
    return true;
}

bool JsonCursor::skipValue()
{
    switch (peek()) {
    case Kind::object: {
        enterObject();
        QByteArrayView key;
        while (nextMember(key)) {
            if (!skipValue())
                return false;
        }
        return !failed();
    }
    case Kind::array:
        enterArray();
        while (nextElement()) {
            if (!skipValue())
                return false;
        }
        return !failed();
    case Kind::string: {
        QByteArray ignored;
        return readUtf8(ignored);
    }
    case Kind::number: {
        QByteArrayView ignored;
        return scanNumber(ignored);
    }
    case Kind::boolean: {
        bool ignored = false;
        return readBool(ignored);
    }
    case Kind::null:
        return readNull();
    case Kind::invalid:
        return false;
    }
    return false;
}

bool JsonCursor::finish()
{
    if (failed())
        return false;
    skipWhitespace();
    if (m_pos < m_document.size())
        return fail(tr("unerwartete Zeichen nach dem Dokument"));
    return true;
}
