#include "editor/RtfReader.h"

#include "archive/HexDigit.h"

#include "editor/PictureFormats.h"
#include "editor/PoemTextDocument.h"
#include "editor/RtfCodePage.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextImageFormat>

#include <array>
#include <map>
#include <memory>
#include <optional>

namespace {

constexpr int maxFonts = 4096;
constexpr int maxColors = 4096;
constexpr int maxPictures = 2000;
constexpr double maxDisplaySide = 5000;
// Where a picture that cannot be drawn names no size of its own.
constexpr double placeholderWidth = 240;
constexpr double placeholderHeight = 160;
constexpr int maxNameLength = 1024;

// A shape (how word processors place a picture) holds named properties; only its picture
// property "pib", its text box and its bounds matter here. Its result group is the same
// shape drawn for older readers. \upr holds a text twice, in the code page and in Unicode.
enum class Destination {
    text,
    fontTable,
    colorTable,
    picture,
    attachment,
    shape,
    shapeName,
    shapeValue,
    shapeText,
    shapeResult,
    upr,
    skip
};

// Text that mixes bytes of a code page with \uN characters, as names in tables do.
struct MixedText {
    QByteArray bytes;
    QString text;

    qsizetype size() const { return bytes.size() + text.size(); }
    void appendCharacter(QChar c, RtfCodePage &page)
    {
        text.append(page.decode(bytes));
        bytes.clear();
        text.append(c);
    }
    QString decoded(RtfCodePage &page) const { return text + page.decode(bytes); }
    void clear()
    {
        bytes.clear();
        text.clear();
    }
};

struct CharState {
    int font = -1; // -1: the default font
    int halfPoints = 24;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    int color = 0;
};

struct ParaState {
    Qt::Alignment alignment = Qt::AlignLeft;
    int spaceAfter = 0;  // twips
    int lineSpacing = 0; // \sl
    bool lineMultiple = false;
    int leading = -1; // twips; -1: none given
};

struct GroupState {
    CharState chars;
    ParaState para;
    Destination destination = Destination::text;
    int unicodeSkip = 1;
};

struct FontEntry {
    QString family;
    int codePage = 0;
    bool bold = false;
    bool italic = false;
};

struct Picture {
    int level = -1;
    PictureFormat declared = PictureFormat::unknown;
    QByteArray keyword;
    QByteArray bytes; // the first `length` bytes are the picture
    qsizetype length = 0;
    int highNibble = -1;
    int pixelWidth = 0;
    int pixelHeight = 0;
    int goalWidth = 0;
    int goalHeight = 0;
    int scaleX = 100;
    int scaleY = 100;

