#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

// Turns the 8-bit text of an RTF file (literal bytes and \'xx) into Unicode for a Windows
// or Mac code page number, as \ansicpg, \fcharset and \cpg name them.
class RtfCodePage {
public:
    explicit RtfCodePage(int codePage);
    ~RtfCodePage();
    RtfCodePage(const RtfCodePage &) = delete;
    RtfCodePage &operator=(const RtfCodePage &) = delete;

    // What \fcharset2 names: the Symbol font's own encoding (Greek letters, arrows, maths).
    static constexpr int symbol = 42;

    int number() const { return m_number; }
    QString decode(const QByteArray &bytes);

    // The code page an \fcharset value stands for; 0 when the document's own applies.
    static int forCharset(int charset);
    // The Unicode character a byte of the Symbol font stands for; null when none.
    static char16_t symbolCharacter(uchar byte);

private:
    struct Converter;
    int m_number;
    std::unique_ptr<Converter> m_converter;
};
