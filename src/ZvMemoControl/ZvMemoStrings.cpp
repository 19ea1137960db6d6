// The row array of TZvMemoStrings: growth, the gap and its moves, plain row operations,
// attributes.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace zv {

std::uint64_t TZvMemoStrings::NextStoreId() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

TZvMemoStrings::TZvMemoStrings() : FCodePage(SystemCodePage()) {
    SetCapacity(64);
}

TZvMemoStrings::~TZvMemoStrings() {
    for (std::size_t i = 0; i < FCount; ++i)
        FList[Slot(i)].~TRowItem();
    ReleaseList();
}

// ---- Array ------------------------------------------------------------------------------

static_assert(sizeof(TRowText) == 16 && sizeof(TAttribute) == 16, "rows stay 32 bytes");

// Items are relocated with raw moves: a row text handle and an attribute hold only pointers
// to the heap, never into themselves. A large array is its own memory mapping, so growing
// it remaps pages instead of copying them; the gap goes to the end first, where new slots
// join it.
void TZvMemoStrings::SetCapacity(std::size_t capacity) {
    capacity = std::max(capacity, FCount);
    if (capacity == FCapacity)
        return;
    MoveGap(FCount);
    constexpr std::size_t kMapAbove = std::size_t(1) << 20;
    constexpr std::size_t kPage = std::size_t(2) << 20;
    const std::size_t wanted = std::max<std::size_t>(capacity, 1) * sizeof(TRowItem);
    void* mem;
    if (wanted < kMapAbove) {
        mem = std::malloc(wanted);
        if (!mem)
            throw std::bad_alloc();
        if (FCount) // FList is null before the first rows
            std::memcpy(mem, static_cast<void*>(FList), FCount * sizeof(TRowItem));
        ReleaseList();
        FListBytes = 0;
    } else {
        const std::size_t bytes = (wanted + kPage - 1) / kPage * kPage;
        if (FListBytes) {
            mem = ::mremap(FList, FListBytes, bytes, MREMAP_MAYMOVE);
        } else {
            mem =
                ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
            if (mem != MAP_FAILED) {
                if (FCount)
                    std::memcpy(mem, static_cast<void*>(FList), FCount * sizeof(TRowItem));
                ReleaseList();
            }
        }
        if (mem == MAP_FAILED)
            throw std::bad_alloc();
#ifdef MADV_HUGEPAGE
        ::madvise(mem, bytes, MADV_HUGEPAGE);
#endif
        FListBytes = bytes;
        capacity = bytes / sizeof(TRowItem);
    }
    FList = static_cast<TRowItem*>(mem);
    FCapacity = capacity;
}

void TZvMemoStrings::ReleaseList() {
    if (FListBytes)
        ::munmap(FList, FListBytes);
    else
        std::free(FList);
    FList = nullptr;
}

void TZvMemoStrings::Grow(std::size_t needed) {
    if (needed <= FCapacity)
        return;
    SetCapacity(std::max(needed, FCapacity + FCapacity / 2 + 16));
}

void TZvMemoStrings::MoveGap(std::size_t row) {
    const std::size_t gap = FCapacity - FCount;
    if (gap > 0 && row < FGapStart)
        std::memmove(static_cast<void*>(FList + row + gap), static_cast<void*>(FList + row),
                     (FGapStart - row) * sizeof(TRowItem));
    else if (gap > 0 && row > FGapStart)
        std::memmove(static_cast<void*>(FList + FGapStart),
                     static_cast<void*>(FList + FGapStart + gap),
                     (row - FGapStart) * sizeof(TRowItem));
    FGapStart = row;
}

void TZvMemoStrings::OpenGap(std::size_t row, std::size_t n) {
    ++FRevision;
    PendRowsReplaced(row, 0, n);
    Grow(FCount + n);
    MoveGap(row);
    for (std::size_t i = 0; i < n; ++i)
        new (FList + row + i) TRowItem();
    FGapStart += n;
    FCount += n;
}

