// The window actions that move the caret and select: named moves, selections of the caret's
// word, line, paragraph, sentence, braces, tag or function, the plain and block extensions of
// the selection, the walks to the next occurrence, changed line or fold, and the deletes of a
// sentence's or screen line's part; with the Edit > Select and Search > Go to submenus that
// show them.
#include "ui/MainWindow.h"

#include "ui/ActionDef.h"
#include "ui/Actions.h"
#include "ui/EditorWidget.h"

#include <QMenu>

namespace zv {

void TMainWindow::CreateMoveActions() {
    TActionList& list = FActions->List();
    const auto memo = [this, &list](const TActionDef& def, TMemoCommand command,
                                    bool (*can)(const TZvMemo&) = nullptr) {
        auto [run, update] = EditHandlers(command, can);
        list.Add(MakeAction(def, std::move(run), std::move(update)));
    };
    // Selections the scanner finds: through the editor, which holds it.
    const auto scanned = [this, &list](const TActionDef& def, bool (*select)(TEditorWidget&)) {
        list.Add(MakeAction(
            def, [this, select] { OnActiveEditor([select](TEditorWidget& e) { select(e); }); },
            [this] { return ActiveEditor() && HasTextMemoFocus(); }));
    };
    const auto writable = [](const TZvMemo& m) { return !m.FReadOnly; };

    memo({"DocumentBeginningAction", "Text Cursor", "520", "Document beginning"},
         [](TZvMemo& m) { m.acnDocumentBeginning(); });
    memo({"DocumentEndAction", "Text Cursor", "521", "Document end"},
         [](TZvMemo& m) { m.acnDocumentEnd(); });
    memo({"TopOfPageAction", "Text Cursor", "522", "Top of page"},
         [](TZvMemo& m) { m.acnTopOfPage(); });
    memo({"BottomOfPageAction", "Text Cursor", "523", "Bottom of page"},
         [](TZvMemo& m) { m.acnBottomOfPage(); });
    memo({"HomeAction", "Text Cursor", "524", "Line start"}, [](TZvMemo& m) { m.acnHome(); });
    memo({"EndAction", "Text Cursor", "525", "Line end"}, [](TZvMemo& m) { m.acnEnd(); });
    memo({"NextWordAction", "Text Cursor", "526", "Next word"},
         [](TZvMemo& m) { m.acnNextWord(); });
    memo({"PreviousWordAction", "Text Cursor", "527", "Previous word"},
         [](TZvMemo& m) { m.acnPreviousWord(); });
    memo({"ScrollLineUpAction", "Text Cursor", "528", "Scroll line up"},
         [](TZvMemo& m) { m.acnScrollLineUp(); });
    memo({"ScrollLineDownAction", "Text Cursor", "529", "Scroll line down"},
         [](TZvMemo& m) { m.acnScrollLineDown(); });
    memo({"ScrollPageUpAction", "Text Cursor", "530", "Scroll page up"},
         [](TZvMemo& m) { m.acnScrollPageUp(); });
    memo({"ScrollPageDownAction", "Text Cursor", "531", "Scroll page down"},
         [](TZvMemo& m) { m.acnScrollPageDown(); });
    memo({"NextOccurrenceAction", "Search", "532", "Next occurrence"},
         [](TZvMemo& m) { m.acnNextOccurrence(); });
    memo({"PreviousOccurrenceAction", "Search", "533", "Previous occurrence"},
         [](TZvMemo& m) { m.acnPreviousOccurrence(); });
    memo({"NextChangedLineAction", "Search", "534", "Next changed line"},
         [](TZvMemo& m) { m.acnFindNextChangedLine(); });
    memo({"PreviousChangedLineAction", "Search", "535", "Previous changed line"},
         [](TZvMemo& m) { m.acnFindPreviousChangedLine(); });
    memo({"NextNodeAction", "Search", "536", "Next fold"}, [](TZvMemo& m) { m.acnFindNextNode(); });
    memo({"PreviousNodeAction", "Search", "537", "Previous fold"},
         [](TZvMemo& m) { m.acnFindPreviousNode(); });

    memo({"SelectWordAction", "Text Cursor", "538", "Word"},
         [](TZvMemo& m) { m.AcnSelectCurrentWord(); });
    memo({"SelectLineAction", "Text Cursor", "539", "Line"},
         [](TZvMemo& m) { m.AcnSelectCurrentLine(); });
    memo({"SelectParagraphAction", "Text Cursor", "540", "Paragraph"},
         [](TZvMemo& m) { m.acnSelectParagraph(); });
    memo({"SelectSentenceAction", "Text Cursor", "541", "Sentence"},
         [](TZvMemo& m) { m.acnSelectSentence(); });
    memo({"SelectSentenceHomeAction", "Text Cursor", "542", "To sentence start"},
         [](TZvMemo& m) { m.acnSelectSentenceHome(); });
    memo({"SelectSentenceEndAction", "Text Cursor", "543", "To sentence end"},
         [](TZvMemo& m) { m.acnSelectSentenceEnd(); });
    scanned({"SelectBraceEnclosedAction", "Text Cursor", "544", "Inside braces"},
            [](TEditorWidget& e) { return e.SelectBraceEnclosed(false); });
    scanned({"SelectBraceEnclosedWithBracesAction", "Text Cursor", "545", "Braces and inside"},
            [](TEditorWidget& e) { return e.SelectBraceEnclosed(true); });
    scanned({"SelectTagAction", "Text Cursor", "546", "Tag element"},
            [](TEditorWidget& e) { return e.SelectTag(); });
    memo({"SelectAllAboveCurrentAction", "Text Cursor", "547", "All above the caret"},
         [](TZvMemo& m) { m.acnSelectAllAboveCurrent(); });
    memo({"SelectAllBelowCurrentAction", "Text Cursor", "548", "All below the caret"},
         [](TZvMemo& m) { m.acnSelectAllBelowCurrent(); });
    memo({"SelectToBOLAction", "Text Cursor", "549", "To line start"},
         [](TZvMemo& m) { m.acnSelectToBOL(); });
    memo({"SelectToEOLAction", "Text Cursor", "550", "To line end"},
         [](TZvMemo& m) { m.acnSelectToEOL(); });
    memo({"SelectToBeginOfScreenLineAction", "Text Cursor", "551", "To screen line start"},
         [](TZvMemo& m) { m.acnSelectToBeginOfScreenLine(); });
    memo({"SelectToEndOfScreenLineAction", "Text Cursor", "552", "To screen line end"},
         [](TZvMemo& m) { m.acnSelectToEndOfScreenLine(); });
    memo({"SelectToTopOfPageAction", "Text Cursor", "553", "To top of page"},
         [](TZvMemo& m) { m.acnSelectToTopOfPage(); });
    memo({"SelectToBottomOfPageAction", "Text Cursor", "554", "To bottom of page"},
         [](TZvMemo& m) { m.acnSelectToBottomOfPage(); });

    // The keys already do these (Shift, Ctrl+Shift and Alt+Shift with the moves): no shortcut.
    memo({"SelectUpAction", "Text Cursor", "598", "Extend up"},
         [](TZvMemo& m) { m.acnSelectUp(); });
    memo({"SelectDownAction", "Text Cursor", "599", "Extend down"},
         [](TZvMemo& m) { m.acnSelectDown(); });
    memo({"SelectLeftAction", "Text Cursor", "600", "Extend left"},
         [](TZvMemo& m) { m.acnSelectLeft(); });
    memo({"SelectRightAction", "Text Cursor", "601", "Extend right"},
         [](TZvMemo& m) { m.acnSelectRight(); });
    memo({"SelectHomeAction", "Text Cursor", "602", "Extend to line start"},
         [](TZvMemo& m) { m.acnSelectHome(); });
    memo({"SelectEndAction", "Text Cursor", "603", "Extend to line end"},
         [](TZvMemo& m) { m.acnSelectEnd(); });
    memo({"SelectPageUpAction", "Text Cursor", "604", "Extend a page up"},
         [](TZvMemo& m) { m.acnSelectPageUp(); });
    memo({"SelectPageDownAction", "Text Cursor", "605", "Extend a page down"},
         [](TZvMemo& m) { m.acnSelectPageDown(); });
    memo({"SelectNextWordAction", "Text Cursor", "606", "Extend to next word"},
         [](TZvMemo& m) { m.acnSelectNextWord(); });
    memo({"SelectPreviousWordAction", "Text Cursor", "607", "Extend to previous word"},
         [](TZvMemo& m) { m.acnSelectPreviousWord(); });
    memo({"SelectCurrentProcedureAction", "Text Cursor", "608", "Current function"},
         [](TZvMemo& m) { m.acnSelectCurrentProcedure(); });
    memo({"BlockSelectUpAction", "Text Cursor", "609", "Block up"},
         [](TZvMemo& m) { m.acnBlockSelectUp(); });
    memo({"BlockSelectDownAction", "Text Cursor", "619", "Block down"},
         [](TZvMemo& m) { m.acnBlockSelectDown(); });
    memo({"BlockSelectLeftAction", "Text Cursor", "620", "Block left"},
         [](TZvMemo& m) { m.acnBlockSelectLeft(); });
    memo({"BlockSelectRightAction", "Text Cursor", "621", "Block right"},
         [](TZvMemo& m) { m.acnBlockSelectRight(); });

    memo(
        {"DeleteSentenceAction", "Edit", "555", "Delete sentence"},
        [](TZvMemo& m) { m.acnDeleteSentence(); }, writable);
    memo(
        {"DeleteSentenceHomeAction", "Edit", "556", "Delete to sentence start"},
        [](TZvMemo& m) { m.acnDeleteToSentenceHome(); }, writable);
    memo(
        {"DeleteSentenceEndAction", "Edit", "557", "Delete to sentence end"},
        [](TZvMemo& m) { m.acnDeleteToSentenceEnd(); }, writable);
    memo(
        {"DeleteToBeginOfScreenLineAction", "Edit", "558", "Delete to screen line start"},
        [](TZvMemo& m) { m.acnDeleteToBeginOfScreenLine(); }, writable);
    memo(
        {"DeleteToEndOfScreenLineAction", "Edit", "559", "Delete to screen line end"},
        [](TZvMemo& m) { m.acnDeleteToEndOfScreenLine(); }, writable);
}

void TMainWindow::AddMoveMenus(QMenu& edit, QMenu& search) {
    TWindowActions& a = *FActions;
    a.AddTo(*a.AddSubMenu(edit, "120", "Select", "SelectMenu"),
            {"SelectWordAction",
             "SelectLineAction",
             "SelectParagraphAction",
             "SelectSentenceAction",
             "SelectTagAction",
             "-",
             "SelectBraceEnclosedAction",
             "SelectBraceEnclosedWithBracesAction",
             "-",
             "SelectSentenceHomeAction",
             "SelectSentenceEndAction",
             "SelectToBOLAction",
             "SelectToEOLAction",
             "SelectToBeginOfScreenLineAction",
             "SelectToEndOfScreenLineAction",
             "SelectToTopOfPageAction",
             "SelectToBottomOfPageAction",
             "-",
             "SelectAllAboveCurrentAction",
             "SelectAllBelowCurrentAction",
             "SelectCurrentProcedureAction",
             "-",
             "SelectUpAction",
             "SelectDownAction",
             "SelectLeftAction",
             "SelectRightAction",
             "SelectHomeAction",
             "SelectEndAction",
             "SelectPageUpAction",
             "SelectPageDownAction",
             "SelectNextWordAction",
             "SelectPreviousWordAction",
             "-",
             "BlockSelectUpAction",
             "BlockSelectDownAction",
             "BlockSelectLeftAction",
             "BlockSelectRightAction"});
    a.AddTo(edit,
            {"-", "DeleteSentenceAction", "DeleteSentenceHomeAction", "DeleteSentenceEndAction",
             "DeleteToBeginOfScreenLineAction", "DeleteToEndOfScreenLineAction"});
    a.AddTo(*a.AddSubMenu(search, "121", "Go t&o", "GoToMenu"), {"NextOccurrenceAction",
                                                                 "PreviousOccurrenceAction",
                                                                 "-",
                                                                 "NextChangedLineAction",
                                                                 "PreviousChangedLineAction",
                                                                 "NextNodeAction",
                                                                 "PreviousNodeAction",
                                                                 "-",
                                                                 "DocumentBeginningAction",
                                                                 "DocumentEndAction",
                                                                 "TopOfPageAction",
                                                                 "BottomOfPageAction",
                                                                 "HomeAction",
                                                                 "EndAction",
                                                                 "NextWordAction",
                                                                 "PreviousWordAction",
                                                                 "-",
                                                                 "ScrollLineUpAction",
                                                                 "ScrollLineDownAction",
                                                                 "ScrollPageUpAction",
                                                                 "ScrollPageDownAction"});
}

} // namespace zv
