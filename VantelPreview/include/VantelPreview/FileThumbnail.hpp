#pragma once

// The thumbnail of a file as every thumbnail host draws it (`vantel
// thumbnail`, the KDE plugin): a source named ".fdl" shows the frame-line
// chart of its list's first canvas with all its decisions, anything else is
// read as an overlay document. Either is read, checked, and its drawing cost
// counted at the thumbnail's own size before anything is drawn, so that two
// hosts cannot show different pictures or refuse different files.

#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <Graphics2/Color.hpp>
#include <OverlayGenerator/DocumentLoading.hpp>

#include <optional>
#include <string>
#include <vector>

namespace vantel {

enum class ThumbnailFailure {
    none,
    unreadable,   // the file could not be read at all
    bad,          // not a document, or one that cannot be drawn
    tooCostly,    // drawing it even at this size would take too long
};

struct FileThumbnail {
    std::optional<BitmapContext> bitmap;  // at thumbnailSize() of the picture, when there is one
    ThumbnailFailure failure = ThumbnailFailure::none;
    std::vector<std::string> problems;  // one line each, without the source's name

    bool ok() const { return bitmap.has_value(); }
};

// Never throws for bad input: every failure comes back with its lines. A
// background, when given, replaces the document's own (or lies under the
// chart, which has none).
FileThumbnail drawFileThumbnail(const DocumentSource& source, int maxSide,
                                const std::optional<Color>& background = std::nullopt);

}  // namespace vantel