void TZvMemoStrings::CloseGap(std::size_t row, std::size_t n) {
    ++FRevision;
    PendRowsReplaced(row, n, 0);
    MoveGap(row + n);
    for (std::size_t i = 0; i < n; ++i)
        FList[row + i].~TRowItem();
    FGapStart = row;
    FCount -= n;
}

TZvMemoStrings::TRowItem& TZvMemoStrings::AppendItem() {
    ++FRevision;
    if (FCount >= FAppendsPendUntil) // else the new row joins the pending rows at the end
        PendRowsReplaced(FCount, 0, 1);
    Grow(FCount + 1);
    MoveGap(FCount);
    TRowItem* item = new (FList + FCount) TRowItem();
    FGapStart = ++FCount;
    return *item;
}

// The change joins the pending stretch when it lies within reach of it; a stretch that
// grew long, or a change far from it, has the stretch read in first. Row 0 weighs no line
// end and always begins a line, so the row that becomes row 0 or stops being row 0 is
// pending too. A stretch that reaches the last row is left open at the end, so that rows
// appended behind it join it at no cost.
void TZvMemoStrings::PendRowsReplaced(std::size_t row, std::size_t removed, std::size_t added) {
    SettlePendingEnd();
    if (FPendingFirst != kNothingPending &&
        (FPendingEnd - FPendingFirst > kPendingReach || row > FPendingEnd + kPendingGap ||
         row + removed + kPendingGap < FPendingFirst))
        RefreshIndex();
    if (FPendingFirst == kNothingPending) {
        FPendingFirst = row;
        FPendingEnd = FPendingIndexEnd = row + removed;
    } else {
        FPendingFirst = std::min(FPendingFirst, row);
        if (row + removed > FPendingEnd) {
            FPendingIndexEnd += row + removed - FPendingEnd;
            FPendingEnd = row + removed;
        }
    }
    FPendingEnd = FPendingEnd - removed + added;
    const std::size_t countAfter = FCount - removed + added;
    const std::size_t firstOld = std::min(added + 1, countAfter); // rows up to the old row 0
    if (row == 0 && FPendingEnd < firstOld) {
        FPendingIndexEnd += firstOld - FPendingEnd;
        FPendingEnd = firstOld;
    }
    if (FPendingEnd == countAfter) {
        FPendingEnd = kToTheEnd;
        FAppendsPendUntil = FPendingFirst + kPendingReach;
    }
}

void TZvMemoStrings::SettlePendingEnd() const {
    if (FPendingEnd != kToTheEnd)
        return;
    FAppendsPendUntil = 0;
    FPendingEnd = FCount;
    FPendingIndexEnd = FIndex.Rows();
}

void TZvMemoStrings::RefreshIndex() const {
    SettlePendingEnd();
    if (FIndexBinary != Memo().FBinaryMode) { // every line end changes its weight
        FIndexBinary = Memo().FBinaryMode;
        FIndex.Clear();
        FPendingFirst = 0;
        FPendingEnd = FCount;
        FPendingIndexEnd = 0;
    }
    if (FPendingFirst == kNothingPending)
        return;
    // A row weighs its units and the line end before it (none in binary mode, none before
    // a Wrapped row); it begins a real line unless it is Wrapped or a filler. Row 0 is
    // weighed so afterwards: no line end before it, and it always begins a line. The row
    // array's layout is copied: the index's byte writes would make the compiler read it
    // again for every row.
    const std::uint32_t lineEnd = FIndexBinary ? 0 : 2;
    const TRowItem* list = FList;
    const std::size_t gapStart = FGapStart, gap = FCapacity - FCount;
    const auto weigh = [=](std::size_t row, std::uint32_t& width, std::uint8_t& start) {
        const TRowItem& item = list[row < gapStart ? row : row + gap];
        const bool wrapped = item.FObject.Wrapped();
        width = item.FString.Length() + (wrapped ? 0 : lineEnd);
        start = !wrapped && item.FObject.Enabled() ? 1 : 0;
    };
    const std::size_t first = FPendingFirst;
    const std::size_t rows = FPendingEnd - first;
    const std::size_t indexRows = FPendingIndexEnd - first;
    if (FPendingEnd == FCount) { // the stretch runs to the end: its rows are appended
        FIndex.Erase(first, indexRows);
        FIndex.Append(rows, weigh);
    } else {
        if (rows > indexRows)
            FIndex.Insert(first, rows - indexRows);
        else
            FIndex.Erase(first, indexRows - rows);
        FIndex.Rewrite(first, rows, weigh);
    }
    if (first == 0 && rows > 0)
        FIndex.Rewrite(0, 1, [=](std::size_t, std::uint32_t& width, std::uint8_t& start) {
            width = list[0 < gapStart ? 0 : gap].FString.Length();
            start = 1;
        });
    FPendingFirst = kNothingPending;
    FPendingEnd = FPendingIndexEnd = FAppendsPendUntil = 0;
}

