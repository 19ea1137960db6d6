// TZvSyntax: the one loader of syntax definition files in the application. It reads a ".syx"
// file (and, for "html.syx" and "aspx.syx", the files of their embedded languages) into a new
// style set and hands it to an editor control's style host.
#pragma once

#include "ZvMemoControl/MemoStyleHost.h"
#include "syntax/SyxReader.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zv {

// Applies the colours of a type to a freshly loaded style set (the colour scheme).
class IStyleColorSource {
public:
    virtual ~IStyleColorSource() = default;
    virtual void ApplyColors(TZvCustomMemoStyles& styles, std::u16string_view type) const = 0;
};

// A key-value file writer, the target of ConvertToNew.
class IKeyValueWriter {
public:
    virtual ~IKeyValueWriter() = default;
    virtual void WriteString(std::u16string_view section, std::u16string_view key,
                             std::u16string_view value) = 0;
    virtual void WriteBool(std::u16string_view section, std::u16string_view key, bool value) = 0;
};

// The converter's work on the lines of an older-format file (what ConvertToNew reads).
void ConvertOldFormat(std::vector<std::u16string> lines, IKeyValueWriter& newIni,
                      IKeyValueWriter& companionIni);

class TZvSyntax {
public:
    // Loads `fileName` (full path of a ".syx") into a new style set for the type
    // `syntaxName`. With `memo` the set is handed to it (and its former set released); without
    // one only the name lists are read. `aspHighlighter`, when not empty, replaces key "1" of
    // "HtmlMulti.ini". Returns false, leaving the editor without a style set, when the file is
    // missing or unreadable; the reason is in Warnings.
    bool LoadStyleFromFile(TMemoStyleHost* memo, std::u16string_view fileName,
                           std::u16string_view syntaxName, std::int32_t aspLanguageFlag,
                           std::u16string_view aspHighlighter);

    // The form for the Options dialog: loads without embedded languages, then fills the
    // description and sample lines from the companion file. False when the file is missing.
    bool LoadStyleFromFile(TMemoStyleHost* memo, std::u16string_view fileName,
                           std::u16string_view syntaxName, TStringList& commentsOut,
                           TStringList& samplesOut);

    // Converts a file of the older single-file format into the content of a ".syx"
    // (`newIni`) and of its companion (`companionIni`). False when the file cannot be read.
    bool ConvertToNew(std::u16string_view oldFileName, IKeyValueWriter& newIni,
                      IKeyValueWriter& companionIni);

    void Clear();

    // Style sets built by code: highlighting of ".syx" files, and completion data of scripts.
    void SetSynFileSyntax(TMemoStyleHost& memo);
    void SetScriptSyntax(TMemoStyleHost& memo);

    // The style set of the last load without an editor (null after a load into an editor).
    const TStylesPtr& LastStyles() const { return FLastStyles; }

    void SetColorSource(const IStyleColorSource* colors) { FColors = colors; }

    bool FHtmlMultiLoading = false;
    std::u16string FStandardFileExtensions;
    TStringList KeyWords, Tags, Blocks;
    // Diagnostics of the last load, one line each, prefixed by the file name; empty when the
    // files were read without anything odd.
    std::vector<std::string> Warnings;

private:
    void LoadEmbedded(TMemoStyleHost& memo, TZvCustomMemoStyles& parent,
                      const std::u16string& fileName, std::u16string_view syntaxName,
                      std::int32_t aspLanguageFlag, std::u16string_view aspHighlighter);
    void LoadSlot(TMemoStyleHost& memo, TScriptType type, const std::u16string& subFile,
                  std::u16string_view syntaxName, std::int32_t aspLanguageFlag);

    const IStyleColorSource* FColors = nullptr;
    TStylesPtr FLastStyles;
};

} // namespace zv
