// What a one-row scan depends on besides the row and the state before it: the style sets of
// the document (one per embedded language), the editor's options, and a per-set table of the
// characters that can start a token. Built once per syntax load; read-only afterwards, so the
// background thread and the painter may share it.
#pragma once

#include "ZvMemoControl/LineStyle.h"
#include "ZvMemoControl/MemoStyleHost.h"

#include <array>
#include <bitset>
#include <memory>
#include <string>
#include <vector>

namespace zv {

// Editor options the scanner reads. Plain values: a change means a new context and a rescan.
struct TScanOptions {
    bool FAllowURLClick = true;   // URLs are one token and block comment/line-comment starts
    bool FWordWrap = false;       // line comments and strings continue over wrapped rows
    bool FRegionNodes = false;    // folding active
    bool FHtmlMultiSyntax = true; // embedded languages in HTML get their own sets
    std::int32_t FTabSize = 4;    // tab stops for a row's Indent; at least 1
    // Words that make a comment row a to-do item where they open the comment text.
    std::vector<std::u16string> FTodoWords{u"TODO", u"NOTE"};
};

// Per style set: characters (below 128) that can begin any opener other than the plain run.
struct TStarterTable {
    std::bitset<128> Starts;
    bool AnyRegexBlock = false; // a "#" block can start anywhere
    bool CssFamily = false;     // css.syx, scss.syx or less.syx: declarations have a value state
};

class TScanContext {
public:
    // `host` must outlive the context and must not be reloaded while the context is used.
    TScanContext(const TMemoStyleHost& host, TScanOptions options);

    // The set that colours text whose state is `props` (the document set outside embedded
    // regions). Null when the document has no syntax. Pure: touches no shared state.
    const TZvCustomMemoStyles* SetFor(const TStyleProperties& props) const;
    const TStarterTable& Starters(const TZvCustomMemoStyles* set) const;

    const TMemoStyleHost& Host() const { return *FHost; }
    const TScanOptions& Options() const { return FOptions; }
    bool TagMode() const { return FTagMode; }
    // URLs are recognised: the editor allows URL clicks and the syntax asks (HighlightUrl).
    bool Urls() const { return FUrls; }
    bool HasSyntax() const { return FHost->FStyles != nullptr; }
    // The set named by a script type in a multi-syntax document, or null when none is loaded.
    const TZvCustomMemoStyles* Embedded(TScriptType type) const;

private:
    const TMemoStyleHost* FHost;
    TScanOptions FOptions;
    bool FTagMode = false;
    bool FUrls = false;
    std::vector<std::pair<const TZvCustomMemoStyles*, TStarterTable>> FStarters;
    TStarterTable FEmpty;
};

} // namespace zv
