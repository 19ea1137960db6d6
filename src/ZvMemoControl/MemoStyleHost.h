// What an editor control keeps of its syntax: the style sets in force for the painter and the
// background scanner, one slot for each embedded language, and the flags a syntax load sets.
// The editor control owns one; the syntax loader fills it.
#pragma once

#include "ZvMemoControl/LineStyle.h"
#include "ZvMemoControl/ZvMemoStyles.h"

#include <memory>
#include <string>

namespace zv {

using TStylesPtr = std::shared_ptr<TZvCustomMemoStyles>;

struct TMemoStyleHost {
    // FStyles and FOldStyles are written only by the main thread, FStylesThread and
    // FOldStylesThread only by the background scanner; a load suspends the scanner first.
    TStylesPtr FStyles, FStylesThread, FOldStyles, FOldStylesThread;
    TStylesPtr FHtmlStyle;
    TStylesPtr FHtmlStyleASP, FHtmlStylePHP, FHtmlStyleJS, FHtmlStyleVB, FHtmlStyleCSS,
        FHtmlStyleCF, FHtmlStyleSVG, FHtmlStyleHyperscript;
    TStylesPtr FSVGHTMLStyleBackup, FSVGHTMLStyleThreadBackup;

    bool FUrlAware = false;
    bool FXML = false;               // scanned by the XML tag rules
    bool CaseSensitive = false;      // copy of the syntax's keyword case
    bool FTagsCaseSensitive = false; // copy of the syntax's tag case
    bool IsHtml = false;             // tag mode: the syntax has a [Tags] section
    bool FAutoCompletionTags = false;
    bool FHtmlMultiSyntax = true;
    bool FAllowSyntaxInStrings = false;
    bool FManualHighlighter = false; // the user picked the syntax by hand
    bool FTerminalMode = false;
    std::u16string FASPLanguage;    // file name of the server-side language in HTML
    std::int32_t FASPXLanguage = 0; // setting "ASPLang": 2 makes <script> VBScript
    std::u16string FSyntaxType;     // the type name in force, "Text" for none
    std::u16string FSyntaxDisplayName;

    // The slot of an embedded language, or nullptr for a type without one.
    TStylesPtr* Slot(TScriptType type);
    // Drops every style set reference the editor holds.
    void FreeSyntaxStyles();

    // Installs the set for the language `type` when the scanner (fromThread) or the painter
    // enters or leaves an embedded region, and leaves in state.ScriptType the language of the
    // set now in force. `remember` keeps the present set to return to. The painter's caller
    // holds the editor's lock; the scanner's twin touches only the scanner's references.
    void SetHtmlStylePointer(TScriptType type, TStyleProperties& state, bool remember,
                             bool fromThread);
};

} // namespace zv