// ---- Helpers ----------------------------------------------------------------------------

std::uint32_t TZvMemoStrings::LineEndBitsFor(TSysTextType kind) const {
    switch (kind) {
    case sttUnix:
    case sttMixedUnix:
        return 2; // LF only
    case sttMac:
    case sttMixedMac:
        return 1; // CR only
    default:
        return 3;
    }
}

TAttribute TZvMemoStrings::NewAttribute() const {
    TAttribute a;
    const std::uint32_t bits = LineEndBitsFor(FSysTextType);
    a.ResetForStore(bits & 1, bits & 2);
    return a;
}

TAttribute TZvMemoStrings::CreateAttribute() const {
    return NewAttribute();
}

std::u16string TZvMemoStrings::Expanded(std::u16string_view s) const {
    std::u16string text(s);
    if (!Memo().FPreserveTab && !Memo().FBinaryMode)
        WConvertTabToSpace(text, Memo().FTabSize, u' ');
    return text;
}

void TZvMemoStrings::RecountVisible() {
    int visible = 0;
    for (std::size_t i = 0; i < FCount; ++i)
        visible += ReadItem(i)->FObject.Hidden() ? 0 : 1;
    FVisibleCount = visible;
}

// ---- Reading rows -----------------------------------------------------------------------

std::u16string_view TZvMemoStrings::Get(int row) const {
    return InRange(row) ? Item(row)->FString.View() : std::u16string_view();
}

TRowText TZvMemoStrings::GetRowText(int row) const {
    return InRange(row) ? Item(row)->FString : TRowText();
}

char16_t TZvMemoStrings::GetCharAt(int row, int col) const {
    const auto s = Get(row);
    return col >= 1 && static_cast<std::size_t>(col) <= s.size() ? s[col - 1] : u'\0';
}

int TZvMemoStrings::GetBuffer(int row, std::u16string& buffer) const {
    const auto s = Get(row);
    if (buffer.size() < s.size())
        buffer.resize(s.size() + 100);
    std::copy(s.begin(), s.end(), buffer.begin());
    return static_cast<int>(s.size());
}

const TAttribute& TZvMemoStrings::GetLineAttribute(int row) const {
    if (InRange(row))
        return Item(row)->FObject;
    thread_local TAttribute unattached;
    unattached = NewAttribute();
    return unattached;
}

TAttribute* TZvMemoStrings::LineAttribute(int row) {
    return InRange(row) ? &Item(row)->FObject : nullptr;
}

void TZvMemoStrings::SetLineAttribute(int row, const TAttribute& attribute) {
    std::lock_guard lock(FLock);
    if (!InRange(row))
        return;
    TAttribute& target = Item(row)->FObject;
    const bool hidden = target.Hidden();
    target = attribute;
    SetHiddenBit(target, hidden);
    SetHiddenLine(row, attribute.Hidden());
}

int TZvMemoStrings::RealCount() const {
    if (FCount == 1 && Get(0) == u"\r\n")
        return 0;
    return Count();
}

// ---- Adding and removing ----------------------------------------------------------------

int TZvMemoStrings::Add(std::u16string_view s) {
    const std::u16string text = Expanded(s);
    int row = Count();
    if (FSorted && (row = SortedAddIndex(text)) < 0)
        return -1; // a duplicate, ignored
    Changing();
    {
        std::lock_guard lock(FLock);
        DoInsert(row, text);
    }
    Changed();
    return row;
}

