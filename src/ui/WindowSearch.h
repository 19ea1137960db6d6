// TWindowSearch: the main window's search commands on the active document: the quick find bar
// (incremental search, replace one and replace all), find next and previous (F3, Shift+F3,
// with the selected text), find all with a results list that follows edits, highlighting of
// all hits in every view of the document, and go to line.
#pragma once

#include "ZvMemoControl/TextSearch.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>

class QDockWidget;
class QListWidget;
class QMenu;

namespace zv {

class TEditorWidget;
class TMainFormHelper;
class TMainWindow;
class TQuickFindBar;
class TFollowedHits;

class TWindowSearch : public QObject {
    Q_OBJECT
public:
    TWindowSearch(TMainWindow& window, TMainFormHelper& helper);
    ~TWindowSearch() override;

    // Adds the search commands with their keys to `menu`.
    void AddActions(QMenu* menu);
    TQuickFindBar& Bar() const { return *FBar; }
    QListWidget& Results() const { return *FResults; }

    // Opens the bar (with the replace row when `replace`), its find text the selection of
    // one row, else the word at the caret.
    void OpenBar(bool replace);
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
    // The bar's text and options prepared into FSearch; false, FSearch unchanged and the
    // message shown, for an invalid regular expression or no text.
    bool Prepare();
    void SearchAsTyped();
    void Select(TEditorWidget& editor, const TSearchHit& hit);
    void ShowHighlight();
    void ShowResult(int index);
    void Status(const QString& text);
    // The selection when it lies in one row, else the word at the caret.
    static QString SeedText(TEditorWidget& editor);

    TMainWindow& FWindow;
    TMainFormHelper& FHelper;
    TQuickFindBar* FBar;
    QDockWidget* FBarDock;
    QListWidget* FResults;
    QDockWidget* FResultsDock;
    std::shared_ptr<TTextSearch> FSearch; // the search in force; views highlight it
    std::unique_ptr<TFollowedHits> FHits; // what the results list shows
};

} // namespace zv
