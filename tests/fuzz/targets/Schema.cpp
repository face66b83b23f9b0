#include <algorithm>

#include "appfiles/FileNames.h"
#include "appfiles/SchemaHeader.h"
#include "appfiles/SchemaWriter.h"
#include "base/NumberTexts.h"
#include "base/Numbers.h"
#include "fuzz/FuzzDesk.h"
#include "grid/CellGate.h"
#include "model/PropertyTable.h"

namespace kd::fuzz {

namespace {

/// Whether a file keeps a column of a variable of this type; the others are lost at a save.
bool IsKept(const Property& property, std::string_view type) {
    const char letter = type.size() == 1 ? type.front() : ' ';
    const auto has = [&property](char c) {
        return property.types.find(c) != Text::npos || property.typesOneLater.find(c) != Text::npos;
    };
    return has('*') || (letter != 'V' && has(letter));
}

/// Bounds that are both written as 0, such as large ones that their mask cuts, are derived anew by a load.
bool AreBoundsDerived(const FuzzDesk& t, const cField& field) {
    return NumberAtFront(field.ValueText(cnMax, vmFile, t.locale)) == 0 &&
           NumberAtFront(field.ValueText(cnMin, vmFile, t.locale)) == 0;
}

struct KeptValue {
    std::int32_t column;
    Text text;

