#pragma once

#include <Platform/URL.hpp>

namespace vantel {

// A request to preview one file.
struct QLFilePreviewRequest {
    URL fileURL;
};

}  // namespace vantel
