// Runs of a row, their colours, and the queries answered by walking a row.
#include "syntax/ColourWalk.h"

namespace zv {
namespace {

TCharStyle GroupStyle(const TKeyWord& k) {
    return {k.Boldness, k.Color, k.ColorBk, k.Style};
}

const TCharStyle& Either(const TCharStyle& a, const TCharStyle& b) {
    return a.FTextColor != kNoColor ? a : b;
}

TCharStyle KindStyle(const TColourRun& run, const TZvCustomMemoStyles& s, const TColourOptions& o) {
    const TRunInfo& i = run.Info;
    switch (i.Kind) {
    case TTokenKind::Comment:
        return s.FCommentStyle;
    case TTokenKind::LineComment:
        return Either(s.FLineCommentStyle, s.FCommentStyle);
    case TTokenKind::DocComment:
        return s.FKeyWords.empty() ? s.FCommentStyle : GroupStyle(s.FKeyWords.back());
    case TTokenKind::String:
        return s.FStringStyle;
    case TTokenKind::Char:
        return Either(s.FCharStyle, s.FStringStyle);
    case TTokenKind::Number:
        return s.FNumberStyle;
    case TTokenKind::HexNumber:
        return Either(s.FHexNumberStyle, s.FNumberStyle);
    case TTokenKind::Keyword:
        return i.Index >= 0 && i.Index < int(s.FKeyWords.size()) ? GroupStyle(s.FKeyWords[i.Index])
                                                                 : TCharStyle{};
    case TTokenKind::Symbol: // indexes 10, 11, 12: words of SymbolWordsA, B, C
        return i.Index == 10   ? s.FSymbolWordsAStyle
               : i.Index == 11 ? s.FSymbolWordsBStyle
               : i.Index == 12 ? s.FSymbolWordsCStyle
                               : s.FSymbolsStyle;
    case TTokenKind::Brace:
        if (o.FMultiColorBraces) {
            const int level = i.Index < 0 ? -i.Index : i.Index;
            return {0, o.FBraceColors[level % o.FBraceColors.size()], kNoColor, 0};
        }
        return s.FSymbolsStyle;
    case TTokenKind::Tag: // a tag of a listed group takes the group's colour
        if (i.Index >= 0 && i.Index < int(s.FTags.size()) && s.FTags[i.Index].Color != kNoColor)
            return GroupStyle(s.FTags[i.Index]);
        return {s.FTagBoldness, s.FTagColor, s.FTagColorBk, s.FTagStyle};
    case TTokenKind::ServerTag:
        return {s.FTagBoldness, s.FTagColor, s.FTagColorBk, s.FTagStyle};
    case TTokenKind::AttributeName:
        return s.FAttributeName;
    case TTokenKind::AttributeValue:
        return Either(s.FAttributeValue, s.FStringStyle);
    case TTokenKind::Url:
        return o.FUrlStyle;
    case TTokenKind::Block:
        if (i.Index >= 0 && i.Index < int(s.FBlocks.size())) {
            const TBlock& b = s.FBlocks[i.Index];
            return {b.Boldness, b.Color, b.ColorBk, b.Style};
        }
        return {};
    case TTokenKind::Text:
        break;
    }
    return {s.FTextBoldness, s.FTextColor, kNoColor, s.FTextStyle};
}

} // namespace

void TRunCollector::Run(int start, int length, const TRunInfo& info) {
    if (!Runs.empty()) {
        TColourRun& last = Runs.back();
        const TRunInfo& l = last.Info;
        if (last.Start + last.Length == start && l.Kind == info.Kind && l.Index == info.Index &&
            l.Set == info.Set && l.Block == info.Block && l.Outer == info.Outer &&
            info.Kind != TTokenKind::Brace && info.Kind != TTokenKind::Keyword &&
            info.Kind != TTokenKind::Tag) {
            last.Length += length;
            return;
        }
    }
    Runs.push_back({start, length, info});
}

TCharStyle RunStyle(const TColourRun& run, const TColourOptions& options) {
    if (!run.Info.Set)
        return {};
    const TZvCustomMemoStyles& s = *run.Info.Set;
    TCharStyle style = KindStyle(run, s, options);
    if (style.FTextColor == kNoColor)
        style.FTextColor = s.FTextColor;
    return style;
}

std::vector<TColourRun> RowRuns(TLineScanner& scanner, int row, TStyle* endState) {
    if (row < 0 || row >= scanner.Store().Count())
        return {};
    TStyle state = scanner.GetUpStyle(row - 1);
    auto runs = RowRunsFrom(scanner, row, state);
    if (endState)
        *endState = state;
    return runs;
}

std::vector<TColourRun> RowRunsFrom(TLineScanner& scanner, int row, TStyle& state) {
    TRunCollector sink;
    if (row < 0 || row >= scanner.Store().Count())
        return {};
    scanner.GetUpLineStyle(row, 0, -1, state, &sink);
    return std::move(sink.Runs);
}

const TColourRun* RunAt(const std::vector<TColourRun>& runs, int x) {
    for (const TColourRun& r : runs)
        if (x >= r.Start && x < r.Start + r.Length)
            return &r;
    return nullptr;
}

TTokenAt TokenAtXY(TLineScanner& scanner, int x, int y) {
    const auto runs = RowRuns(scanner, y);
    const TColourRun* r = RunAt(runs, x);
    if (!r)
        return {};
    return {true, r->Start, r->Length, r->Info.Kind, r->Info.Set};
}

TTokenAt TokenAtLeftOfXY(TLineScanner& scanner, int x, int y) {
    return x > 0 ? TokenAtXY(scanner, x - 1, y) : TTokenAt{};
}

const TZvCustomMemoStyles* GetStyleAt(TLineScanner& scanner, int x, int y) {
    const TTokenAt t = TokenAtXY(scanner, x, y);
    return t.Found && t.Set ? t.Set : scanner.Context().Host().FStyles.get();
}

namespace {
// The state behind column x of row y (a partial scan of the row).
TStyle StateAt(TLineScanner& scanner, int x, int y) {
    TStyle state = scanner.GetUpStyle(y - 1);
    if (x > 0)
        scanner.GetUpLineStyle(y, 1, x, state);
    return state;
}
} // namespace

bool IsInTagOrBlock(TLineScanner& scanner, int x, int y) {
    const TStyle s = StateAt(scanner, x, y);
    return s.Properties.Get(spInTag) || s.Block.Id != -1;
}

bool IsInCommentOrString(TLineScanner& scanner, int x, int y) {
    const TStyle s = StateAt(scanner, x, y);
    const TStyleProperties& p = s.Properties;
    // Block ids -2, -3, -4: an open here-document, raw string or long-bracket comment.
    return p.Get(spInComment) || p.Get(spInLineComment) || p.BracketId >= 0 ||
           (s.Block.Id <= -2 && s.Block.Id >= -4);
}

bool IsInComment(TLineScanner& scanner, int x, int y) {
    const TStyleProperties p = StateAt(scanner, x, y).Properties;
    return p.Get(spInComment) || p.Get(spInLineComment);
}

bool IsInString(TLineScanner& scanner, int x, int y) {
    return StateAt(scanner, x, y).Properties.BracketId >= 0;
}

} // namespace zv
