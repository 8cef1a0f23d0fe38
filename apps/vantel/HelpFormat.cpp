#include "HelpFormat.hpp"

#include <algorithm>
#include <map>
#include <sstream>
#include <vector>

namespace vantel::cli {

namespace {

std::map<const CLI::App*, std::vector<std::string>>& usageForms() {
    static std::map<const CLI::App*, std::vector<std::string>> forms;
    return forms;
}

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

void appendWrappedLine(std::string& out, const std::string& line, std::size_t indent, std::size_t firstIndent,
                       std::size_t width) {
    std::size_t column = firstIndent;
    out.append(firstIndent, ' ');
    bool lineHasWords = false;
    for (const std::string& word : wordsOf(line)) {
        if (lineHasWords && column + 1 + word.size() > width) {
            out += '\n';
            out.append(indent, ' ');
            column = indent;
            lineHasWords = false;
        }
        if (lineHasWords) {
            out += ' ';
            ++column;
        }
        out += word;
        column += word.size();
        lineHasWords = true;
    }
}

// Help first, then what goes in, what comes out and how; groups not listed
// here follow in the order their first option was added.
std::vector<std::string> groupsInOrder(const CLI::App* app) {
    std::vector<std::string> groups = {"Options", "Input", "Output", "Size", "Batch"};
    const std::vector<const CLI::Option*> options = app->get_options();
    for (const CLI::Option* option : options) {
        const std::string& group = option->get_group();
        if (group.empty()) continue;  // hidden
        if (std::find(groups.begin(), groups.end(), group) == groups.end()) groups.push_back(group);
    }
    std::erase_if(groups, [&options](const std::string& group) {
        return std::none_of(options.begin(), options.end(),
                            [&group](const CLI::Option* option) { return option->get_group() == group; });
    });
    return groups;
}

class HelpFormatter final : public CLI::Formatter {
    // "  name          description", the description wrapped in its column.
    std::string entry(std::string name, const std::string& description) const {
        const std::size_t column = get_column_width();
        if (name.size() + 1 >= column) return name + "\n" + wrappedText(description, column, column) + "\n";
        std::string text = wrappedText(description, column, column);
        return name + text.substr(name.size()) + "\n";
    }

public:
    HelpFormatter() { column_width(26); }

    std::string make_usage(const CLI::App* app, std::string name) const override {
        auto found = usageForms().find(app);
        if (found == usageForms().end()) return CLI::Formatter::make_usage(app, std::move(name));
        std::string out = "Usage:\n";
        for (const std::string& form : found->second) out += wrappedText(form, 6, 2) + "\n";
        return out;
    }

    std::string make_description(const CLI::App* app) const override {
        std::string description = app->get_description();
        return description.empty() ? "" : wrappedText(description, 0, 0) + "\n";
    }

    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        // A positional shows as what it takes ("FILE..."), not its parser name.
        std::string name = isPositional && !option->get_option_text().empty()
                               ? "  " + option->get_option_text()
                               : "  " + make_option_name(option, isPositional) + make_option_opts(option);
        return entry(name, make_option_desc(option));
    }

    std::string make_option_name(const CLI::Option* option, bool isPositional) const override {
        if (isPositional) return option->get_name(true, false);
        std::string names = CLI::Formatter::make_option_name(option, false);
        for (std::size_t comma = names.find(','); comma != std::string::npos; comma = names.find(',', comma + 2)) {
            names.insert(comma + 1, " ");
        }
        return names;
    }

    std::string make_subcommand(const CLI::App* sub) const override {
        return entry("  " + sub->get_display_name(), sub->get_description());
    }

    // Groups in the order their first option was added, positionals with
    // the options of their group.
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        if (mode == CLI::AppFormatMode::Sub) return CLI::Formatter::make_help(app, std::move(name), mode);
        std::string out = make_description(app) + "\n" + make_usage(app, std::move(name));
        for (const std::string& group : groupsInOrder(app)) {
            out += "\n" + group + ":\n";
            for (const CLI::Option* option : app->get_options()) {
                if (option->get_group() == group) out += make_option(option, option->get_positional());
            }
        }
        std::string subcommands = make_subcommands(app, mode);
        if (!subcommands.empty()) out += subcommands;
        return out + make_footer(app);
    }

    // Footer lines "  NAME  meaning" are lists (environment, files, exit
    // codes) and line up as the options do; the rest is re-flowed.
    std::string make_footer(const CLI::App* app) const override {
        std::string footer = app->get_footer();
        if (footer.empty()) return "";
        std::string out = "\n";
        std::istringstream lines(footer);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t gap = line.find("  ", 2);
            const bool listed = line.starts_with("  ") && line.size() > 2 && line[2] != ' ' && gap != std::string::npos;
            out += listed ? entry(line.substr(0, gap), line.substr(line.find_first_not_of(' ', gap)))
                          : wrappedText(line, 0, 0) + "\n";
        }
        return out;
    }
};

}  // namespace

void setUsageForms(const CLI::App* command, std::initializer_list<std::string> forms) {
    usageForms()[command] = forms;
}

std::shared_ptr<CLI::Formatter> makeHelpFormatter() { return std::make_shared<HelpFormatter>(); }

std::string wrappedText(const std::string& text, std::size_t indent, std::size_t firstIndent, std::size_t width) {
    std::string out;
    std::istringstream lines(text);
    bool first = true;
    for (std::string line; std::getline(lines, line);) {
        if (!first) out += '\n';
        // A line that starts with spaces is laid out by hand (a list): keep its indent.
        std::size_t ownIndent = line.find_first_not_of(' ');
        if (ownIndent == std::string::npos) ownIndent = 0;
        std::size_t lead = (first ? firstIndent : indent) + ownIndent;
        appendWrappedLine(out, line, indent + ownIndent + (ownIndent ? 2 : 0), lead, width);
        first = false;
    }
    return out;
}

}  // namespace vantel::cli