    void append(char byte)
    {
        if (length == bytes.size())
            bytes.resize(qMax<qsizetype>(4096, bytes.size() * 2));
        bytes.data()[length++] = byte;
    }
    void append(const char *data, qsizetype count)
    {
        bytes.truncate(length);
        bytes.append(data, count);
        length = bytes.size();
    }
};

struct Shape {
    int level = -1;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    QByteArray property;
    bool yielded = false; // a picture or a text box was read from it
};

struct Attachment {
    int level = -1;
    MixedText name;
    int width = 0;
    int height = 0;
};

// Pairs of hex digits decoded through one table look-up.
const std::array<qint16, 65536> &hexPairTable()
{
    static const auto table = [] {
        std::array<qint16, 65536> t{};
        t.fill(-1);
        for (int a = 0; a < 256; ++a) {
            for (int b = 0; b < 256; ++b) {
                const int high = hexDigitValue(a);
                const int low = hexDigitValue(b);
                if (high >= 0 && low >= 0)
                    t[size_t(a | (b << 8))] = qint16(high * 16 + low);
            }
        }
        return t;
    }();
    return table;
}

bool isLetter(uchar c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(uchar c)
{
    return c >= '0' && c <= '9';
}

// Font names in files from another platform are often PostScript names ("Roboto-BoldItalic").
FontEntry fontFromName(QString name, int codePage)
{
    FontEntry entry;
    entry.codePage = codePage;
    name = name.trimmed();
    const qsizetype dash = name.lastIndexOf(QLatin1Char('-'));
    if (dash > 0 && !name.contains(QLatin1Char(' '))) {
        const QString style = name.mid(dash + 1);
        static const QStringList knownStyles = {
            QStringLiteral("Regular"),     QStringLiteral("Roman"),        QStringLiteral("Bold"),
            QStringLiteral("Italic"),      QStringLiteral("BoldItalic"),   QStringLiteral("Oblique"),
            QStringLiteral("BoldOblique"), QStringLiteral("Light"),        QStringLiteral("Medium"),
            QStringLiteral("LightItalic"), QStringLiteral("MediumItalic"), QStringLiteral("Book")};
        if (knownStyles.contains(style)) {
            entry.bold = style.contains(QLatin1String("Bold"));
            entry.italic = style.contains(QLatin1String("Italic")) || style.contains(QLatin1String("Oblique"));
            name = name.left(dash);
        }
    }
    entry.family = name;
    return entry;
}

const std::map<QByteArray, Destination> &destinationWords()
{
    static const std::map<QByteArray, Destination> words = {
        {"fonttbl", Destination::fontTable},
        {"colortbl", Destination::colorTable},
        {"pict", Destination::picture},
        {"NeXTGraphic", Destination::attachment},
        {"stylesheet", Destination::skip},
        {"info", Destination::skip},
        {"header", Destination::skip},
        {"headerl", Destination::skip},
        {"headerr", Destination::skip},
        {"headerf", Destination::skip},
        {"footer", Destination::skip},
        {"footerl", Destination::skip},
        {"footerr", Destination::skip},
        {"footerf", Destination::skip},
        {"footnote", Destination::skip},
        {"nonshppict", Destination::skip},
        {"objdata", Destination::skip},
        {"listtable", Destination::skip},
        {"listoverridetable", Destination::skip},
        {"revtbl", Destination::skip},
        {"rsidtbl", Destination::skip},
        {"pgdsctbl", Destination::skip},
        {"themedata", Destination::skip},
        {"colorschememapping", Destination::skip},
        {"latentstyles", Destination::skip},
        {"datastore", Destination::skip},
        {"xmlnstbl", Destination::skip},
        {"fldinst", Destination::skip},
        {"annotation", Destination::skip},
        {"atnid", Destination::skip},
        {"atnauthor", Destination::skip},
        {"atndate", Destination::skip},
        {"atnref", Destination::skip},
        {"ftnsep", Destination::skip},
        {"ftnsepc", Destination::skip},
        {"ftncn", Destination::skip},
        {"aftnsep", Destination::skip},
        {"aftnsepc", Destination::skip},
        {"aftncn", Destination::skip},
        {"xe", Destination::skip},
        {"tc", Destination::skip},
        {"txe", Destination::skip},
        {"rxe", Destination::skip},
        {"bkmkstart", Destination::skip},
        {"bkmkend", Destination::skip},
        {"filetbl", Destination::skip},
        {"private", Destination::skip},
        {"generator", Destination::skip},
        {"shpinst", Destination::shape},
        {"sn", Destination::shapeName},
        {"sv", Destination::shapeValue},
        {"shptxt", Destination::shapeText},
        {"shprslt", Destination::shapeResult},
        {"upr", Destination::upr},
    };
    return words;
}

// Groups that start with \* but whose content is ordinary text of the document.
bool isTransparentIgnorable(const QByteArray &word)
{
    return word == "shppict" || word == "fldrslt";
}

const std::map<QByteArray, char16_t> &characterWords()
{
    static const std::map<QByteArray, char16_t> words = {
        {"tab", u'\t'},           {"line", QChar::LineSeparator},
        {"emdash", u'\u2014'},    {"endash", u'\u2013'},
        {"emspace", u'\u2003'},   {"enspace", u'\u2002'},
        {"qmspace", u'\u2005'},   {"bullet", u'\u2022'},
        {"lquote", u'\u2018'},    {"rquote", u'\u2019'},
        {"ldblquote", u'\u201C'}, {"rdblquote", u'\u201D'},
        {"zwj", u'\u200D'},       {"zwnj", u'\u200C'},
        {"cell", u'\t'},
    };
    return words;
}

class Parser {
public:
    Parser(const QByteArray &input, PoemTextDocument &document, const RtfReader::Attachments &attachments)
        : m_data(reinterpret_cast<const uchar *>(input.constData())), m_size(input.size()), m_document(document),
          m_attachments(attachments), m_cursor(&document)
    {
    }

    void run()
    {
        m_document.clear();
        m_cursor = QTextCursor(&m_document);
        m_cursor.beginEditBlock();
        // Whatever follows the document's closing brace is not part of it.
        while (m_pos < m_size && !m_finished) {
            const uchar c = m_data[m_pos++];
            switch (c) {
            case '{':
                openGroup();
                break;
            case '}':
                closeGroup();
                break;
            case '\\':
                readControl();
                break;
            case '\r':
            case '\n':
                break;
            default:
                if (m_state.destination == Destination::picture && hexDigitValue(c) >= 0) {
                    --m_pos;
                    readHexRun();
                } else {
                    textByte(c);
                }
                break;
            }
        }
        flushText();
        if (m_paragraphJustOpened && m_document.blockCount() > 1) {
            // The last \par ended the last paragraph; it does not start an empty one.
            m_cursor.deletePreviousChar();
        } else {
            applyParagraph();
        }
        m_cursor.endEditBlock();
    }

private:
    // Groups -----------------------------------------------------------------------------

    void openGroup()
    {
        flushText();
        m_skipCount = 0;
        if (m_stack.size() >= RtfReader::maxGroupDepth || m_overflow > 0) {
            ++m_overflow;
            return;
        }
        m_stack.push_back(m_state);
    }

    void closeGroup()
    {
        flushText();
        m_skipCount = 0;
        if (m_overflow > 0) {
            --m_overflow;
            return;
        }
        const int level = int(m_stack.size());
        if (m_picture && m_picture->level == level)
            finishPicture();
        if (m_attachment && m_attachment->level == level)
            finishAttachment();
        if (m_shape && m_shape->level == level) {
            m_skipShapeResult = m_shape->yielded;
            m_shape.reset();
        }
        if (m_state.destination == Destination::fontTable)
            finishFont();
        if (m_stack.empty())
            return;
        m_state = m_stack.back();
        m_stack.pop_back();
        m_finished = m_stack.empty();
    }

    // Control words ----------------------------------------------------------------------

    void readControl()
    {
        if (m_pos >= m_size)
            return;
        const uchar c = m_data[m_pos];
        if (!isLetter(c)) {
            ++m_pos;
            controlSymbol(c);
            return;
        }
        const qsizetype start = m_pos;
        while (m_pos < m_size && isLetter(m_data[m_pos]))
            ++m_pos;
        const QByteArray word(reinterpret_cast<const char *>(m_data + start), qMin<qsizetype>(m_pos - start, 32));
        std::optional<int> parameter;
        bool negative = false;
        if (m_pos < m_size && m_data[m_pos] == '-' && m_pos + 1 < m_size && isDigit(m_data[m_pos + 1])) {
            negative = true;
            ++m_pos;
        }
        if (m_pos < m_size && isDigit(m_data[m_pos])) {
            qint64 value = 0;
            while (m_pos < m_size && isDigit(m_data[m_pos])) {
                value = qMin<qint64>(value * 10 + (m_data[m_pos] - '0'), 0x7FFFFFFF);
                ++m_pos;
            }
            parameter = int(negative ? -value : value);
        }
        if (m_pos < m_size && m_data[m_pos] == ' ')
            ++m_pos;
        const bool ignorable = m_ignorableNext;
        m_ignorableNext = false;
        controlWord(word, parameter, ignorable);
    }

    void controlSymbol(uchar c)
    {
        m_ignorableNext = false;
        switch (c) {
        case '\'': {
            if (m_pos + 1 < m_size) {
                const int high = hexDigitValue(m_data[m_pos]);
                const int low = hexDigitValue(m_data[m_pos + 1]);
                m_pos += 2;
                if (high >= 0 && low >= 0)
                    textByte(uchar(high * 16 + low));
            } else {
                m_pos = m_size;
            }
            return;
        }
        case '*':
            m_ignorableNext = true;
            return;
        case '\\':
        case '{':
        case '}':
            textByte(c);
            return;
        case '~':
            textCharacter(QChar::Nbsp);
            return;
        case '_':
            textCharacter(u'\u2011');
            return;
        case '-':
            textCharacter({});
            return;
        case '\r':
        case '\n':
            paragraph();
            return;
        default:
            return;
        }
    }

    void controlWord(const QByteArray &word, std::optional<int> parameter, bool ignorable)
    {
        if (word == "bin") {
            binary(parameter.value_or(0));
            return;
        }
        // Groups past the depth limit have no state of their own to change.
        if (m_overflow > 0)
            return;
        if (word == "u") {
            unicode(parameter.value_or(0));
            return;
        }
        if (m_state.destination == Destination::skip)
            return;
        if (m_state.destination == Destination::upr) {
            if (word == "ud")
                m_state.destination = Destination::text;
            return;
        }
        if (const auto found = destinationWords().find(word); found != destinationWords().end()) {
            beginDestination(found->second);
            return;
        }
        if (ignorable && !isTransparentIgnorable(word)) {
            flushText();
            m_state.destination = Destination::skip;
            return;
        }
        const int value = parameter.value_or(1);
        switch (m_state.destination) {
        case Destination::fontTable:
            fontTableWord(word, value);
            return;
        case Destination::colorTable:
            colorTableWord(word, value);
            return;
        case Destination::picture:
            pictureWord(word, parameter);
            return;
        case Destination::attachment:
            attachmentWord(word, value);
            return;
        case Destination::shape:
            shapeWord(word, parameter.value_or(0));
            return;
        case Destination::shapeName:
        case Destination::shapeValue:
        case Destination::upr:
        case Destination::skip:
            return;
        case Destination::text:
        case Destination::shapeText:
        case Destination::shapeResult:
            break;
        }
        textWord(word, parameter);
    }

    // One picture, attachment or shape is read at a time; a second one inside is skipped.
    template <typename Part> static bool openAt(std::optional<Part> &part, int level)
    {
        if (part)
            return false;
        part = Part{};
        part->level = level;
        return true;
    }

    void beginDestination(Destination destination)
    {
        flushText();
        const int level = int(m_stack.size());
        switch (destination) {
        case Destination::picture:
            if (m_pictureCount >= maxPictures || !openAt(m_picture, level)) {
                m_state.destination = Destination::skip;
                return;
            }
            break;
        case Destination::attachment:
            if (!openAt(m_attachment, level)) {
                m_state.destination = Destination::skip;
                return;
            }
            break;
        case Destination::shape:
            if (!openAt(m_shape, level)) {
                m_state.destination = Destination::skip;
                return;
            }
            m_skipShapeResult = false;
            break;
        case Destination::shapeText:
            if (m_shape)
                m_shape->yielded = true;
            m_state.destination = Destination::text;
            return;
        case Destination::shapeResult:
            // The fallback drawing of a shape already read would show it twice.
            m_state.destination = m_skipShapeResult ? Destination::skip : Destination::text;
            m_skipShapeResult = false;
            return;
        case Destination::shapeName:
        case Destination::shapeValue:
            if (!m_shape || m_state.destination == Destination::text) {
                m_state.destination = Destination::skip;
                return;
            }
            if (destination == Destination::shapeName) {
                m_shape->property.clear();
            } else if (m_shape->property != "pib") {
                m_state.destination = Destination::skip;
                return;
            }
            break;
        default:
            break;
        }
        m_state.destination = destination;
    }

    void textWord(const QByteArray &word, std::optional<int> parameter)
    {
        const int value = parameter.value_or(1);
        const bool on = value != 0;
        if (const auto found = characterWords().find(word); found != characterWords().end()) {
            textCharacter(QChar(found->second));
            return;
        }
        flushText();
        CharState &chars = m_state.chars;
        ParaState &para = m_state.para;
        if (word == "par" || word == "sect" || word == "page" || word == "row") {
            paragraph();
        } else if (word == "pard") {
            para = ParaState{};
        } else if (word == "plain") {
            chars = CharState{};
        } else if (word == "b") {
            chars.bold = on;
        } else if (word == "i") {
            chars.italic = on;
        } else if (word == "ul" || word == "ulw" || word == "uld" || word == "uldb" || word == "uldash" ||
                   word == "ulwave" || word == "ulth" || word == "uldashd" || word == "uldashdd" || word == "ulhwave" ||
                   word == "ulldash" || word == "ulthd" || word == "ulthdash") {
            chars.underline = on;
        } else if (word == "ulnone") {
            chars.underline = false;
        } else if (word == "strike" || word == "striked") {
            chars.strike = on;
        } else if (word == "v") {
            chars.hidden = on;
        } else if (word == "cf") {
            chars.color = qBound(0, value, maxColors);
        } else if (word == "f") {
            chars.font = qBound(0, value, 1 << 20);
        } else if (word == "fs") {
            chars.halfPoints = qBound(2, value, 2000);
        } else if (word == "ql") {
            para.alignment = Qt::AlignLeft;
        } else if (word == "qc") {
            para.alignment = Qt::AlignHCenter;
        } else if (word == "qr") {
            para.alignment = Qt::AlignRight;
        } else if (word == "qj") {
            para.alignment = Qt::AlignJustify;
        } else if (word == "sa") {
            para.spaceAfter = qBound(0, value, 20 * 1000);
        } else if (word == "sl") {
            para.lineSpacing = qBound(-20 * 1000, parameter.value_or(0), 20 * 1000);
        } else if (word == "slmult") {
            para.lineMultiple = on;
        } else if (word == "slleading") {
            para.leading = qBound(0, value, 20 * 1000);
        } else if (word == "uc") {
            m_state.unicodeSkip = qBound(0, value, 8);
        } else if (word == "deff") {
            m_defaultFont = qBound(0, value, 1 << 20);
        } else if (word == "ansicpg") {
            setDocumentCodePage(value);
        } else if (word == "mac") {
            setDocumentCodePage(10000);
        } else if (word == "pc") {
            setDocumentCodePage(437);
        } else if (word == "pca") {
            setDocumentCodePage(850);
        }
    }

    // Text -------------------------------------------------------------------------------

    void textByte(uchar c)
    {
        if (m_overflow > 0)
            return;
        if (m_skipCount > 0) {
            --m_skipCount;
            return;
        }
        switch (m_state.destination) {
        case Destination::text:
            if (m_overflow > 0 || m_state.chars.hidden)
                return;
            if (m_swallowAttachmentMark) {
                m_swallowAttachmentMark = false;
                if (c == 0xAC)
                    return;
            }
            m_pendingBytes.append(char(c));
            return;
        case Destination::fontTable:
            if (c == ';')
                finishFont();
            else if (m_fontName.size() < maxNameLength)
                m_fontName.bytes.append(char(c));
            return;
        case Destination::colorTable:
            if (c == ';')
                finishColor();
            return;
        case Destination::attachment:
            if (m_attachment && m_attachment->name.size() < maxNameLength)
                m_attachment->name.bytes.append(char(c));
            return;
        case Destination::shapeName:
            if (m_shape && m_shape->property.size() < 64)
                m_shape->property.append(char(c));
            return;
        case Destination::picture:
        case Destination::shape:
        case Destination::shapeValue:
        case Destination::shapeText:
        case Destination::shapeResult:
        case Destination::upr:
        case Destination::skip:
            return;
        }
    }

    // A character given by name or number; null stands for one that shows nothing.
    void textCharacter(QChar character)
    {
        if (m_skipCount > 0) {
            --m_skipCount;
            return;
        }
        if (m_state.destination != Destination::text || m_overflow > 0 || m_state.chars.hidden)
            return;
        if (m_swallowAttachmentMark) {
            m_swallowAttachmentMark = false;
            if (character.unicode() == 0xAC)
                return;
        }
        if (character.isNull())
            return;
        decodePendingBytes();
        m_pendingText.append(character);
    }

    void unicode(int value)
    {
        char16_t code = char16_t(value < 0 ? value + 65536 : value);
        m_skipCount = 0;
        switch (m_state.destination) {
        case Destination::fontTable:
            if (m_fontName.size() < maxNameLength)
                m_fontName.appendCharacter(QChar(code), codePage(namePage(m_fontCodePage)));
            break;
        case Destination::attachment:
            if (m_attachment && m_attachment->name.size() < maxNameLength)
                m_attachment->name.appendCharacter(QChar(code), codePage(m_documentCodePage));
            break;
        default:
            if (code == QChar::ParagraphSeparator) {
                paragraph();
                break;
            }
            // Word writes the Symbol font's characters into the private use area.
            if (code >= 0xF020 && code <= 0xF0FF && codePageForText() == RtfCodePage::symbol)
                code = RtfCodePage::symbolCharacter(uchar(code - 0xF000));
            textCharacter(QChar(code));
            break;
        }
        m_skipCount = m_state.unicodeSkip;
    }

    // Names are never written in the Symbol font's own encoding.
    int namePage(int page) const { return page > 0 && page != RtfCodePage::symbol ? page : m_documentCodePage; }

    void binary(int length)
    {
        const qsizetype count = qBound(qsizetype(0), qsizetype(length), m_size - m_pos);
        if (m_state.destination == Destination::picture && m_picture && m_overflow == 0)
            m_picture->append(reinterpret_cast<const char *>(m_data + m_pos), count);
        m_pos += count;
    }

    int codePageForText() const
    {
        const int font = m_state.chars.font >= 0 ? m_state.chars.font : m_defaultFont;
        if (const auto found = m_fonts.find(font); found != m_fonts.end() && found->second.codePage > 0)
            return found->second.codePage;
        return m_documentCodePage;
    }

    RtfCodePage &codePage(int number)
    {
        auto found = m_codePages.find(number);
        if (found == m_codePages.end())
            found = m_codePages.emplace(number, std::make_unique<RtfCodePage>(number)).first;
        return *found->second;
    }

    void setDocumentCodePage(int number)
    {
        if (number > 0 && number < 100000)
            m_documentCodePage = number;
    }

    void decodePendingBytes()
    {
        if (m_pendingBytes.isEmpty())
            return;
        m_pendingText.append(codePage(codePageForText()).decode(m_pendingBytes));
        m_pendingBytes.clear();
    }

    QTextCharFormat charFormat() const
    {
        const CharState &chars = m_state.chars;
        QTextCharFormat format;
        const int fontNumber = chars.font >= 0 ? chars.font : m_defaultFont;
        bool bold = chars.bold;
        bool italic = chars.italic;
        if (const auto found = m_fonts.find(fontNumber); found != m_fonts.end()) {
            if (!found->second.family.isEmpty())
                format.setFontFamilies({found->second.family});
            bold = bold || found->second.bold;
            italic = italic || found->second.italic;
        }
        format.setFontPointSize(chars.halfPoints / 2.0);
        if (bold)
            format.setFontWeight(QFont::Bold);
        if (italic)
            format.setFontItalic(true);
        if (chars.underline)
            format.setFontUnderline(true);
        if (chars.strike)
            format.setFontStrikeOut(true);
        if (chars.color > 0 && chars.color < m_colors.size() && m_colors.at(chars.color).isValid())
            format.setForeground(m_colors.at(chars.color));
        return format;
    }

    // Characters that would break the text model become nothing (controls, objects without
    // an image) or a replacement character (halves of a surrogate pair standing alone).
    static QString cleaned(const QString &text)
    {
        QString result;
        result.reserve(text.size());
        for (qsizetype i = 0; i < text.size(); ++i) {
            const QChar c = text.at(i);
            if (c.isHighSurrogate()) {
                if (i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
                    result.append(c);
                    result.append(text.at(++i));
                } else {
                    result.append(QChar::ReplacementCharacter);
                }
                continue;
            }
            if (c.isLowSurrogate()) {
                result.append(QChar::ReplacementCharacter);
                continue;
            }
            const char16_t u = c.unicode();
            if (u == QChar::ObjectReplacementCharacter || u == QChar::ParagraphSeparator || (u < 0x20 && u != '\t') ||
                u == 0x7F || u == 0xFFFE || u == 0xFFFF)
                continue;
            result.append(c);
        }
        return result;
    }

    void flushText()
    {
        decodePendingBytes();
        if (m_pendingText.isEmpty())
            return;
        const QString text = cleaned(m_pendingText);
        m_pendingText.clear();
        if (text.isEmpty())
            return;
        m_cursor.insertText(text, charFormat());
        m_paragraphJustOpened = false;
    }

    QTextBlockFormat blockFormat() const
    {
        const ParaState &para = m_state.para;
        QTextBlockFormat format;
        format.setAlignment(para.alignment);
        if (para.spaceAfter > 0)
            format.setBottomMargin(para.spaceAfter / 20.0);
        if (para.leading >= 0) {
            if (para.leading > 0)
                format.setLineHeight(para.leading / 20.0, QTextBlockFormat::LineDistanceHeight);
        } else if (para.lineSpacing > 0 && para.lineMultiple) {
            format.setLineHeight(para.lineSpacing / 2.4, QTextBlockFormat::ProportionalHeight);
        } else if (para.lineSpacing > 0) {
            format.setLineHeight(para.lineSpacing / 20.0, QTextBlockFormat::MinimumHeight);
        } else if (para.lineSpacing < 0) {
            format.setLineHeight(-para.lineSpacing / 20.0, QTextBlockFormat::FixedHeight);
        }
        return format;
    }

    void applyParagraph()
    {
        m_cursor.setBlockFormat(blockFormat());
        if (m_cursor.block().length() <= 1)
            m_cursor.setBlockCharFormat(charFormat());
    }

    void paragraph()
    {
        if (m_state.destination != Destination::text || m_overflow > 0)
            return;
        flushText();
        applyParagraph();
        m_cursor.insertBlock();
        m_paragraphJustOpened = true;
    }

    // Tables -----------------------------------------------------------------------------

    void fontTableWord(const QByteArray &word, int value)
    {
        if (word == "f") {
            finishFont();
            m_fontNumber = qBound(0, value, 1 << 20);
        } else if (word == "fcharset") {
            m_fontCodePage = RtfCodePage::forCharset(value);
        } else if (word == "cpg") {
            m_fontCodePage = value;
        }
    }

    void finishFont()
    {
        if (m_fontNumber >= 0 && m_fontName.size() > 0 && m_fonts.size() < size_t(maxFonts)) {
            FontEntry font = fontFromName(m_fontName.decoded(codePage(namePage(m_fontCodePage))), m_fontCodePage);
            // Its characters become Unicode on reading; the font itself would only garble them.
            if (m_fontCodePage == RtfCodePage::symbol)
                font.family.clear();
            m_fonts[m_fontNumber] = font;
        }
        m_fontName.clear();
        m_fontNumber = -1;
        m_fontCodePage = 0;
    }

    void colorTableWord(const QByteArray &word, int value)
    {
        const int component = qBound(0, value, 255);
        if (word == "red") {
            m_colorRed = component;
        } else if (word == "green") {
            m_colorGreen = component;
        } else if (word == "blue") {
            m_colorBlue = component;
        } else {
            return;
        }
        m_colorGiven = true;
    }

    void finishColor()
    {
        if (m_colors.size() < maxColors)
            m_colors.append(m_colorGiven ? QColor(m_colorRed, m_colorGreen, m_colorBlue) : QColor());
        m_colorGiven = false;
        m_colorRed = m_colorGreen = m_colorBlue = 0;
    }

    // Pictures ---------------------------------------------------------------------------

    void pictureWord(const QByteArray &word, std::optional<int> parameter)
    {
        if (!m_picture)
            return;
        const int value = parameter.value_or(0);
        static const std::map<QByteArray, PictureFormat> kinds = {
            {"pngblip", PictureFormat::png},     {"jpegblip", PictureFormat::jpeg},
            {"emfblip", PictureFormat::emf},     {"wmetafile", PictureFormat::wmf},
            {"dibitmap", PictureFormat::dib},    {"wbitmap", PictureFormat::unknown},
            {"macpict", PictureFormat::unknown}, {"pmmetafile", PictureFormat::unknown},
        };
        if (const auto kind = kinds.find(word); kind != kinds.end()) {
            m_picture->declared = kind->second;
            // Kept as declared, so a picture the program cannot draw goes back out the same.
            m_picture->keyword = parameter ? word + QByteArray::number(*parameter) : word;
        } else if (word == "picw")
            m_picture->pixelWidth = qBound(0, value, 1 << 24);
        else if (word == "pich")
            m_picture->pixelHeight = qBound(0, value, 1 << 24);
        else if (word == "picwgoal")
            m_picture->goalWidth = qBound(0, value, 1 << 24);
        else if (word == "pichgoal")
            m_picture->goalHeight = qBound(0, value, 1 << 24);
        else if (word == "picscalex")
            m_picture->scaleX = qBound(1, value, 10000);
        else if (word == "picscaley")
            m_picture->scaleY = qBound(1, value, 10000);
    }

    // Picture data is most of a document with images: decode it a pair of digits at a time
    // into a buffer that grows geometrically, in one pass.
    void readHexRun()
    {
        const auto &table = hexPairTable();
        Picture *picture = m_picture && m_overflow == 0 ? &*m_picture : nullptr;
        while (m_pos < m_size) {
            const uchar c = m_data[m_pos];
            if (c == '\n' || c == '\r' || c == ' ' || c == '\t') {
                ++m_pos;
                continue;
            }
            if (m_pos + 1 < m_size && (!picture || picture->highNibble < 0)) {
                const qint16 pair = table[size_t(c | (m_data[m_pos + 1] << 8))];
                if (pair >= 0) {
                    if (picture)
                        picture->append(char(pair));
                    m_pos += 2;
                    continue;
                }
            }
            const int nibble = hexDigitValue(c);
            if (nibble < 0)
                return;
            ++m_pos;
            if (!picture)
                continue;
            if (picture->highNibble < 0) {
                picture->highNibble = nibble;
            } else {
                picture->append(char(picture->highNibble * 16 + nibble));
                picture->highNibble = -1;
            }
        }
    }

    // A picture group belongs to the text around it, one level up. Pictures the program
    // cannot draw are kept all the same, at the size they were placed at.
    void insertPicture(StoredPicture picture, QSizeF shown)
    {
        const Destination around = m_stack.empty() ? Destination::text : m_stack.back().destination;
        if (around == Destination::skip || around == Destination::upr)
            return;
        if (!(shown.width() > 0) || !(shown.height() > 0))
            shown = picture.naturalSize;
        if (!(shown.width() > 0) || !(shown.height() > 0))
            shown = QSizeF(placeholderWidth, placeholderHeight);
        if (!(picture.naturalSize.width() > 0) || !(picture.naturalSize.height() > 0))
            picture.naturalSize = shown;
        QTextImageFormat format;
        format.setName(m_document.addPicture(std::move(picture)));
        format.setWidth(qBound(1.0, shown.width(), maxDisplaySide));
        format.setHeight(qBound(1.0, shown.height(), maxDisplaySide));
        ++m_pictureCount;
        if (m_shape)
            m_shape->yielded = true;
        m_cursor.insertImage(format);
        m_paragraphJustOpened = false;
    }

    // The size a \pict group places its picture at, in points; empty when it names none.
    QSizeF shownSize(const Picture &picture, std::optional<QSize> pixels) const
    {
        if (picture.goalWidth > 0) {
            const double width = picture.goalWidth / 20.0 * picture.scaleX / 100.0;
            if (picture.goalHeight > 0)
                return QSizeF(width, picture.goalHeight / 20.0 * picture.scaleY / 100.0);
            if (pixels)
                return QSizeF(width, width * pixels->height() / pixels->width());
        }
        if (m_shape && m_shape->right > m_shape->left && m_shape->bottom > m_shape->top)
            return QSizeF((m_shape->right - m_shape->left) / 20.0, (m_shape->bottom - m_shape->top) / 20.0);
        if (pixels)
            return QSizeF(pixels->width() * picture.scaleX / 100.0, pixels->height() * picture.scaleY / 100.0);
        // Metafiles give their extent in hundredths of a millimetre.
        const bool metafile = picture.declared == PictureFormat::wmf || picture.declared == PictureFormat::emf;
        const double unit = metafile ? 72.0 / 2540.0 : 1.0;
        return QSizeF(picture.pixelWidth * unit * picture.scaleX / 100.0,
                      picture.pixelHeight * unit * picture.scaleY / 100.0);
    }

    void finishPicture()
    {
        Picture read = std::move(*m_picture);
        m_picture.reset();
        read.bytes.truncate(read.length);
        if (read.bytes.isEmpty())
            return;
        StoredPicture picture;
        // The bytes say what they are; some writers declare a JPEG as \pngblip.
        const PictureFormat sniffed = PictureFormats::sniff(read.bytes);
        picture.format = sniffed != PictureFormat::unknown ? sniffed : read.declared;
        const auto pixels = PictureFormats::pixelSize(read.bytes, picture.format);
        const QSizeF shown = shownSize(read, pixels);
        if (pixels)
            picture.naturalSize = QSizeF(*pixels);
        if (read.declared == picture.format || picture.format == PictureFormat::unknown)
            picture.pictKeyword = read.keyword;
        picture.pictExtent = QSize(read.pixelWidth, read.pixelHeight);
        picture.bytes = std::move(read.bytes);
        insertPicture(std::move(picture), shown);
    }

    void shapeWord(const QByteArray &word, int value)
    {
        if (!m_shape)
            return;
        const int coordinate = qBound(-(1 << 24), value, 1 << 24);
        if (word == "shpleft")
            m_shape->left = coordinate;
        else if (word == "shptop")
            m_shape->top = coordinate;
        else if (word == "shpright")
            m_shape->right = coordinate;
        else if (word == "shpbottom")
            m_shape->bottom = coordinate;
    }

    // Attachments of an RTFD container ---------------------------------------------------

    void attachmentWord(const QByteArray &word, int value)
    {
        if (!m_attachment)
            return;
        if (word == "width")
            m_attachment->width = qBound(0, value, 1 << 24);
        else if (word == "height")
            m_attachment->height = qBound(0, value, 1 << 24);
    }

    void finishAttachment()
    {
        Attachment attachment = std::move(*m_attachment);
        m_attachment.reset();
        m_swallowAttachmentMark = true;
        const QString name = attachment.name.decoded(codePage(m_documentCodePage)).trimmed();
        const auto found = m_attachments.constFind(name);
        if (found == m_attachments.constEnd() || found->isEmpty() || m_pictureCount >= maxPictures)
            return;
        StoredPicture picture;
        picture.bytes = *found;
        picture.format = PictureFormats::sniff(*found);
        picture.fileName = name;
        if (const auto pixels = PictureFormats::pixelSize(*found, picture.format))
            picture.naturalSize = QSizeF(*pixels);
        insertPicture(std::move(picture), QSizeF(attachment.width / 20.0, attachment.height / 20.0));
    }

    const uchar *m_data;
    qsizetype m_size;
    qsizetype m_pos = 0;
    PoemTextDocument &m_document;
    const RtfReader::Attachments &m_attachments;
    QTextCursor m_cursor;

    GroupState m_state;
    std::vector<GroupState> m_stack;
    int m_overflow = 0;
    bool m_ignorableNext = false;
    int m_skipCount = 0;
    bool m_swallowAttachmentMark = false;
    bool m_paragraphJustOpened = false;
    bool m_finished = false;
    bool m_skipShapeResult = false;

    int m_documentCodePage = 1252;
    int m_defaultFont = 0;
    std::map<int, std::unique_ptr<RtfCodePage>> m_codePages;
    QByteArray m_pendingBytes;
    QString m_pendingText;

    std::map<int, FontEntry> m_fonts;
    int m_fontNumber = -1;
    int m_fontCodePage = 0;
    MixedText m_fontName;

    QList<QColor> m_colors;
    bool m_colorGiven = false;
    int m_colorRed = 0;
    int m_colorGreen = 0;
    int m_colorBlue = 0;

    std::optional<Picture> m_picture;
    std::optional<Attachment> m_attachment;
    std::optional<Shape> m_shape;
    int m_pictureCount = 0;
};

} // namespace

bool RtfReader::looksLikeRtf(const QByteArray &bytes)
{
    qsizetype start = 0;
    if (bytes.startsWith("\xEF\xBB\xBF"))
        start = 3;
    while (start < bytes.size() && start < 64 && QChar::isSpace(uchar(bytes.at(start))))
        ++start;
    return bytes.mid(start, 5) == "{\\rtf";
}

bool RtfReader::read(const QByteArray &rtf, PoemTextDocument &document, const Attachments &attachments)
{
    if (rtf.size() > maxInputSize || !looksLikeRtf(rtf))
        return false;
    Parser(rtf, document, attachments).run();
    return true;
}
