#pragma once

// ICU regular expressions on UTF-8 text. Positions and lengths are in UTF-16
// code units, as ICU counts them; search ranges are given in the same unit.

#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vantel {

// A pattern that does not compile, with ICU's reason and where it stopped.
class RegularExpressionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class RegularExpression {
    struct Compiled;

public:
    // Compile options; combine with |. The values are ICU's own.
    enum Option : unsigned {
        caseInsensitive = 2,
        allowCommentsAndWhitespace = 4,
        anchorsMatchLines = 8,
        literal = 16,  // the pattern is plain text
        dotMatchesLineSeparators = 32,
        useUnicodeWordBoundaries = 256,
    };

    // Throws RegularExpressionError when the pattern does not compile.
    explicit RegularExpression(std::string_view pattern, unsigned options = 0);
    // Absent when the pattern does not compile.
    static std::optional<RegularExpression> compile(std::string_view pattern, unsigned options = 0);

    struct Range {
        std::size_t location = 0;  // UTF-16 units
        std::size_t length = 0;
    };

    // One match: the whole match first, then each capture group; a group
    // that took part in no match is absent. It remembers its expression, so
    // groups can be asked for by name.
    class Match {
    public:
        const std::optional<Range>& operator[](std::size_t group) const { return ranges_.at(group); }
        std::size_t size() const { return ranges_.size(); }
        // The number of the group named `name`; absent when there is none.
        std::optional<std::size_t> groupNumber(std::string_view name) const;

    private:
        friend class RegularExpression;
        std::vector<std::optional<Range>> ranges_;
        std::shared_ptr<const Compiled> expression_;
    };

    // How a search treats the ends of its range: with anchoring bounds, ^
    // and $ match at the range's ends as at the text's; without, only at the
    // text's own ends.
    enum class Bounds { anchoring, withoutAnchoring };

    std::size_t numberOfCaptureGroups() const;

    // The first match inside [start, start + length) of the text, where the
    // range is clipped to the text.
    std::optional<Match> firstMatch(std::string_view utf8, std::size_t start, std::size_t length,
                                    Bounds bounds = Bounds::anchoring) const;
    // Every match inside the range, in order.
    std::vector<Match> matches(std::string_view utf8, std::size_t start, std::size_t length,
                               Bounds bounds = Bounds::anchoring) const;

    // The text with every match inside the range replaced by `replacement`,
    // in which $n stands for group n and a backslash escapes the next
    // character; text outside the range is kept as it is.
    std::string replacingMatches(std::string_view utf8, std::size_t start, std::size_t length,
                                 std::string_view replacement) const;
    // `text` as a replacement that stands for itself.
    static std::string escapedTemplate(std::string_view text);

    // The UTF-8 text of a range found in `utf8`.
    static std::string substring(std::string_view utf8, Range range);

private:
    explicit RegularExpression(std::shared_ptr<const Compiled> compiled) : compiled_(std::move(compiled)) {}
    std::shared_ptr<const Compiled> compiled_;
};

}  // namespace vantel
