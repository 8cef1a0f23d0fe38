#pragma once

// A document drawn and encoded in memory as one output file: a bitmap
// through the renderer (on every core when large), or a vector page of the
// preview's reply as PDF or SVG. `vantel render` and the editor's export
// make their files here, so both write the same bytes for one document.

#include "OutputFormat.hpp"
#include "OutputSize.hpp"

#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <Graphics2/Color.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>

#include <memory>
#include <optional>

namespace vantel::cli {

// The whole file, drawn at `size`; a bitmap laid onto an opaque `flatten`
// colour when one is given. Throws RenderError or std::bad_alloc.
Data encodeDocument(const std::shared_ptr<const OverlayGen>& document, const OutputFormat& format,
                    const SizeRequest& size = {}, const std::optional<Color>& flatten = std::nullopt);

// The preview's vector reply for the document on a page of the size asked
// for (a PDF page, or the SVG picture).
PDFPage documentPage(const std::shared_ptr<const OverlayGen>& document, const SizeRequest& size);

}  // namespace vantel::cli