int TZvMemoStrings::AddLine(std::u16string_view s, const TAttribute& attribute) {
    Changing();
    {
        std::lock_guard lock(FLock);
        TRowItem& item = AppendItem();
        item.FString.Assign(s);
        item.FObject = attribute;
        FVisibleCount += attribute.Hidden() ? 0 : 1;
    }
    Changed();
    return Count() - 1;
}

int TZvMemoStrings::DoAdd(std::u16string_view s) {
    TRowItem& item = AppendItem();
    item.FString.Assign(s);
    item.FObject = NewAttribute();
    ++FVisibleCount;
    return Count() - 1;
}

void TZvMemoStrings::DoInsert(int row, std::u16string_view s) {
    row = std::clamp(row, 0, Count());
    OpenGap(static_cast<std::size_t>(row), 1);
    Item(row)->FString.Assign(Expanded(s));
    Item(row)->FObject = NewAttribute();
    ++FVisibleCount;
}

void TZvMemoStrings::Insert(int row, std::u16string_view s) {
    Changing();
    {
        std::lock_guard lock(FLock);
        DoInsert(row, s);
    }
    Changed();
}

void TZvMemoStrings::DoDelete(int row) {
    if (!InRange(row))
        return;
    const bool hidden = ReadItem(row)->FObject.Hidden();
    CloseGap(static_cast<std::size_t>(row), 1);
    if (!hidden && --FVisibleCount < 0)
        RecountVisible();
}

void TZvMemoStrings::Delete(int row) {
    if (!InRange(row))
        return;
    Changing();
    {
        std::lock_guard lock(FLock);
        DoDelete(row);
    }
    Changed();
}

void TZvMemoStrings::DeleteSilent(int row, bool withWrapped) {
    if (!InRange(row))
        return;
    DoDelete(row);
    while (withWrapped && InRange(row) && ReadItem(row)->FObject.Wrapped())
        DoDelete(row);
}

void TZvMemoStrings::DeleteLinesSilent(int row, int count) {
    if (!InRange(row) || count <= 0)
        return;
    const auto n = std::min<std::size_t>(static_cast<std::size_t>(count), FCount - row);
    int hidden = 0;
    for (std::size_t i = 0; i < n; ++i)
        hidden += ReadItem(row + i)->FObject.Hidden() ? 1 : 0;
    CloseGap(static_cast<std::size_t>(row), n);
    FVisibleCount -= static_cast<int>(n) - hidden;
    if (FVisibleCount < 0)
        RecountVisible();
}

void TZvMemoStrings::PrepareLines(int row, int count) {
    if (count <= 0)
        return;
    row = std::clamp(row, 0, Count());
    OpenGap(static_cast<std::size_t>(row), static_cast<std::size_t>(count));
    const TAttribute fresh = NewAttribute();
    for (int i = 0; i < count; ++i)
        Item(row + i)->FObject = fresh;
    FVisibleCount += count;
}

void TZvMemoStrings::DeleteLineFromReal(int line) {
    const int row = GetWrapIndex(line);
    if (!InRange(row) || row == Count() - 1)
        return;
    Changing();
    {
        std::lock_guard lock(FLock);
        DeleteSilent(row, true);
    }
    Changed();
}

void TZvMemoStrings::InsertLineFromReal(int line, std::u16string_view s) {
    int row = GetWrapIndex(line);
    std::lock_guard lock(FLock);
    while (row > Count())
        DoAdd(u"");
    Insert(row, s);
}

void TZvMemoStrings::Clear() {
    Changing();
    {
        std::lock_guard lock(FLock);
        ClearQuick();
    }
    Changed();
}

void TZvMemoStrings::ClearQuick() {
    for (std::size_t i = 0; i < FCount; ++i)
        FList[Slot(i)].~TRowItem();
    FCount = 0;
    FGapStart = 0;
    ReleaseList();
    FListBytes = 0;
    FCapacity = 0;
    SetCapacity(16);
    FVisibleCount = 0;
    FIllegalControlCodes = false;
    FIndex.Clear();
    FPendingFirst = kNothingPending;
    FPendingEnd = FPendingIndexEnd = FAppendsPendUntil = 0;
}

