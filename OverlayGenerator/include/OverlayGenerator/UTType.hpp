#pragma once

#include <string>

namespace vantel {

// A uniform type identifier with the MIME type and file extension that
// desktops on Linux know it by (see data/vantel-mime.xml).
struct UTType {
    std::string identifier;
    std::string preferredMIMEType;
    std::string preferredFilenameExtension;

    // The exported type of overlay documents.
    static const UTType& aspectRatio() {
        static const UTType type{"vantel.aspect-ratio", "application/x-vantel-aspect-ratio", "aspectratio"};
        return type;
    }

    friend bool operator==(const UTType&, const UTType&) = default;
};

}  // namespace vantel
