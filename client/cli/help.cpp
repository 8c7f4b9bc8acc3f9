// Help texts made from the tables that the parser reads, so that neither can say what the other does not do.
#include <algorithm>

#include "client/cli/command.h"
#include "client/text/utf8.h"

namespace vtdn::client {

namespace {

/// Appends words wrapped between the columns `indent` and `width`; the cursor stands at `column`.
void wrap(std::string& out, std::string_view text, std::size_t indent, std::size_t width,
          std::size_t column) {
    bool lineIsEmpty = true;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t size = displayWidth(word);
        if (!lineIsEmpty && column + 1 + size > width) {
            out += '\n';
            out.append(indent, ' ');
            column = indent;
            lineIsEmpty = true;
        }
        if (!lineIsEmpty) {
            out += ' ';
            ++column;
        }
        out += word;
        column += size;
        lineIsEmpty = false;
    }
    out += '\n';
}

struct Entry {
    std::string left;
    std::string right;
};

/// A list in two columns. A left text that is too wide for its column has a line of its own.
void twoColumns(std::string& out, const std::vector<Entry>& entries, std::size_t width) {
    constexpr std::size_t widestLeft = 30;
    std::size_t leftWidth = 0;
    for (const Entry& entry : entries)
        if (displayWidth(entry.left) <= widestLeft) leftWidth = std::max(leftWidth, displayWidth(entry.left));
    const std::size_t indent = 2 + leftWidth + 2;
    for (const Entry& entry : entries) {
        out += "  " + entry.left;
        const std::size_t used = displayWidth(entry.left);
        if (used > leftWidth) {
            out += '\n';
            out.append(indent, ' ');
        } else {
            out.append(leftWidth - used + 2, ' ');
        }
        wrap(out, entry.right, indent, width, indent);
    }
}

void examples(std::string& out, const std::vector<Example>& list, std::size_t width) {
    if (list.empty()) return;
    out += list.size() == 1 ? "\nExample\n" : "\nExamples\n";
    for (const Example& example : list) {
        out += "  " + std::string(example.command) + "\n      ";
        wrap(out, example.what, 6, width, 6);
    }
}

std::string operandText(const OperandSpec& operand) {
    const std::string name = std::string(operand.name) + (operand.many ? "..." : "");
    return operand.required ? name : "[" + name + "]";
}

std::vector<Entry> summaries(std::span<const VerbSpec> verbs, std::string_view group) {
    std::vector<Entry> entries;
    for (const VerbSpec& verb : verbs)
        if (group.empty() || verb.name.starts_with(std::string(group) + " "))
            entries.push_back({std::string(verb.name), std::string(verb.summary)});
    return entries;
}

}  // namespace

std::string overviewText(std::span<const VerbSpec> verbs, std::size_t width) {
    std::string out;
    wrap(out,
         "vtdn: reads, writes and looks after the data of an emissions-monitoring site through the component "
         "VTWrapDN.",
         0, width, 0);
    out += "\nUsage\n  vtdn VERB [arguments] [options]\n  vtdn VERB --help\n  vtdn --version\n\nVerbs\n";
    twoColumns(out, summaries(verbs, {}), width);
    out += "\nFirst steps\n";
    twoColumns(out,
               {{"vtdn doctor", "says what is installed, what is wrong and how to mend it"},
                {"vtdn site import FOLDER", "loads a plant from a folder of CSV files"},
                {"vtdn params list", "shows what is measured there"},
                {"vtdn read PID --day 2007-01-08", "shows a day of it"}},
               width);
    out += "\nExit codes\n";
    twoColumns(out,
               {{"0", "done"},
                {"1", "refused: the problems are on standard error"},
                {"2", "the command line was not understood"},
                {"3", "something is missing: component, engine, site or file; `vtdn doctor` says what"},
                {"4", "a failure inside vtdn itself"}},
               width);
    out += "\n";
    wrap(out,
         "A PID is typed as 5-040-3-00-00 or 504030000, a time as 2007-01-08, \"2007-01-08 13:00\" or "
         "2007-01-08T13:00:30, in the site's local standard time.",
         0, width, 0);
    return out;
}

std::string groupText(std::span<const VerbSpec> verbs, std::string_view group, std::size_t width) {
    std::string out = "Usage\n  vtdn " + std::string(group) + " VERB [arguments] [options]\n\nVerbs\n";
    twoColumns(out, summaries(verbs, group), width);
    out += "\n`vtdn " + std::string(group) + " VERB --help` explains one of them.\n";
    return out;
}

std::string helpText(const VerbSpec& verb, std::size_t width) {
    std::string out;
    wrap(out, verb.summary, 0, width, 0);
    out += "\nUsage\n  vtdn " + std::string(verb.name);
    for (const OperandSpec& operand : verb.operands) out += " " + operandText(operand);
    out += " [options]\n";
    if (!verb.operands.empty()) {
        out += "\nArguments\n";
        std::vector<Entry> entries;
        for (const OperandSpec& operand : verb.operands)
            entries.push_back({operandText(operand), std::string(operand.help)});
        twoColumns(out, entries, width);
    }
    out += "\nOptions\n";
    std::vector<Entry> entries;
    for (const OptionSpec& option : verb.options) {
        std::string left(option.name);
        if (!option.value.empty()) left += " " + std::string(option.value);
        std::string right(option.help);
        if (!option.example.empty()) right += " Example: " + std::string(option.example);
        entries.push_back({std::move(left), std::move(right)});
    }
    entries.push_back({"--help", "This text."});
    twoColumns(out, entries, width);
    for (const std::string_view note : verb.notes) {
        out += '\n';
        wrap(out, note, 0, width, 0);
    }
    examples(out, verb.examples, width);
    return out;
}

}  // namespace vtdn::client
