// Typed values of settings: integers, booleans and date-times as their text.
#include "shell/IniValues.h"

#include <charconv>

namespace zv {

namespace {

bool IsBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}

std::u16string_view TrimBlanks(std::u16string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

// Copies ASCII text to a small buffer so from_chars can read it; false if non-ASCII or long.
bool ToAscii(std::u16string_view text, char (&buffer)[40], size_t& length) {
    if (text.size() >= sizeof buffer)
        return false;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] >= 0x80)
            return false;
        buffer[i] = static_cast<char>(text[i]);
    }
    length = text.size();
    return true;
}

template <class T> bool ParseWhole(const char* first, const char* last, T& value, int base) {
    auto [end, error] = std::from_chars(first, last, value, base);
    return error == std::errc() && end == last && first != last;
}

// Reads exactly `digits` decimal digits at text[pos], advancing pos.
bool ReadDigits(std::u16string_view text, size_t& pos, size_t digits, int& value) {
    if (pos + digits > text.size())
        return false;
    value = 0;
    for (size_t i = 0; i < digits; ++i) {
        const char16_t c = text[pos + i];
        if (c < u'0' || c > u'9')
            return false;
        value = value * 10 + (c - u'0');
    }
    pos += digits;
    return true;
}

bool Expect(std::u16string_view text, size_t& pos, char16_t c) {
    if (pos < text.size() && text[pos] == c) {
        ++pos;
        return true;
    }
    return false;
}

// The zone part after the time: "" (UTC), "Z", or "+hh:mm"/"-hh:mm"; minutes east of UTC.
bool ReadZone(std::u16string_view text, size_t& pos, int& offsetMinutes) {
    offsetMinutes = 0;
    if (pos == text.size() || Expect(text, pos, u'Z'))
        return true;
    const char16_t sign = text[pos];
    if (sign != u'+' && sign != u'-')
        return false;
    ++pos;
    int hours = 0, minutes = 0;
    if (!ReadDigits(text, pos, 2, hours))
        return false;
    Expect(text, pos, u':');
    if (!ReadDigits(text, pos, 2, minutes) || hours > 23 || minutes > 59)
        return false;
    offsetMinutes = (sign == u'-' ? -1 : 1) * (hours * 60 + minutes);
    return true;
}

struct TClock {
    int Hour = 0, Minute = 0, Second = 0, Milli = 0;
};

bool ReadClock(std::u16string_view text, size_t& pos, TClock& clock) {
    if (!ReadDigits(text, pos, 2, clock.Hour) || !Expect(text, pos, u':') ||
        !ReadDigits(text, pos, 2, clock.Minute))
        return false;
    if (Expect(text, pos, u':') && !ReadDigits(text, pos, 2, clock.Second))
        return false;
    if (Expect(text, pos, u'.')) {
        int digits = 0, value = 0;
        while (pos < text.size() && text[pos] >= u'0' && text[pos] <= u'9') {
            if (digits < 3)
                value = value * 10 + (text[pos] - u'0');
            ++digits;
            ++pos;
        }
        if (digits == 0)
            return false;
        for (; digits < 3; ++digits)
            value *= 10;
        clock.Milli = value;
    }
    return clock.Hour < 24 && clock.Minute < 60 && clock.Second < 60;
}

void AppendPadded(std::u16string& out, int value, int width) {
    char buffer[16];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    for (int pad = width - static_cast<int>(end - buffer); pad > 0; --pad)
        out.push_back(u'0');
    for (const char* p = buffer; p != end; ++p)
        out.push_back(static_cast<char16_t>(*p));
}

} // namespace

std::optional<int32_t> ParseIniInteger(std::u16string_view text) {
    char buffer[40];
    size_t length = 0;
    if (!ToAscii(TrimBlanks(text), buffer, length))
        return std::nullopt;
    const std::string_view ascii(buffer, length);
    size_t hexStart = 0;
    if (ascii.starts_with('$'))
        hexStart = 1;
    else if (ascii.starts_with("0x") || ascii.starts_with("0X"))
        hexStart = 2;
    if (hexStart != 0) {
        uint32_t pattern = 0;
        if (length - hexStart > 8 || !ParseWhole(buffer + hexStart, buffer + length, pattern, 16))
            return std::nullopt;
        return static_cast<int32_t>(pattern);
    }
    const size_t skipPlus = ascii.starts_with('+') ? 1 : 0;
    if (skipPlus && ascii.substr(1).starts_with('-'))
        return std::nullopt;
    int32_t value = 0;
    if (!ParseWhole(buffer + skipPlus, buffer + length, value, 10))
        return std::nullopt;
    return value;
}

std::u16string FormatIniInteger(int32_t value) {
    char buffer[16];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::u16string(buffer, end);
}

std::optional<bool> ParseIniBool(std::u16string_view text) {
    if (text.empty())
        return std::nullopt;
    return TrimBlanks(text) != u"0";
}

std::optional<TDateTime> ParseIniDateTime(std::u16string_view text) {
    using namespace std::chrono;
    text = TrimBlanks(text);
    size_t pos = 0;
    int y = 0, m = 0, d = 0, offset = 0;
    if (!ReadDigits(text, pos, 4, y) || !Expect(text, pos, u'-') || !ReadDigits(text, pos, 2, m) ||
        !Expect(text, pos, u'-') || !ReadDigits(text, pos, 2, d))
        return std::nullopt;
    const year_month_day date{year(y), month(static_cast<unsigned>(m)),
                              day(static_cast<unsigned>(d))};
    if (!date.ok())
        return std::nullopt;
    TClock clock;
    if ((Expect(text, pos, u'T') || Expect(text, pos, u' ')) && !ReadClock(text, pos, clock))
        return std::nullopt;
    if (!ReadZone(text, pos, offset) || pos != text.size())
        return std::nullopt;
    return TDateTime(sys_days(date)) + hours(clock.Hour) + minutes(clock.Minute - offset) +
           seconds(clock.Second) + milliseconds(clock.Milli);
}

std::u16string FormatIniDateTime(TDateTime value) {
    using namespace std::chrono;
    const auto day = floor<days>(value);
    const year_month_day date(day);
    const hh_mm_ss<milliseconds> clock(value - day);
    std::u16string out;
    AppendPadded(out, static_cast<int>(date.year()), 4);
    out.push_back(u'-');
    AppendPadded(out, static_cast<int>(static_cast<unsigned>(date.month())), 2);
    out.push_back(u'-');
    AppendPadded(out, static_cast<int>(static_cast<unsigned>(date.day())), 2);
    out.push_back(u'T');
    AppendPadded(out, static_cast<int>(clock.hours().count()), 2);
    out.push_back(u':');
    AppendPadded(out, static_cast<int>(clock.minutes().count()), 2);
    out.push_back(u':');
    AppendPadded(out, static_cast<int>(clock.seconds().count()), 2);
    if (clock.subseconds().count() != 0) {
        out.push_back(u'.');
        AppendPadded(out, static_cast<int>(clock.subseconds().count()), 3);
    }
    out.push_back(u'Z');
    return out;
}

} // namespace zv