void TZvMemoStrings::ClearLine(int row) {
    if (InRange(row))
        Item(row)->FString.Reset();
}

void TZvMemoStrings::ClearSSA() {
    for (std::size_t i = 0; i < FCount; ++i)
        if (Item(i)->FObject.HasExtra())
            Item(i)->FObject.MutableExtra().SpellList.clear();
}

void TZvMemoStrings::SwapLines(int a, int b) {
    if (!InRange(a) || !InRange(b) || a == b)
        return;
    alignas(TRowItem) unsigned char tmp[sizeof(TRowItem)];
    std::memcpy(tmp, static_cast<void*>(Item(a)), sizeof(TRowItem));
    std::memcpy(static_cast<void*>(Item(a)), static_cast<void*>(Item(b)), sizeof(TRowItem));
    std::memcpy(static_cast<void*>(Item(b)), tmp, sizeof(TRowItem));
}

void TZvMemoStrings::Move(int from, int to) {
    if (!InRange(from) || !InRange(to) || from == to)
        return;
    std::lock_guard lock(FLock);
    ++FRevision;
    // Take the item out raw (its slot joins the gap), then put it back raw before `to`.
    alignas(TRowItem) unsigned char tmp[sizeof(TRowItem)];
    std::memcpy(tmp, static_cast<const void*>(ReadItem(from)), sizeof(TRowItem));
    PendRowsReplaced(static_cast<std::size_t>(from), 1, 0);
    MoveGap(static_cast<std::size_t>(from) + 1);
    FGapStart = static_cast<std::size_t>(from);
    --FCount;
    PendRowsReplaced(static_cast<std::size_t>(to), 0, 1);
    MoveGap(static_cast<std::size_t>(to));
    std::memcpy(static_cast<void*>(FList + to), tmp, sizeof(TRowItem));
    FGapStart = static_cast<std::size_t>(to) + 1;
    ++FCount;
}

void TZvMemoStrings::QuickSortA(
    int first, int last,
    const std::function<int(std::u16string_view, std::u16string_view)>& compare) {
    while (first < last) {
        int i = first, j = last;
        const std::u16string pivot(Get((first + last) / 2));
        while (i <= j) {
            while (compare(Get(i), pivot) < 0)
                ++i;
            while (compare(Get(j), pivot) > 0)
                --j;
            if (i <= j)
                SwapLines(i++, j--);
        }
        if (first < j)
            QuickSortA(first, j, compare);
        first = i;
    }
}

void TZvMemoStrings::CopyLineTo(int from, int to) {
    if (!InRange(from) || !InRange(to))
        return;
    const TRowText source = Item(from)->FString;
    Item(to)->FString.Append(source.View());
}

// ---- Editing one row --------------------------------------------------------------------

void TZvMemoStrings::SetLineString(int row, std::u16string_view s) {
    if (InRange(row))
        Item(row)->FString.Assign(s);
}

void TZvMemoStrings::SetRowText(int row, const TRowText& text) {
    if (InRange(row))
        Item(row)->FString = text;
}

int TZvMemoStrings::InsertAt(int row, std::u16string_view s, int col) {
    if (!InRange(row))
        return 0;
    TRowText& text = Item(row)->FString;
    text.Insert(static_cast<std::uint32_t>(std::max(col - 1, 0)), s);
    return static_cast<int>(text.Length());
}

int TZvMemoStrings::DeleteAt(int row, int col, int count) {
    if (!InRange(row))
        return 0;
    TRowText& text = Item(row)->FString;
    if (col >= 1 && count > 0)
        text.Erase(static_cast<std::uint32_t>(col - 1), static_cast<std::uint32_t>(count));
    return static_cast<int>(text.Length());
}

