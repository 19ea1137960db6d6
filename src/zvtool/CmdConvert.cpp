// zvtool convert: re-encodes a text file as the editor would on "save as" with another
// encoding: detection as when opening, one converter for the whole text, atomic write.
#include "zvtool/CommandRegistry.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <cstdio>
#include <optional>

namespace zv::tool {
namespace {

struct TConvertArgs {
    std::uint32_t From = cpAutoDetect;
    std::optional<std::uint32_t> To;
    std::optional<bool> Bom;
    std::optional<TSysTextType> Eol;
    std::vector<std::string> Files;
};

bool ParseEol(const std::string& text, TSysTextType& kind) {
    if (text == "crlf")
        kind = sttWindows;
    else if (text == "lf")
        kind = sttUnix;
    else if (text == "cr")
        kind = sttMac;
    else
        return false;
    return true;
}

// Returns an error text, empty when the arguments are good.
std::string Parse(const std::vector<std::string>& args, TConvertArgs& out) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if ((a == "--from" || a == "--to") && hasValue) {
            std::uint32_t cp = 0;
            if (!ParseCodePage(args[++i], cp))
                return "unknown code page \"" + args[i] + "\"";
            (a == "--from" ? out.From : out.To.emplace()) = cp;
        } else if (a == "--bom" || a == "--no-bom") {
            out.Bom = a == "--bom";
        } else if (a == "--eol" && hasValue) {
            TSysTextType kind;
            if (!ParseEol(args[++i], kind))
                return "--eol takes crlf, lf or cr";
            out.Eol = kind;
        } else if (a.starts_with("--")) {
            return "unknown option " + a;
        } else {
            out.Files.push_back(a);
        }
    }
    if (!out.To)
        return "--to CODEPAGE is required";
    if (out.Files.size() != 2)
        return "give one input and one output file";
    return {};
}

bool CanHaveBom(std::uint32_t cp) {
    return cp == cpUTF8 || cp == cpUTF16LE || cp == cpUTF16BE;
}

int RunConvert(const std::vector<std::string>& args) {
    TConvertArgs options;
    if (const std::string error = Parse(args, options); !error.empty()) {
        std::fprintf(stderr,
                     "zvtool convert: %s\nusage: zvtool convert [--from CODEPAGE] --to "
                     "CODEPAGE [--bom|--no-bom] [--eol crlf|lf|cr] IN OUT\n",
                     error.c_str());
        return 2;
    }
    if (!IsCodePageSupported(*options.To)) {
        std::fprintf(stderr,
                     "zvtool convert: The code page %u (%s) is not available on this system.\n",
                     *options.To, CodePageName(*options.To).c_str());
        return 1;
    }
    TZvMemoStrings store;
    TFileType type;
    std::string error;
    if (!OpenTextFile(store, options.Files[0], options.From, type, error)) {
        std::fprintf(stderr, "zvtool convert: %s\n", error.c_str());
        return 1;
    }
    if (store.InvalidBytesKept() > 0)
        std::fprintf(stderr,
                     "zvtool convert: warning: %lld bytes of \"%s\" are not valid %s; they are "
                     "written as they are\n",
                     static_cast<long long>(store.InvalidBytesKept()), options.Files[0].c_str(),
                     CodePageName(store.CodePage()).c_str());
    const bool hadBom = store.UseBOM();
    store.SetCodePage(*options.To);
    store.SetUseBOM(options.Bom ? *options.Bom && CanHaveBom(*options.To)
                                : hadBom && CanHaveBom(*options.To));
    if (options.Eol)
        store.SetSysTextType(*options.Eol);
    if (!store.SaveToFile(options.Files[1])) {
        std::fprintf(stderr, "zvtool convert: %s\n", store.LastError().c_str());
        return 1;
    }
    if (store.Lossy())
        std::fprintf(stderr,
                     "zvtool convert: warning: some characters have no form in %s and "
                     "became \"?\"\n",
                     CodePageName(*options.To).c_str());
    return 0;
}

const Registration
    kConvert({"convert", "convert [--from CP] --to CP [--bom|--no-bom] [--eol crlf|lf|cr] IN OUT",
              "re-encode a text file (detects the encoding without --from)", RunConvert});

} // namespace
} // namespace zv::tool
