#pragma once

// ICU regular expressions on UTF-8 text. Positions and lengths are in UTF-16
// code units, as ICU counts them; search ranges are given in the same unit.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantel {

class RegularExpression {
public:
    // Absent when the pattern does not compile. `flags` are ICU's
    // URegexpFlag bits (0 for none).
    static std::optional<RegularExpression> compile(std::string_view pattern, unsigned flags = 0);

    struct Range {
        std::size_t location = 0;  // UTF-16 units
        std::size_t length = 0;
    };
    // The whole match first, then each capture group; a group that took
    // part in no match is absent.
    using Match = std::vector<std::optional<Range>>;

    std::size_t numberOfCaptureGroups() const;

    // The first match inside [start, start + length) of the text, where the
    // range is clipped to the text.
    std::optional<Match> firstMatch(std::string_view utf8, std::size_t start, std::size_t length) const;
    // Every match inside the range, in order.
    std::vector<Match> matches(std::string_view utf8, std::size_t start, std::size_t length) const;

    // The UTF-8 text of a range found in `utf8`.
    static std::string substring(std::string_view utf8, Range range);

private:
    struct Compiled;
    explicit RegularExpression(std::shared_ptr<const Compiled> compiled) : compiled_(std::move(compiled)) {}
    std::shared_ptr<const Compiled> compiled_;
};

}  // namespace vantel
