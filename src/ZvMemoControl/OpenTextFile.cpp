// The opening sequence shared by the command-line tools and the document layer.
#include "ZvMemoControl/OpenTextFile.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Streams.h"
#include "ZvMemoControl/ZvMemoStrings.h"

namespace zv {

bool OpenTextFile(TZvMemoStrings& store, const std::string& fileName, std::uint32_t codePage,
                  TFileType& type, std::string& error, const TFileTypeOptions& options) {
    TZvFileInStream in(fileName); // refuses pipes, devices and folders at once
    if (!in.Ok()) {
        error = "Cannot open the file \"" + fileName + "\": " + in.Error();
        return false;
    }
    std::string head(65536, '\0');
    head.resize(in.Read(head.data(), head.size()));
    type = ClassifyFileHead(std::string_view(head).substr(0, 4096), fileName, foNone, options);
    if (type.Kind == 1 || type.Kind == 2 || type.Kind == 4) {
        error = "The file \"" + fileName + "\" is an encrypted document.";
        return false;
    }
    TZvMemoState& memo = store.Memo();
    // A code page asked for by name overrides what the file's head suggests.
    const bool detect = codePage == cpAutoDetect;
    memo.FBinaryMode = detect && type.OpenAs == foBinary;
    memo.FIsASCII = detect && type.OpenAs == foASCII;
    if (detect)
        codePage = CodePageForOpenAs(type.OpenAs, cpAutoDetect);
    memo.FDetectUTF8 = options.DetectUTF8;
    memo.FDetectAll = options.DetectAll;
    memo.FCodePageXML = DeclaredCodePage(fileName, head, codePage);
    store.SetCodePage(codePage);
    if (!store.LoadFromFile(fileName)) {
        error = store.LastError().empty() ? "Cannot read the file \"" + fileName + "\"."
                                          : store.LastError();
        return false;
    }
    return true;
}

const char* SysTextTypeName(int kind) {
    static const char* const names[] = {"windows",       "unix",       "mac",
                                        "mixed-windows", "mixed-unix", "mixed-mac"};
    return kind >= 0 && kind < 6 ? names[kind] : "?";
}

} // namespace zv
