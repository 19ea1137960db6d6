// Style sets built by code: the highlighting of older-format syntax files, and the completion
// data of script documents. Their completion entries live in an in-memory companion, so the
// ordinary loaders (LoadKeyList, LoadUserMenu) serve them.
#include "ZvMemoControl/CaseFold.h"
#include "shell/ZvIniFiles.h"
#include "syntax/ZvSyntax.h"

#include <array>
#include <charconv>

namespace zv {

std::vector<std::u16string_view> OldFormatOptionKeys(); // SyxConvert.cpp

namespace {

constexpr std::array<std::u16string_view, 7> kOldHeaders{
    u"[options]",     u"[keywords]", u"[tags]",    u"[autocomplete]",
    u"[tagcomplete]", u"[usermenu]", u"[autohint]"};

std::u16string Number(std::size_t n) {
    char buf[24];
    auto end = std::to_chars(buf, buf + sizeof buf, n).ptr;
    return std::u16string(buf, end);
}

// A copy of the set's companion that can take more entries.
std::shared_ptr<TMemIniFileW> WritableCompanion(const TZvCustomMemoStyles& styles) {
    auto ini = std::make_shared<TMemIniFileW>();
    if (styles.SynIni)
        ini->LoadFromBytes(styles.SynIni->SaveToBytes());
    return ini;
}

struct TScriptObject {
    std::u16string_view Name;
    std::u16string_view Members; // separated by blanks
};

constexpr std::array<TScriptObject, 5> kScriptObjects{{
    {u"MainApp",
     u"BringToFront ClearMessageText CloseAll GetClipboard GetCurrentLanguageFileName "
     u"GetMainMenu GetBottombarPageControl GetQuickbarPageControl GetSidebarPageControl "
     u"HTML_TidyHTML HTML_TidyXHTML HTML_TidyXML InputBox JSON_Minify JSON_PrettyPrint "
     u"NewDocument NewDocumentEx NextDoc OpenFile OutputDebugObjectString OutputDebugString "
     u"PreviousDoc Quit ReadOptionBoolean ReadOptionInteger ReadOptionString RunApp "
     u"RunAppAndWait RunAppAndWaitF SaveAll SendToBack SetClipboard SetHighlighter "
     u"SetMessageText SetStatusText Sort_Ascending Sort_Descending Sort_AscendingNumeric "
     u"Sort_DescendingNumeric Wait WriteOptionBoolean WriteOptionInteger WriteOptionString"},
    {u"Document",
     u"AddSelectionAsMultiSelection BeginUndo BeginUpdate Capitalize Clear Close "
     u"CopyToClipboard CursorLeft CursorRight CursorWordLeft CursorWordRight CursorDown "
     u"CursorUp CursorPageDown CursorPageUp CursorDocStart CursorDocEnd CursorLineStart "
     u"CursorLineEnd CutToClipboard DeleteBlankLines DeleteCurrentLine DeleteLine "
     u"DuplicateLineNTimes EndUndo EndUpdate ExitMultiEditMode FindAt FindRegExAt FoldAll "
     u"FoldNode FoldRegion GetMethodAtCursor GetSelection GetSelText GetTagAtCursor "
     u"GotoNextEndTag GotoNextMethod GotoNextStartTag GotoPreviousEndTag GotoPreviousMethod "
     u"GotoPreviousStartTag HighlightText Indent InsertTag InsertText IsColumnModeActive "
     u"JoinLines LastSavedDate MoveLinesDown MoveLinesUp MultiEditDelete PasteFromClipboard "
     u"Print Redo Reload ReplaceAll Save SaveAs SaveAsNoMRU SelectAll SelectCurrentLine "
     u"SelectLine SetColumnMode SetSelection SetSelText SplitLines Undo UnfoldAll UnfoldNode "
     u"UnfoldRegion UnhighlightText Unindent"},
    {u"ScriptUtils",
     u"Pos PosAt PosFrom RegExPos RegExPosAt RegExPosFrom RegExReplaceAll RightPos "
     u"RightPosFrom RunScript StringReplaceAll WPos WPosAt WPosFrom WRegExPos WRegExPosAt "
     u"WRegExPosFrom WRegExReplaceAll WRightPos WRightPosFrom WStringReplaceAll"},
    {u"ScriptSettings",
     u"DeleteKey EraseSection ReadBool ReadDateTime ReadDate ReadFloat ReadInteger ReadString "
     u"ReadTime SectionExists UpdateFile ValueExists WriteBool WriteDateTime WriteDate "
     u"WriteFloat WriteInteger WriteString WriteTime"},
    {u"WStrings",
     u"Add AddObject Clear Create Delete Free IndexOf IndexOfName IndexOfObject Insert "
     u"InsertObject LoadFromFile LoadFromStream SaveToFile SaveToStream GetCount GetName "
     u"GetObject GetValue GetString SetObject SetString"},
}};

constexpr std::u16string_view kScriptFunctions =
    u"IntToStr StrToInt StrToIntDef FloatToStr StrToFloat Format Copy Pos Length Delete Insert "
    u"UpperCase LowerCase Trim TrimLeft TrimRight StringReplace QuotedStr IntToHex Chr Ord Inc "
    u"Dec Abs Round Trunc Int Frac Sqrt Sqr Sin Cos Tan ArcTan Exp Ln Random Randomize Now Date "
    u"Time DateToStr TimeToStr DateTimeToStr FormatDateTime FileExists DirectoryExists "
    u"ExtractFileName ExtractFilePath ExtractFileExt ChangeFileExt ShowMessage InputQuery";

// "name|name+icon" entries of the blank-separated words, joined by "##".
std::u16string Entries(std::u16string_view words, char16_t icon) {
    std::u16string out;
    for (std::size_t start = 0; start < words.size();) {
        std::size_t end = words.find(u' ', start);
        if (end == words.npos)
            end = words.size();
        const std::u16string_view w = words.substr(start, end - start);
        start = end + 1;
        if (w.empty())
            continue;
        if (!out.empty())
            out += u"##";
        out += std::u16string(w) + u"|" + std::u16string(w) + u"+" + icon;
    }
    return out;
}

} // namespace

void TZvSyntax::SetSynFileSyntax(TMemoStyleHost& memo) {
    memo.FreeSyntaxStyles();
    auto s = std::make_shared<TZvCustomMemoStyles>();
    s->FSyntaxName = u"SynFile";
    s->FLineCommentA = u";|//";
    s->FCommentStartA = u"{";
    s->FCommentEndA = u"}";
    s->FStringSymbol = u'"';
    s->FSymbols = u"=>#|";
    s->FStringLine = true;
    s->FEscape = u"\\";
    s->FNumericChars = u"0123456789";
    std::vector<std::u16string> headers(kOldHeaders.begin(), kOldHeaders.end());
    for (std::u16string_view h : kOldHeaders) {
        TNodes& node = s->FNodes.emplace_back();
        node.wId = node.wStart = h;
        node.wEnd = u"[end]";
        node.level = nltRegion;
        node.list_Item = ceRegion;
        node.Name = u"Sections";
        s->NodeIdWords.emplace_back(h);
    }
    s->NodeIdWords.emplace_back(u"[end]");
    s->NodeIdList.Assign(s->NodeIdWords);
    TKeyWord& keys = s->FKeyWords.emplace_back();
    keys.Name = u"SynFile Keywords";
    keys.Info = u"Keywords0";
    keys.KeyWords.Assign(headers);
    std::vector<std::u16string> options;
    for (std::u16string_view k : OldFormatOptionKeys())
        options.emplace_back(k);
    TKeyWord& opts = s->FKeyWords.emplace_back();
    opts.Name = u"SynFile Options";
    opts.Info = u"Keywords1";
    opts.KeyWords.Assign(options);
    auto ini = WritableCompanion(*s);
    std::size_t n = 0;
    for (const auto* list : {&headers, &options})
        for (const std::u16string& word : *list)
            ini->WriteString(u"UserMenu", Number(++n), word + u"|" + word + u" = \"\"+p");
    s->SynIni = std::move(ini);
    if (FColors)
        FColors->ApplyColors(*s, s->FSyntaxName);
    memo.FStyles = memo.FStylesThread = std::move(s);
}

void TZvSyntax::SetScriptSyntax(TMemoStyleHost& memo) {
    if (!memo.FStyles) {
        memo.FStyles = std::make_shared<TZvCustomMemoStyles>();
        memo.FStylesThread = memo.FStyles;
    }
    TZvCustomMemoStyles& s = *memo.FStyles;
    auto ini = WritableCompanion(s);
    for (const TScriptObject& object : kScriptObjects) {
        TCompletionItem item = s.CreateBitmap(u'3');
        item.Name = item.Insert = object.Name;
        s.FListAuto.push_back(std::move(item));
        ini->WriteString(u"AutoComplete", object.Name, Entries(object.Members, u'p'));
    }
    // The standard functions go through the companion's own reader, which sorts them.
    ini->WriteString(u"AutoComplete", u"@Functions", Entries(kScriptFunctions, u'f'));
    s.SynIni = ini;
    s.LoadKeyList(u"AutoComplete", u"@Functions", s.FListAuto);
}

} // namespace zv
