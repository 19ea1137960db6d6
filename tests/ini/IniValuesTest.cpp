// Typed values: every integer and time point survives its text form, and text that is not
// a value of the type gives nothing rather than a wrong value.
#include "shell/IniValues.h"
#include "shell/ZvIniFiles.h"

#include <gtest/gtest.h>

#include <random>

namespace zv {
namespace {

TEST(IniValues, EveryIntegerSurvivesItsText) {
    std::mt19937 random(7);
    std::vector<int32_t> values = {0, -1, 1, INT32_MIN, INT32_MAX, -16777201, 0x1FFFFFFF};
    for (int i = 0; i < 2000; ++i)
        values.push_back(static_cast<int32_t>(random()));
    for (int32_t value : values)
        ASSERT_EQ(ParseIniInteger(FormatIniInteger(value)), value);
}

TEST(IniValues, IntegerFormsAcceptedAndRefused) {
    EXPECT_EQ(ParseIniInteger(u"  42\t"), 42);
    EXPECT_EQ(ParseIniInteger(u"+7"), 7);
    EXPECT_EQ(ParseIniInteger(u"0xffffffff"), -1);
    EXPECT_EQ(ParseIniInteger(u"$1FFFFFFF"), 0x1FFFFFFF);
    for (const char16_t* bad : {u"", u" ", u"+-5", u"0x", u"$123456789", u"2147483648",
                                u"-2147483649", u"1 2", u"12abc", u"４２", u"1e3"})
        EXPECT_EQ(ParseIniInteger(bad), std::nullopt) << std::u16string_view(bad).size();
}

TEST(IniValues, EveryTimePointSurvivesItsText) {
    using namespace std::chrono;
    std::mt19937_64 random(11);
    const auto first = sys_days(year(1601) / 1 / 1), last = sys_days(year(9999) / 12 / 31);
    const auto span = duration_cast<milliseconds>(last - first).count();
    for (int i = 0; i < 2000; ++i) {
        const TDateTime value = TDateTime(first) + milliseconds(random() % span);
        ASSERT_EQ(ParseIniDateTime(FormatIniDateTime(value)), value);
    }
}

TEST(IniValues, DateTimeFormsAcceptedAndRefused) {
    using namespace std::chrono;
    const TDateTime noon = TDateTime(sys_days(year(2024) / 2 / 29)) + hours(12);
    EXPECT_EQ(ParseIniDateTime(u"2024-02-29T12:00Z"), noon);
    EXPECT_EQ(ParseIniDateTime(u"2024-02-29 14:30:00+02:30"), noon);
    EXPECT_EQ(ParseIniDateTime(u"2024-02-29T07:00:00.000-0500"), noon);
    EXPECT_EQ(ParseIniDateTime(u"2024-02-29"), noon - hours(12));
    for (const char16_t* bad :
         {u"2023-02-29", u"2024-13-01", u"2024-02-29T24:00", u"2024-2-9", u"2024-02-29T12:00+25:00",
          u"2024-02-29T12:00Zjunk", u"29.02.2024", u"2024-02-29T12:00:00."})
        EXPECT_EQ(ParseIniDateTime(bad), std::nullopt);
}

} // namespace
} // namespace zv