void TZvMemoStrings::OverWriteAt(int row, std::u16string_view s, int col) {
    if (!InRange(row) || col < 1 || s.empty())
        return;
    TRowText& text = Item(row)->FString;
    const std::uint32_t start = std::min<std::uint32_t>(col - 1, text.Length());
    const auto end =
        std::max<std::uint32_t>(text.Length(), start + static_cast<std::uint32_t>(s.size()));
    char16_t* data = text.MutableData(end);
    std::copy(s.begin(), s.end(), data + start);
}

bool TZvMemoStrings::IsLineBlank(int row) const {
    for (char16_t c : Get(row))
        if (!IsWhiteSpace(c))
            return false;
    return true;
}

bool TZvMemoStrings::CompareLines(int a, int b) const {
    if (!InRange(a) || !InRange(b))
        return false;
    const auto x = Get(a), y = Get(b);
    return !x.empty() && x == y;
}

bool TZvMemoStrings::IsAnsiBetween(int row, int from, int to) const {
    const auto s = Get(row);
    for (int col = std::max(from, 1); col <= to && static_cast<std::size_t>(col) <= s.size(); ++col)
        if (s[col - 1] > 255 || s[col - 1] == u'\t')
            return false;
    return true;
}

std::u16string TZvMemoStrings::RemoveTrailingBlanks(int row, bool keepTabs) {
    if (!InRange(row))
        return {};
    const auto s = Get(row);
    std::size_t end = s.size();
    while (end > 0 && IsWhiteSpace(s[end - 1]) && !(keepTabs && s[end - 1] == u'\t'))
        --end;
    std::u16string removed(s.substr(end));
    Item(row)->FString.Truncate(static_cast<std::uint32_t>(end));
    return removed;
}

std::u16string TZvMemoStrings::GetStringAt(int row, int col, int count, bool trim) const {
    const auto s = Get(row);
    if (col < 1 || count <= 0 || static_cast<std::size_t>(col) > s.size())
        return {};
    auto part = s.substr(col - 1, static_cast<std::size_t>(count));
    if (trim) {
        auto blank = [](char16_t c) { return c == 32 || c == 9 || c == 160; };
        while (!part.empty() && blank(part.front()))
            part.remove_prefix(1);
        while (!part.empty() && blank(part.back()))
            part.remove_suffix(1);
    }
    return std::u16string(part);
}

void TZvMemoStrings::FillHashList(std::vector<std::uint32_t>& list, bool ignoreCase,
                                  bool ignoreSpaces) const {
    list.clear();
    list.reserve(FCount);
    std::u16string work;
    for (std::size_t i = 0; i < FCount; ++i)
        list.push_back(LineHash(Item(i)->FString.View(), ignoreCase, ignoreSpaces, work));
}

int TZvMemoStrings::GetSpellList(int row, std::vector<TSpellRec>& list) const {
    list = GetLineAttribute(row).Extra().SpellList;
    return static_cast<int>(list.size());
}

bool TZvMemoStrings::IsTextComplex(int row) const {
    return IsTextComplex(Get(row));
}

bool TZvMemoStrings::IsTextComplex(std::u16string_view s) {
    return NeedsShaping(s);
}

// ---- Hidden rows ------------------------------------------------------------------------

void TZvMemoStrings::SetHiddenLine(int row, bool value) {
    if (!InRange(row))
        return;
    TAttribute& a = Item(row)->FObject;
    if (a.Hidden() == value)
        return;
    SetHiddenBit(a, value);
    FVisibleCount += value ? -1 : 1;
    if (FVisibleCount < 0)
        RecountVisible();
}

// ---- Threads ----------------------------------------------------------------------------

std::u16string TZvMemoStrings::GetLineStringFromThread(int row) const {
    std::lock_guard lock(FLock);
    return std::u16string(Get(row));
}

TAttribute TZvMemoStrings::GetLineAttributeFromThread(int row) const {
    std::lock_guard lock(FLock);
    return GetLineAttribute(row);
}

std::u16string TZvMemoStrings::GetUnwrappedLineFromThread(int row, int& count) const {
    std::lock_guard lock(FLock);
    return GetUnwrappedLine(row, count);
}

} // namespace zv
