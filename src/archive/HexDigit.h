#pragma once

// The value of one hexadecimal digit, or -1 for any other character. Shared by the
// readers of the program's text formats (JSON escapes, RTF hex bytes).
constexpr int hexDigitValue(int c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}
