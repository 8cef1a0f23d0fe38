#include <FramingDecisions/FDLReading.hpp>

#include "FDLChecks.hpp"

#include <Platform/JSON.hpp>

#include <algorithm>
#include <cctype>
#include <utility>

namespace vantel {

std::string FDLProblem::text() const {
    std::string kind = severity == Severity::error ? "error: " : "warning: ";
    return path.empty() ? kind + message : kind + path + ": " + message;
}

bool FDLReadResult::hasErrors() const {
    return std::any_of(problems.begin(), problems.end(),
                       [](const FDLProblem& problem) { return problem.severity == FDLProblem::Severity::error; });
}

namespace {

bool hasFDLExtension(std::string_view name) {
    if (name.size() < 4) return false;
    std::string extension(name.substr(name.size() - 4));
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension == ".fdl";
}

bool startsLikeJSONObject(const Data& bytes) {
    auto first = std::find_if(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return !std::isspace(byte); });
    return first != bytes.end() && *first == '{';
}

}  // namespace

bool isFramingDecisionList(const Data& bytes, std::string_view name) {
    if (hasFDLExtension(name)) return true;
    if (!startsLikeJSONObject(bytes)) return false;  // property lists start with "<" or "bplist"
    try {
        CodingValue root = JSONDecoder().parse(bytes);
        return root.find("uuid") && root.find("version");
    } catch (const DecodingError&) {
        return false;
    }
}

FDLReadResult readFramingDecisionList(const Data& bytes) {
    FDLReadResult result;
    CodingValue root;
    try {
        root = JSONDecoder().parse(bytes);
    } catch (const DecodingError& error) {
        result.problems.push_back({FDLProblem::Severity::error, "", error.what()});
        return result;
    }
    if (root.kind() != CodingValue::Kind::dictionary) {
        result.problems.push_back({FDLProblem::Severity::error, "",
                                   "a framing decision list is a JSON object, found " + CodingValue::describe(root.kind())});
        return result;
    }
    detail::checkSchema(root, detail::isStrictVersion(detail::versionOf(root)), result.problems);
    result.document = detail::decodeList(root);
    detail::checkReferences(*result.document, result.problems);
    result.json = std::move(root);
    return result;
}

}  // namespace vantel
