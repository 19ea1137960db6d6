// Aligning delimited lines: the fields between separators padded so that each separator
// stands at one column on every line.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"

#include <unicode/utf16.h>

#include <algorithm>

namespace zv {
namespace {

std::size_t CodePoints(std::u16string_view text) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        n += !U16_IS_TRAIL(text[i]);
    return n;
}

// The fields of `line` between the separators; one field when there is none.
std::vector<std::u16string_view> Fields(std::u16string_view line, std::u16string_view separator) {
    std::vector<std::u16string_view> fields;
    for (std::size_t from = 0;;) {
        const std::size_t at = line.find(separator, from);
        if (at == std::u16string_view::npos) {
            fields.push_back(line.substr(from));
            return fields;
        }
        fields.push_back(line.substr(from, at - from));
        from = at + separator.size();
    }
}

struct TAlignment {
    std::u16string_view Separator, Joiner; // the joiner stands where a separator stood
    bool Tabs = false;
    int TabSize = 8;
    // Per field index: where the field's padding ends (the column of the joiner behind it).
    std::vector<std::size_t> Ends;
};

// The columns where each field's padding ends, from the widest field before a separator.
void PlanColumns(const TLineList& lines, TAlignment& plan) {
    std::vector<std::size_t> widths;
    for (int i = 0; i < lines.Count(); ++i) {
        const auto fields = Fields(lines.Text(i), plan.Separator);
        if (widths.size() + 1 < fields.size())
            widths.resize(fields.size() - 1);
        for (std::size_t f = 0; f + 1 < fields.size(); ++f)
            widths[f] = std::max(widths[f], CodePoints(fields[f]));
    }
    const std::size_t tab = static_cast<std::size_t>(std::max(plan.TabSize, 1));
    std::size_t start = 0;
    for (const std::size_t width : widths) {
        std::size_t end = start + width;
        // Without a separator a tab must stand between the fields: the stop after the end.
        if (plan.Tabs)
            end = plan.Joiner.empty() ? (end / tab + 1) * tab : (end + tab - 1) / tab * tab;
        plan.Ends.push_back(end);
        start = end + CodePoints(plan.Joiner);
    }
}

void AlignLine(std::u16string_view line, const TAlignment& plan, std::u16string& out) {
    const auto fields = Fields(line, plan.Separator);
    const std::size_t tab = static_cast<std::size_t>(std::max(plan.TabSize, 1));
    std::size_t column = 0;
    for (std::size_t f = 0; f < fields.size(); ++f) {
        out += fields[f];
        column += CodePoints(fields[f]);
        if (f + 1 == fields.size())
            break;
        const std::size_t end = plan.Ends[f];
        if (plan.Tabs) {
            for (; column < end; column = (column / tab + 1) * tab)
                out += u'\t';
        } else {
            out.append(end - column, u' ');
        }
        column = end + CodePoints(plan.Joiner);
        out += plan.Joiner;
    }
}

} // namespace

bool TZvMemo::acnColumnAlignText(std::u16string_view separator, bool padWithTab,
                                 bool removeSeparators) {
    if (separator.empty())
        return false;
    TAlignment plan;
    plan.Separator = separator;
    plan.Joiner = !removeSeparators ? separator : padWithTab ? u"" : u" ";
    plan.Tabs = padWithTab;
    plan.TabSize = DocState().FTabSize;
    return RunLineCommand(
        *this, false, std::make_unique<TAlignColumnsUndo>(),
        [&plan](const TLineList& lines, TLineList& result) {
            PlanColumns(lines, plan);
            MapLines(lines, result, [&plan](std::u16string_view line, std::u16string& out) {
                if (line.find(plan.Separator) == std::u16string_view::npos)
                    return false;
                AlignLine(line, plan, out);
                return out != line;
            });
        });
}

} // namespace zv
