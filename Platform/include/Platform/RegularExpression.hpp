#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vantel {

// An ICU regular expression compiled once and matched against UTF-8 text.
// Construction with a pattern ICU refuses is a programming error and stops
// the process, so callers keep fixed patterns in function-local statics.
class RegularExpression {
public:
    explicit RegularExpression(std::string_view pattern);
    ~RegularExpression();
    RegularExpression(const RegularExpression&) = delete;
    RegularExpression& operator=(const RegularExpression&) = delete;

    // The text of capture group `group` (0 for the whole match) in the first
    // match anywhere in `text`; nothing when there is no match or the group
    // did not take part in it.
    std::optional<std::string> firstMatchGroup(std::string_view text, int group) const;

private:
    struct Compiled;
    std::unique_ptr<Compiled> compiled_;
};

}  // namespace vantel
