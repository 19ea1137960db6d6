// Style-set slots of an editor control.
#include "ZvMemoControl/MemoStyleHost.h"

namespace zv {

TStylesPtr* TMemoStyleHost::Slot(TScriptType type) {
    switch (type) {
    case scASP:
        return &FHtmlStyleASP;
    case scPHP:
        return &FHtmlStylePHP;
    case scJS:
        return &FHtmlStyleJS;
    case scVB:
        return &FHtmlStyleVB;
    case scCSS:
        return &FHtmlStyleCSS;
    case scCF:
        return &FHtmlStyleCF;
    case scSVG:
        return &FHtmlStyleSVG;
    case scHyperscript:
        return &FHtmlStyleHyperscript;
    case scHtml:
        return &FHtmlStyle;
    default:
        return nullptr;
    }
}

void TMemoStyleHost::FreeSyntaxStyles() {
    // Shared ownership frees each set exactly once, whichever slots share it.
    for (TStylesPtr* p :
         {&FStyles, &FStylesThread, &FOldStyles, &FOldStylesThread, &FHtmlStyle, &FHtmlStyleASP,
          &FHtmlStylePHP, &FHtmlStyleJS, &FHtmlStyleVB, &FHtmlStyleCSS, &FHtmlStyleCF,
          &FHtmlStyleSVG, &FHtmlStyleHyperscript, &FSVGHTMLStyleBackup, &FSVGHTMLStyleThreadBackup})
        p->reset();
}

void TMemoStyleHost::SetHtmlStylePointer(TScriptType type, TStyleProperties& state, bool remember,
                                         bool fromThread) {
    TStylesPtr& current = fromThread ? FStylesThread : FStyles;
    TStylesPtr& old = fromThread ? FOldStylesThread : FOldStyles;
    const bool inSvg = state.ScriptType == scSVG;
    if (IsHtml && FHtmlMultiSyntax) {
        switch (type) {
        case scASP:
        case scPHP:
        case scJS:
        case scVB:
        case scCSS:
        case scCF:
        case scHyperscript: {
            TStylesPtr& slot = *Slot(type);
            if (!slot || slot == current)
                break;
            if (inSvg && (type == scJS || type == scVB || type == scCSS)) {
                old = FHtmlStyleSVG;
                current = slot;
                current->ScriptType = scSVG;
                state.ScriptTypeOld = scSVG;
                break;
            }
            if (remember || type == scVB)
                old = current;
            current = slot;
            state.ScriptTypeOld = old ? old->ScriptType.load() : scNone;
            current->ScriptType = type;
            break;
        }
        case scHtml:
            if (inSvg) {
                old = FHtmlStyle;
                break;
            }
            current = FHtmlStyle;
            if (remember)
                old.reset();
            state.ScriptTypeOld = scNone;
            break;
        case scSVG:
            current = FHtmlStyleSVG;
            if (remember)
                old = FHtmlStyle;
            state.ScriptTypeOld = scHtml;
            break;
        default:
            if (inSvg)
                break;
            if (old) {
                current = old;
                state.ScriptTypeOld = old->ScriptType;
            } else {
                current = FHtmlStyle;
                if (current)
                    current->ScriptType = scHtml;
            }
            break;
        }
    }
    state.ScriptType = current ? current->ScriptType.load() : scNone;
}

} // namespace zv
