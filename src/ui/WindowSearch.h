// TWindowSearch: the main window's search commands on the active document: the quick find bar
// (incremental search, replace one and replace all), find next and previous (F3, Shift+F3,
// with the selected text), find all with a results list that follows edits, highlighting of
// all hits in every view of the document, and go to line.
#pragma once

#include "ZvMemoControl/SearchReplace.h"
#include "ZvMemoControl/TextSearch.h"

#include "shell/ActionList.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

class QDockWidget;
class QListWidget;
class QMenu;

namespace zv {

class TEditorWidget;
class TMainFormHelper;
class TSearchDialog;
class TMainWindow;
class TQuickFindBar;
class TFollowedHits;

// One request of the bar or the search dialog.
struct TSearchRequest {
    enum TScope { scDocument, scCursor, scSelection };
    QString Find, Replace;
    // frCase, frWord, frRegExp, frSkipTags, frSkipStrings, frSkipComments.
    TZvFindOptions Options = 0;
    bool PreserveCase = false;
    bool Up = false;
    // Where a fresh request starts: the document's start (its end when Up), the caret, or
    // within the selection (hits outside it are not taken, and the search does not wrap).
    TScope Scope = scCursor;
};

class TWindowSearch : public QObject {
    Q_OBJECT
public:
    TWindowSearch(TMainWindow& window, TMainFormHelper& helper);
    ~TWindowSearch() override;

    // Adds the search commands with their keys to `menu`.
    // Adds the search commands to the window's actions (category "Search").
    void AddActions(TActionList& list);
    TQuickFindBar& Bar() const { return *FBar; }
    QListWidget& Results() const { return *FResults; }

    // Opens the bar (with the replace row when `replace`), its find text the selection of
    // one row, else the word at the caret.
    void OpenBar(bool replace);
    // Opens the search dialog on its Find or Replace page.
    void OpenDialog(bool replace);
    // The request in force (the bar's or the dialog's last).
    const TSearchRequest& Request() const { return FRequest; }

    // A fresh request from the dialog: placed by its scope, then the first hit (as FindNext
    // in its direction). Later F3 and Shift+F3 go on with it.
    bool FindFirst(const TSearchRequest& request);
    // Replaces every hit of the request's scope as one undo step; the count.
    std::int64_t ReplaceAll(const TSearchRequest& request);
    // Steps through the hits of the request's scope asking at each ("FindReplace" "090"):
    // yes replaces, no skips, yes to all replaces the rest at once, no to all or cancel stops.
    // Returns the number replaced.
    std::int64_t ReplacePrompted(const TSearchRequest& request);
    int FindAll(const TSearchRequest& request);
    // The next hit after the selection (before it when `backward`) of the bar's text, with
    // the bar's options; with no text there, the selected text or the word at the caret.
    // Past the last hit a question offers to go on from the other end. False when nothing
    // is found (a status message says so) or the expression is invalid (PCRE2's message).
    bool FindNext(bool backward);
    // Replaces the selection when it is a hit, then finds the next one.
    bool ReplaceOne();
    // Replaces every hit in the selection when it spans rows, else in the document, as one
    // undo step; the count goes to the status bar.
    std::int64_t ReplaceAll();
    // Lists every hit of the document in the results list (activating an item selects its
    // hit, which follows the edits made since). Returns the count.
    int FindAll();
    // Goes to "line" or "line:column" (1-based, logical lines); false with a status message
    // when the text is no position or the line is out of range.
    bool GoToLine(const QString& where);

private:
    // FRequest's text and options prepared into FSearch (the active document's scanner
    // answers the skip filters); false, FSearch unchanged and the message shown, for an
    // invalid regular expression or no text.
    bool Prepare();
    // FRequest from the bar's fields and toggles.
    void FromBar();
    // FRequest into the bar's fields, without searching.
    void ToBar();
    // The hit after (before when `backward`) the selection within the scope's bounds, with
    // the wrap question when `mayWrap` and the scope is not a selection.
    std::optional<TSearchHit> Next(TEditorWidget& editor, bool backward, bool mayWrap);
    // Places the caret for a fresh request by its scope and sets the bounds.
    void Place(TEditorWidget& editor);
    TReplacement Replacement() const;
    void SearchAsTyped();
    void Select(TEditorWidget& editor, const TSearchHit& hit);
    void ShowHighlight();
    void ShowResult(int index);
    void Status(const QString& text);
    // The selection when it lies in one row, else the word at the caret.
    static QString SeedText(TEditorWidget& editor);

    TMainWindow& FWindow;
    TMainFormHelper& FHelper;
    TSearchRequest FRequest;
    TZvPos FFrom{0, 0}, FTo = TTextSearch::kTextEnd; // bounds of a selection scope
    std::unique_ptr<ISearchTokens> FTokens;          // the active document's scanner
    TSearchDialog* FDialog = nullptr;                // made on first use
    TQuickFindBar* FBar;
    QDockWidget* FBarDock;
    QListWidget* FResults;
    QDockWidget* FResultsDock;
    std::shared_ptr<TTextSearch> FSearch; // the search in force; views highlight it
    std::unique_ptr<TFollowedHits> FHits; // what the results list shows
};

} // namespace zv
