#pragma once

// Property-list coders over libplist: XML and binary forms are both read;
// either is written.

#include <Platform/Coding.hpp>

namespace vantel {

class PropertyListDecoder {
public:
    // dataCorrupted when the bytes are neither an XML nor a binary property list.
    CodingValue parse(const Data& bytes) const;

    template <class T>
    T decode(const Data& bytes) const {
        CodingValue root = parse(bytes);
        return decodeValue<T>(Decoder(root, {}));
    }
};

class PropertyListEncoder {
public:
    enum class OutputFormat { xml, binary };
    OutputFormat outputFormat = OutputFormat::xml;

    Data serialize(const CodingValue& root) const;

    template <class T>
    Data encode(const T& value) const {
        return serialize(encodeToTree(value));
    }
};

}  // namespace vantel
