// From a document's file name to its syntax: the extension map ("FileExt"), the type
// sections, the large-file limit, the user's choice from the menu, new definition files from
// templates, and the one-time migration of the older syntax lists of the settings.
#pragma once

#include "shell/ZvIniFiles.h"
#include "syntax/ZvSyntax.h"

#include <cstdint>
#include <filesystem>
#include <functional>

namespace zv {

struct TSyntaxEnvironment {
    TCustomIniFile* Settings = nullptr;       // the settings object; may be null in tools
    const TCustomIniFile* Language = nullptr; // texts by section and key; may be null
    std::filesystem::path Root;               // the data root
    std::function<void(const std::u16string&)> ShowMessage;         // a user-visible message
    std::function<bool(const std::filesystem::path&)> OpenDocument; // opens a file in a tab
};

class TSyntaxSelector {
public:
    // The shipped map "Syntax/Types.ini" backs keys the settings do not have.
    TSyntaxSelector(TSyntaxEnvironment env, TZvSyntax& syntax);

    // The type for a file name: by its whole name (section "FileName", lower case), by its
    // extension ("makefile" without extension counts as ".makefile"), and when neither
    // gives one, by the file's first line (TypeByFirstLine); empty for none. A ".syx" file
    // (type "SynFile") opens as plain text.
    std::u16string LoadStyleFromFile(const std::filesystem::path& fileName) const;
    // The same, then loads the type into `memo`; returns the type in force.
    std::u16string LoadStyleFromFile(TMemoStyleHost& memo, const std::filesystem::path& fileName);
    // Finds the ".syx" of a type (user's folder first) and loads it; returns the type in force
    // (an alias directive may change it), empty when the type names no file.
    std::u16string LoadStyleFromType(TMemoStyleHost& memo, std::u16string_view type);

    // The entry used when a document is opened or renamed. Does nothing for a syntax the user
    // chose by hand; a file above the large-file limit (300 MiB unless set) gets no syntax.
    // Returns the type in force ("Text" for plain, "Terminal" for terminal documents).
    std::u16string SetSyntaxStyle(const std::filesystem::path& fileName, TMemoStyleHost& memo,
                                  std::uint64_t fileSize, std::u16string_view forcedType = {});

    // The user's pick from the syntax menu. The caller pauses the background scan around it.
    // Returns true when the type really changed (folds then need a rebuild).
    bool ChangeMemoSyntax(std::u16string_view chosenType, TMemoStyleHost& memo,
                          const std::filesystem::path& fileName);

    // Copy the template to "Syntax/<name>.syx" or "Language/<name>.ini" and open it; a
    // missing template or a failed copy shows "Could not open the file!". No overwrite.
    bool LoadSyntaxTemplate(std::u16string_view name);
    bool LoadLanguageTemplate(std::u16string_view name);

    // Merges the older "Syntaxlist ..." sections into one sorted "Syntaxlist".
    void FixSyntaxlist();

    // The type the first line of an existing file names: a "#!" interpreter or a mode line
    // through section "Interpreter", else an opening text of section "FirstLine" ("<?xml").
    std::u16string TypeByFirstLine(const std::filesystem::path& fileName) const;

private:
    std::u16string Setting(std::u16string_view section, std::u16string_view key,
                           std::u16string_view def) const;
    std::u16string Text(std::u16string_view section, std::u16string_view key,
                        std::u16string_view def) const;
    void MakePlain(TMemoStyleHost& memo) const;
    bool CopyTemplate(const std::filesystem::path& from, const std::filesystem::path& to);

    TSyntaxEnvironment FEnv;
    TZvSyntax& FSyntax;
    TMemIniFileW FShipped;
};

} // namespace zv
