// Pushing the editor options of the main settings into one editor control: each editor takes
// them when it is created and again after the options dialog.
#pragma once

#include "shell/SettingsOptions.h"

namespace zv {

class TCustomIniFile;
class TZvCustomMemo;
class TZvMemoStrings;

// Sets the control's option fields and its undo limit from `options`. Caret, text, undo
// records and per-document choices (wrap, line ends, encoding of the loaded file) stay.
void ApplyMemoMiscOptions(TZvCustomMemo& memo, const TMemoMiscOptions& options);

// Gives the empty editor of a new document the file form the options choose: encoding
// ("DefaultEncoding"), byte order mark ("DefaultEncodingBOM") and line ends ("TypeUnix": LF,
// else "TypeMac": CR, else CR LF). Opened documents keep what their file has.
void ApplyNewDocumentOptions(TZvCustomMemo& memo, const TMemoMiscOptions& options);
// The same for the rows of a new document that no editor shows yet.
void ApplyNewDocumentOptions(TZvMemoStrings& lines, const TMemoMiscOptions& options);

// Reads "EditorMisc" from `settings` (a missing key gives the control's default; the
// default encoding falls back to the system's ANSI code page) and applies it to `memo`.
void SetMemoMiscOptions(TZvCustomMemo& memo, const TCustomIniFile& settings);

} // namespace zv
