// Grapheme-cluster boundaries and the complex-script test through ICU.
#include "platform/TextBreaks.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

namespace zv {
namespace {

bool IsSimpleUnit(char16_t c) {
    return c < 0x0300; // no combining marks, no surrogates, no complex scripts below
}

class TIcuTextBreaks : public ITextBreaks {
public:
    TIcuTextBreaks() {
        UErrorCode status = U_ZERO_ERROR;
        FIter.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status))
            FIter.reset();
    }
    ~TIcuTextBreaks() override { utext_close(&FText); }

    int NextCluster(std::u16string_view row, int pos) override {
        const int size = static_cast<int>(row.size());
        if (pos >= size)
            return pos + 1;
        if (pos < 0)
            return 0;
        // Fast path: a plain unit followed by a plain unit is a cluster of its own.
        if (IsSimpleUnit(row[pos]) && (pos + 1 == size || IsSimpleUnit(row[pos + 1])) &&
            row[pos] != u'\r')
            return pos + 1;
        if (!Target(row))
            return pos + 1;
        const int next = FIter->following(pos);
        return next == icu::BreakIterator::DONE ? size : next;
    }

    int PrevCluster(std::u16string_view row, int pos) override {
        const int size = static_cast<int>(row.size());
        if (pos > size)
            return pos - 1;
        if (pos <= 0)
            return 0;
        if (IsSimpleUnit(row[pos - 1]) && (pos == size || IsSimpleUnit(row[pos])) &&
            (pos < 2 || IsSimpleUnit(row[pos - 2])))
            return pos - 1;
        if (!Target(row))
            return pos - 1;
        const int prev = FIter->preceding(pos);
        return prev == icu::BreakIterator::DONE ? 0 : prev;
    }

    bool IsComplex(std::u16string_view row) override {
        for (char16_t c : row) {
            if (c < 0x0590)
                continue;
            const auto dir = u_charDirection(c);
            if (dir == U_RIGHT_TO_LEFT || dir == U_RIGHT_TO_LEFT_ARABIC || U16_IS_SURROGATE(c) ||
                u_getCombiningClass(c) != 0 || (c >= 0x0900 && c < 0x1100))
                return true;
        }
        return false;
    }

private:
    // Points the iterator at `row` without copying it.
    bool Target(std::u16string_view row) {
        if (!FIter)
            return false;
        UErrorCode status = U_ZERO_ERROR;
        utext_openUChars(&FText, reinterpret_cast<const UChar*>(row.data()),
                         static_cast<int64_t>(row.size()), &status);
        if (U_FAILURE(status))
            return false;
        FIter->setText(&FText, status);
        return U_SUCCESS(status);
    }

    std::unique_ptr<icu::BreakIterator> FIter; // null when ICU lacks the rules
    UText FText = UTEXT_INITIALIZER;
};

} // namespace

std::unique_ptr<ITextBreaks> CreateIcuTextBreaks() {
    return std::make_unique<TIcuTextBreaks>();
}

} // namespace zv
