// The tick counters of the background thread and the choice of the task due at each 20 ms
// tick: folds about 0.6 s after the last edit, spelling at 1 s, the to-do list at 1.1 s, the
// code explorer at 1.2 s. Pure bookkeeping: no clock, no thread; the thread calls Tick.
#pragma once

#include <cstdint>

namespace zv {

enum class TBackgroundTask : std::uint8_t {
    None,
    FullScan, // sweep every row, then rebuild folds and the tag list
    Folds,    // rebuild folds
    Spelling,
    Todo,             // bookmark list and to-do scan
    TagList,          // the structure panel's tag list
    TagPairHighlight, // tag pair under the caret (main thread)
    FoldHighlight,    // the highlighted fold block
    BraceHighlight,
    WordHighlight,
    CodeExplorer, // tell the code explorer (full or not, see CodeExplorerFull)
};

// Requests the editor raises; read and cleared by Tick.
struct TBackgroundRequests {
    bool UpdateSyntax = false, UpdateFolding = false, UpdateSpelling = false;
    bool UpdateCodeExplorer = false, UpdateCodeExplorerTags = false;
    bool UpdateCheckTagsToHighlight = false;
    bool HighlightBraces = false, HighlightBracesWhenInside = false;
    bool HighlightWordInsideMethod = false;
    bool HasFocus = false;
    enum TDocKind : std::uint8_t { dkOther, dkJson, dkXml, dkHtml } Kind = dkOther;
};

class TBackgroundSchedule {
public:
    // One tick of a visible, running editor: the task to run now (at most one), then all
    // counters rise. Clears the requests it serves.
    TBackgroundTask Tick(TBackgroundRequests& r);
    // A wait while the editor is not visible: every counter rises, nothing runs.
    void Idle();
    // A wait while paused or busy (a key held down): only the code explorer, spelling and
    // to-do counters rise, so those tasks come due soon after; nothing runs.
    void Paused();
    // The editor's setters zero the counters of what they request, so typing defers them.
    void FoldingRequested() { FoldCounter = 0; }
    void SpellingRequested() { SpellCounter = 0; }
    void CodeExplorerRequested() { CodeCounter = TodoCounter = 0; }

    bool CodeExplorerFull = false; // set with TBackgroundTask::CodeExplorer
    int CodeCounter = 0, FoldCounter = 0, FoldHighlightCounter = 10, SpellCounter = 0,
        TagCounter = 0, TagCounterMax = 10, TodoCounter = 0, CheckTagCounter = 0,
        BraceHighlightCounter = 0, WordHighlightCounter = 0, FAutoUpdateFoldCounter = 0;

private:
    TBackgroundTask DueTask(TBackgroundRequests& r);
    void Raise();
};

} // namespace zv
