// The scan context: set lookup by language and the starter tables.
#include "syntax/ScanContext.h"

namespace zv {
namespace {

void AddFirst(TStarterTable& t, std::u16string_view s) {
    if (!s.empty() && s[0] < 128)
        t.Starts.set(s[0]);
}

// Every "|"-separated alternative of `list`.
void AddAlternatives(TStarterTable& t, std::u16string_view list) {
    while (!list.empty()) {
        const auto bar = list.find(u'|');
        AddFirst(t, list.substr(0, bar));
        if (bar == std::u16string_view::npos)
            break;
        list.remove_prefix(bar + 1);
    }
}

// The characters an expression's match may begin with; one that may begin anywhere (or did
// not compile) sends every character to the full round.
void AddRegexFirsts(TStarterTable& t, const TStyleRegex* re) {
    int firsts = 0;
    for (char16_t c = 0; c < 128; ++c)
        if (!re || re->MayStartWith(c))
            t.Starts.set(c), ++firsts;
    t.AnyRegexBlock |= firsts == 128;
}

bool IsCssFamily(const TZvCustomMemoStyles& s) {
    std::u16string stem = s.FSyntaxPathName;
    const auto slash = stem.find_last_of(u"/\\");
    if (slash != stem.npos)
        stem.erase(0, slash + 1);
    for (char16_t& c : stem)
        c = c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
    return stem == u"css.syx" || stem == u"scss.syx" || stem == u"less.syx";
}

TStarterTable BuildStarters(const TZvCustomMemoStyles& s, bool tagMode) {
    TStarterTable t;
    t.CssFamily = IsCssFamily(s);
    for (char16_t c = u'0'; c <= u'9'; ++c)
        t.Starts.set(c);
    AddAlternatives(t, s.FLineCommentA);
    AddAlternatives(t, s.FLineCommentB);
    for (auto* opener : {&s.FCommentStartA, &s.FCommentStartB, &s.FEscape, &s.FHereDocSymbol})
        AddFirst(t, *opener);
    for (char16_t c : {s.FCharSymbol, s.FStringSymbol, s.FString2Symbol})
        if (c && c < 128)
            t.Starts.set(c == u'1' ? u'"' : c);
    for (const TBlock& b : s.FBlocks) {
        if (b.IsRegEx())
            AddRegexFirsts(t, b.StartRegEx.get());
        else
            AddFirst(t, b.Start);
    }
    for (char16_t c : {u'(', u')', u'{', u'}', u'[', u']'})
        t.Starts.set(c);
    if (s.FSlashRegex)
        t.Starts.set(u'/');
    if (s.FJsxTags)
        t.Starts.set(u'<');
    if (tagMode)
        for (char16_t c : {u'<', u'>', u'?', u'%'})
            t.Starts.set(c);
    return t;
}

} // namespace

TScanContext::TScanContext(const TMemoStyleHost& host, TScanOptions options)
    : FHost(&host), FOptions(options), FTagMode(host.IsHtml || host.FXML),
      FUrls(options.FAllowURLClick && host.FUrlAware) {
    auto add = [&](const TStylesPtr& p) {
        if (!p)
            return;
        for (auto& e : FStarters)
            if (e.first == p.get())
                return;
        FStarters.emplace_back(p.get(), BuildStarters(*p, FTagMode));
    };
    add(host.FStyles);
    add(host.FHtmlStyle);
    for (TScriptType t : {scASP, scPHP, scJS, scVB, scCSS, scCF, scSVG, scHyperscript})
        add(*const_cast<TMemoStyleHost&>(host).Slot(t));
}

const TZvCustomMemoStyles* TScanContext::Embedded(TScriptType type) const {
    if (!FHost->IsHtml || !FOptions.FHtmlMultiSyntax)
        return nullptr;
    const TStylesPtr* slot = const_cast<TMemoStyleHost*>(FHost)->Slot(type);
    return slot && *slot ? slot->get() : nullptr;
}

const TZvCustomMemoStyles* TScanContext::SetFor(const TStyleProperties& props) const {
    if (props.Get(spInScript))
        if (const TZvCustomMemoStyles* s = Embedded(props.ScriptType))
            return s;
    return FHost->FStyles.get();
}

const TStarterTable& TScanContext::Starters(const TZvCustomMemoStyles* set) const {
    for (const auto& e : FStarters)
        if (e.first == set)
            return e.second;
    return FEmpty;
}

} // namespace zv