    bool operator==(const KeptValue&) const = default;
};

std::vector<KeptValue> KeptValues(const FuzzDesk& t, const cField& field, bool withBounds, bool withRules) {
    std::vector<KeptValue> values;
    for (std::int32_t column = FirstVariableColumn; column <= ColumnCount; ++column) {
        const Property& property = PropertyOf(column);
        if (IsKept(property, field.FieldType()) && (withBounds || property.kind != vkBound) &&
            (withRules || property.kind != vkRules)) {
            values.push_back({column, field.ValueText(column, vmGrid, t.locale)});
        }
    }
    return values;
}

/// Values as a file gives them back: a text without blanks at its ends, and with a blank for what would end a
/// line; a number without the zeros that are left in front where its mask has cut it.
std::vector<KeptValue> AsRead(std::vector<KeptValue> values) {
    for (auto& [column, text] : values) {
        const ValueKind kind = PropertyOf(column).kind;
        const bool number =
            (kind == vkBound || kind == vkLimit) && !text.empty() && text != "C" && text != "B";
        std::replace_if(
            text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n'; }, ' ');
        text = number ? PlainText(NumberAtFront(text)) : Text(Trim(text));
    }
    return values;
}

std::string Difference(const std::vector<KeptValue>& before, const std::vector<KeptValue>& after) {
    for (std::size_t at = 0; at < std::min(before.size(), after.size()); ++at) {
        if (before[at] != after[at]) {
            return "but column " + std::to_string(before[at].column) + " is \"" + after[at].text +
                   "\" for \"" + before[at].text + '"';
        }
    }
    return "but of another type";
}

std::string WithoutRevision(const FuzzDesk& t, const std::string& bytes) {
    const std::size_t letters = t.locale.CodePage().Upper(t.locale.CodePage().Decode(bytes)).find("VERSION");
    if (letters == Text::npos) {
        return bytes;
    }
    const Text text = t.locale.CodePage().Decode(bytes);
    const std::size_t equals = text.find('=', letters);
    const std::size_t end = text.find("\r\n", equals);
    return equals == Text::npos || end == Text::npos ? bytes : text.substr(0, equals) + text.substr(end);
}

/// A few edits that the input itself tells: a row, a column and a text each.
void Edit(FuzzDesk& t, std::string_view& input) {
    const auto take = [&input] {
        const unsigned char byte = input.empty() ? 0 : static_cast<unsigned char>(input.front());
        input.remove_prefix(input.empty() ? 0 : 1);
        return std::int32_t{byte};
    };
    for (std::int32_t edits = take() % 4; edits > 0; --edits) {
        const std::int32_t row = 1 + take() % std::max(t.desk.Grid.Rows() - 1, 1);
        const std::int32_t column = ColumnFor(take());
        const auto length = static_cast<std::size_t>(take()) % 16;
        Text text = t.locale.CodePage().Decode(input.substr(0, length));
        std::erase(text, '\r');  // neither the keyboard nor the clipboard brings one into a cell
        input.remove_prefix(std::min(length, input.size()));
        if (row < t.desk.Grid.Rows() && t.g.gLabels->Ref(column).Editable() &&
            IsCellValueValid(t.desk, row, column - 1, text)) {
            try {
                SetCellValue(t.desk, row, column - 1, text);
            } catch (const cError&) {
                return;  // a mask that is none; told at the cell
            }
        }
    }
}

}  // namespace

void SchemaLoad(std::string_view input) {
    FuzzDesk t(input);
    if (t.Load()) {
        Promise(t.desk.Grid.Rows() == t.g.gFields->Count() + 1, "each variable has its row");
        t.CheckGrid();
        for (std::int32_t row = 1; row < t.desk.Grid.Rows(); ++row) {
            for (std::int32_t screenCol = 0; screenCol < t.desk.Grid.Cols(); ++screenCol) {
                Promise(t.desk.Grid.BackColor(row, screenCol) != ChangedColour, "a load marks nothing");
            }
        }
        Promise(!modKDLimitDesk::AnyChanges(t.g), "a load changes nothing");
    }
    Promise(t.files.Get(FuzzDesk::Path) == input, "a load writes nothing");
}

/// Whether a line before the first block opens one for the reader alone: with blanks around it, it is header
/// text too, so that a save keeps it there and writes its variable as well.
bool HidesABlock(std::string_view header) {
    for (std::size_t end = header.find(CrLf); end != std::string_view::npos; end = header.find(CrLf)) {
        const std::string_view line = header.substr(0, end);
        const std::size_t first = line.find_first_not_of(" \t\r\n");
        if (first != std::string_view::npos &&
            EqualsNoCaseAscii(line.substr(first, line.find_last_not_of(" \t\r\n") + 1 - first), "[FIELD]")) {
            return true;
        }
        header.remove_prefix(end + CrLf.size());
    }
    return false;
}

/// The bytes before the first "|" tell the edits, those behind it are the file.
void SaveAndReload(std::string_view input) {
    std::string_view edits = input.substr(0, input.find('|'));
    FuzzDesk t(input.substr(std::min(edits.size() + 1, input.size())));
    if (!t.Load() || HidesABlock(modKDLimitDesk::ReadHeaderText(t.g, FuzzDesk::Path))) {
        return;
    }
    Edit(t, edits);
    t.CheckGrid();
    const std::string before = t.files.Get(FuzzDesk::Path);
    if (!modKDLimitDesk::SaveSchema(t.g, 1)) {
        Promise(t.files.Get(FuzzDesk::Path) == before, "a failed save leaves the file");
        Promise(t.toolkit.boxes.size() == 1, "a failed save is told");
        return;
    }
    const std::string saved = t.files.Get(FuzzDesk::Path);
    FuzzDesk again(saved);
    if (!again.Load()) {
        return;  // such as a length without a mask
    }
    Promise(again.g.gFields->Count() == t.g.gFields->Count(), "no variable comes or goes");
    // Letters are the catalogue's; where the header keeps a list of its own, they say something else there.
    const bool withRules = again.g.gFiles->Ref(1).Rules() == again.g.gRuleNames;
    bool same = withRules;  // as the file that is read back would be written
    for (std::int32_t index = 1; index <= t.g.gFields->Count(); ++index) {
        const bool withBounds = !AreBoundsDerived(t, t.g.gFields->Ref(index));
        const auto written = KeptValues(t, t.g.gFields->Ref(index), withBounds, withRules);
        const auto read = KeptValues(again, again.g.gFields->Ref(index), withBounds, withRules);
        if (AsRead(written) != AsRead(read)) {
            throw Unkept("a save is read back to the same values, " +
                         Difference(AsRead(written), AsRead(read)));
        }
        same = same && withBounds && written == read;
    }
    if (same && modKDLimitDesk::SaveSchema(again.g, 1)) {
        Promise(WithoutRevision(again, saved) == WithoutRevision(again, again.files.Get(FuzzDesk::Path)),
                "a second save differs in the revision alone");
    }
}

}  // namespace kd::fuzz
