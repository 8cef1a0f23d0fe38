#include "UsageErrors.hpp"

#include <cstdio>
#include <optional>
#include <vector>

namespace vantel::cli {

namespace {

// The innermost subcommand being read when the parser stopped ("apply" in
// "vantel fdl apply"), none at the top level.
const CLI::App* commandInUse(CLI::App& app) {
    const CLI::App* command = nullptr;
    for (std::vector<CLI::App*> parsed = app.get_subcommands(); !parsed.empty(); parsed = command->get_subcommands()) {
        command = parsed.back();
    }
    return command;
}

// The command as typed after "vantel": "fdl apply".
std::string commandName(const CLI::App* command) {
    std::string name = command->get_name();
    for (const CLI::App* parent = command->get_parent(); parent && parent->get_parent(); parent = parent->get_parent()) {
        name = parent->get_name() + " " + name;
    }
    return name;
}

std::string seeHelp(const CLI::App* command) {
    return command ? "; see vantel " + commandName(command) + " --help" : "; see vantel --help";
}

std::string commandNames(const CLI::App& app) {
    std::string names;
    for (const CLI::App* command : app.get_subcommands({})) names += (names.empty() ? "" : ", ") + command->get_name();
    return names;
}

std::string leftOverText(CLI::App& app) {
    std::vector<std::string> extras = app.remaining(true);
    const CLI::App* command = commandInUse(app);
    const std::string first = extras.empty() ? "" : extras.front();
    const bool isOption = first.size() > 1 && first.front() == '-';
    if (!command && !isOption) {
        return "unknown command " + quotedOnOneLine(first) + "; the commands are " + commandNames(app);
    }
    const std::string where = command ? commandName(command) + ": " : "";
    return where + (isOption ? "unknown option " : "unexpected argument ") + quotedOnOneLine(first) +
           seeHelp(command);
}

// The option called `name` in the command in use or at the top level.
const CLI::Option* optionNamed(CLI::App& app, const std::string& name) {
    const CLI::App* command = commandInUse(app);
    if (command) {
        if (const CLI::Option* option = command->get_option_no_throw(name)) return option;
    }
    return app.get_option_no_throw(name);
}

// The parser's text split at a fixed piece: what stands before and after it.
std::optional<std::pair<std::string, std::string>> around(const std::string& text, const std::string& piece,
                                                          std::size_t from = 0) {
    std::size_t at = text.find(piece, from);
    if (at == std::string::npos) return std::nullopt;
    return std::make_pair(text.substr(from, at - from), text.substr(at + piece.size()));
}

// "Could not convert: --width = abc"
std::optional<std::string> conversionText(CLI::App& app, const std::string& text) {
    auto parts = around(text, " = ", text.find(": ") + 2);
    if (text.find(": ") == std::string::npos || !parts) return std::nullopt;
    const auto& [name, value] = *parts;
    const CLI::Option* option = optionNamed(app, name);
    const std::string type = option ? option->get_type_name() : "";
    const bool whole = type == "INT" || type == "UINT";
    return name + ": " + quotedOnOneLine(value) + (whole ? " is not a whole number" : " is not a number");
}

// "--jobs: Value 0 not in range 1 to 1024", "--colors: x not in {hex,rgba}"
std::optional<std::string> validationText(const std::string& text) {
    auto named = around(text, ": ");
    if (!named) return std::nullopt;
    const auto& [name, problem] = *named;
    if (auto range = around(problem, " not in range ", 6); range && problem.starts_with("Value ")) {
        auto bounds = around(range->second, " to ");
        if (!bounds) return std::nullopt;
        const bool whole = (bounds->first + bounds->second).find('.') == std::string::npos;
        return name + ": " + quotedOnOneLine(range->first) + (whole ? " is not a whole number from " : " is not a number from ") +
               bounds->first + " to " + bounds->second;
    }
    if (auto member = around(problem, " not in {"); member && problem.ends_with("}")) {
        std::string choices = member->second.substr(0, member->second.size() - 1);
        for (std::size_t comma = choices.find(','); comma != std::string::npos; comma = choices.find(',', comma + 2)) {
            choices.insert(comma + 1, " ");
        }
        return name + ": " + quotedOnOneLine(member->first) + " is not one of " + choices;
    }
    return std::nullopt;
}

// "--width: 1 required FLOAT missing"
std::optional<std::string> missingValueText(const std::string& text) {
    auto named = around(text, ": ");
    if (!named || !named->second.ends_with(" missing")) return std::nullopt;
    return named->first + ": needs a value";
}

// "--output excludes --out-dir"
std::optional<std::string> exclusionText(const std::string& text) {
    auto pair = around(text, " excludes ");
    if (!pair) return std::nullopt;
    return pair->first + " and " + pair->second + " cannot be given together";
}

// "FILE is required"
std::optional<std::string> requiredText(CLI::App& app, const std::string& text) {
    if (!text.ends_with(" is required")) return std::nullopt;
    const CLI::App* command = commandInUse(app);
    if (command && text.starts_with("A subcommand")) {
        return commandName(command) + ": which one? the commands are " + commandNames(*command) + seeHelp(command);
    }
    const std::string what = text.substr(0, text.size() - std::string(" is required").size());
    return (command ? commandName(command) + ": " : "") + what + " is missing" + seeHelp(command);
}

}  // namespace

std::string usageErrorText(CLI::App& app, const CLI::ParseError& error) {
    const std::string text = error.what();
    std::optional<std::string> worded;
    if (dynamic_cast<const CLI::ExtrasError*>(&error)) {
        worded = leftOverText(app);
    } else if (dynamic_cast<const CLI::ConversionError*>(&error)) {
        worded = conversionText(app, text);
    } else if (dynamic_cast<const CLI::ValidationError*>(&error)) {
        worded = validationText(text);
    } else if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) {
        worded = missingValueText(text);
    } else if (dynamic_cast<const CLI::ExcludesError*>(&error)) {
        worded = exclusionText(text);
    } else if (dynamic_cast<const CLI::RequiredError*>(&error)) {
        worded = requiredText(app, text);
    }
    return worded.value_or(text);
}

std::string quotedOnOneLine(std::string_view text) {
    std::string out = "'";
    for (char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\\') {
            out += "\\\\";
        } else if (byte < 0x20 || byte == 0x7f) {
            char escape[5];
            std::snprintf(escape, sizeof escape, "\\x%02x", byte);
            out += escape;
        } else {
            out += c;
        }
    }
    return out + "'";
}

}  // namespace vantel::cli
