// Reading and writing the two files of a window layout.
#include "shell/WindowLayouts.h"

#include "common/AtomicFile.h"
#include "shell/ZvIniFiles.h"

#include <pugixml.hpp>

#include <algorithm>
#include <sstream>

namespace zv {
namespace fs = std::filesystem;

namespace {

std::string DockXml(const std::string& state) {
    pugi::xml_document doc;
    doc.append_child("Layout").append_attribute("state").set_value(state.c_str());
    std::ostringstream out;
    doc.save(out, "  ");
    return out.str();
}

} // namespace

bool TWindowLayouts::Save(const std::string& name, const TWindowLayout& layout,
                          std::string& error) const {
    std::error_code ec;
    fs::create_directories(FFolder, ec);
    TMemIniFileW panels(FFolder / (name + ".txt"), TIniEncoding::Utf8);
    panels.WriteBool("Window", "Maximized", layout.Maximized);
    panels.WriteBool("Window", "Minimized", layout.Minimized);
    panels.WriteInteger("Window", "Width", layout.Width);
    panels.WriteInteger("Window", "Height", layout.Height);
    panels.WriteBool("DocumentTabs", "Show", layout.ShowDocumentTabs);
    return WriteFileAtomically(FFolder / (name + ".xml"), DockXml(layout.DockState), &error) &&
           panels.UpdateFile(error);
}

std::optional<TWindowLayout> TWindowLayouts::Load(const std::string& name,
                                                  std::string& error) const {
    const fs::path text = FFolder / (name + ".txt"), xml = FFolder / (name + ".xml");
    const auto bytes = ReadWholeFile(xml);
    pugi::xml_document doc;
    if (!bytes || !doc.load_buffer(bytes->data(), bytes->size()) ||
        !doc.child("Layout").attribute("state")) {
        error = "The layout \"" + name + "\" cannot be read from \"" + xml.string() + "\".";
        return std::nullopt;
    }
    TMemIniFileW panels(text);
    if (panels.LoadStatus() != TIniLoadStatus::Loaded) {
        error = "The layout \"" + name + "\" cannot be read from \"" + text.string() + "\".";
        return std::nullopt;
    }
    TWindowLayout layout;
    layout.Maximized = panels.ReadBool("Window", "Maximized", false);
    layout.Minimized = panels.ReadBool("Window", "Minimized", false);
    layout.Width = panels.ReadInteger("Window", "Width", layout.Width);
    layout.Height = panels.ReadInteger("Window", "Height", layout.Height);
    layout.ShowDocumentTabs = panels.ReadBool("DocumentTabs", "Show", true);
    layout.DockState = doc.child("Layout").attribute("state").as_string();
    return layout;
}

std::optional<TWindowLayout> TWindowLayouts::Switch(const std::string& name,
                                                    const TWindowLayout& current,
                                                    std::string& error) const {
    auto wanted = Load(name, error); // read first: a damaged layout leaves the backup alone
    if (!wanted || !Save(kBackup, current, error))
        return std::nullopt;
    return wanted;
}

std::vector<std::string> TWindowLayouts::Names() const {
    std::vector<std::string> names;
    std::error_code ec;
    for (fs::directory_iterator it(FFolder, ec), end; !ec && it != end; it.increment(ec)) {
        const fs::path& path = it->path();
        if (path.extension() == ".txt" && path.stem() != kBackup &&
            fs::exists(fs::path(path).replace_extension(".xml"), ec))
            names.push_back(path.stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace zv
