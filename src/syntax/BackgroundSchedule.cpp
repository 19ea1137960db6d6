// The background tick schedule.
#include "syntax/BackgroundSchedule.h"

#include <initializer_list>

namespace zv {

void TBackgroundSchedule::Raise() {
    for (int* c : {&CodeCounter, &FoldCounter, &FoldHighlightCounter, &SpellCounter, &TagCounter,
                   &TodoCounter, &CheckTagCounter, &BraceHighlightCounter, &WordHighlightCounter,
                   &FAutoUpdateFoldCounter})
        if (*c < 1'000'000)
            ++*c;
}

void TBackgroundSchedule::Idle() {
    Raise();
}

void TBackgroundSchedule::Paused() {
    for (int* c : {&CodeCounter, &SpellCounter, &TodoCounter})
        if (*c < 1'000'000)
            ++*c;
}

TBackgroundTask TBackgroundSchedule::Tick(TBackgroundRequests& r) {
    const TBackgroundTask task = DueTask(r);
    Raise();
    return task;
}

TBackgroundTask TBackgroundSchedule::DueTask(TBackgroundRequests& r) {
    using T = TBackgroundTask;
    if (r.UpdateSyntax && r.UpdateFolding) {
        r.UpdateSyntax = r.UpdateFolding = false;
        const int next = r.Kind == TBackgroundRequests::dkJson   ? 80
                         : r.Kind == TBackgroundRequests::dkXml  ? 82
                         : r.Kind == TBackgroundRequests::dkHtml ? 84
                                                                 : TagCounterMax;
        if (TagCounterMax < next)
            TagCounterMax = next;
        CodeExplorerFull = true;
        return T::FullScan;
    }
    if (r.UpdateFolding && FoldCounter >= 31) {
        r.UpdateFolding = false;
        FoldCounter = FAutoUpdateFoldCounter = 0;
        return T::Folds;
    }
    if (CodeCounter >= 61) {
        CodeCounter = 0;
        CodeExplorerFull = r.UpdateCodeExplorer;
        const bool tell = r.UpdateCodeExplorer || r.HasFocus;
        r.UpdateCodeExplorer = false;
        return tell ? T::CodeExplorer : T::None;
    }
    if (r.UpdateSpelling && SpellCounter > 50) {
        r.UpdateSpelling = false;
        SpellCounter = 0;
        return T::Spelling;
    }
    if (TodoCounter > 55) {
        TodoCounter = 0;
        return T::Todo;
    }
    if (r.UpdateCodeExplorerTags && TagCounter > TagCounterMax) {
        r.UpdateCodeExplorerTags = false;
        TagCounter = 0;
        TagCounterMax = r.Kind == TBackgroundRequests::dkJson   ? 82
                        : r.Kind == TBackgroundRequests::dkXml  ? 84
                        : r.Kind == TBackgroundRequests::dkHtml ? 86
                                                                : TagCounterMax;
        return T::TagList;
    }
    if (r.UpdateCheckTagsToHighlight && CheckTagCounter > 20) {
        r.UpdateCheckTagsToHighlight = false;
        CheckTagCounter = 0;
        return T::TagPairHighlight;
    }
    if (FoldHighlightCounter > 20) {
        FoldHighlightCounter = 0;
        return T::FoldHighlight;
    }
    if (r.HighlightBraces && r.HighlightBracesWhenInside && BraceHighlightCounter > 10) {
        BraceHighlightCounter = 0;
        return T::BraceHighlight;
    }
    if (r.HighlightWordInsideMethod && WordHighlightCounter > 10) {
        WordHighlightCounter = 0;
        return T::WordHighlight;
    }
    return T::None;
}

} // namespace zv
