#pragma once

// Property-list coders over libplist: XML and binary forms are both read;
// either is written.

#include <Platform/Coding.hpp>

namespace vantel {

class PropertyListDecoder : public DecodingFrontEnd<PropertyListDecoder> {
public:
    // dataCorrupted when the bytes are neither an XML nor a binary property list.
    CodingValue parse(const Data& bytes) const;
};

class PropertyListEncoder : public EncodingFrontEnd<PropertyListEncoder> {
public:
    enum class OutputFormat { xml, binary };
    OutputFormat outputFormat = OutputFormat::xml;

    Data serialize(const CodingValue& root) const;
};

}  // namespace vantel
