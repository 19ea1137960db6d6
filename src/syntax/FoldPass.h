// The fold pass: one walk over a document whose row states are valid (after a sweep) that
// finds its folds from the syntax's fold definitions ([Fold]), paired begin and end words,
// region words ([Region]), runs of line comments and block comments, and indention. It reads
// rows and states only and writes its own result (TFoldTemp); UpdateFoldData hands that to
// the rows on the main thread.
#pragma once

#include "ZvMemoControl/ZvMemoFolds.h"

#include <atomic>

namespace zv {

class TLineScanner;

struct TFoldPassOptions {
    int TabSize = 4;             // indents are measured in columns with this tab size
    bool FoldComments = true;    // fold runs of line comments and block comments
    bool OnlyNamedFolds = false; // keep only folds that name a code-explorer item
    int IgnoreSmallFoldsNr = 0;  // folds of fewer rows are dropped; 0 keeps every fold
};

// Finds the folds of the scanner's document into `out` (cleared first). `fromThread`: rows
// and partial scans are read the background thread's way (under the store's lock, with its
// scratch); false on the main thread. Returns false when `halt` stopped it (`out` is then
// unusable). A document of one row has no folds. The cost is linear in the rows times the
// nesting depth; rows are read, never copied into one text.
bool RunFoldPass(TLineScanner& scanner, const TFoldPassOptions& options, TFoldTemp& out,
                 bool fromThread, const std::atomic<bool>* halt = nullptr);

} // namespace zv
