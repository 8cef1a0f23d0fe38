#pragma once

// JSON coders. Keys keep the order in which they were encoded.

#include <Platform/Coding.hpp>

namespace vantel {

class JSONDecoder : public DecodingFrontEnd<JSONDecoder> {
public:
    // dataCorrupted when the bytes are not JSON.
    CodingValue parse(const Data& bytes) const;
};

class JSONEncoder : public EncodingFrontEnd<JSONEncoder> {
public:
    bool prettyPrinted = false;
    bool sortedKeys = false;

    // EncodingError for non-finite numbers, which JSON cannot hold.
    Data serialize(const CodingValue& root) const;
};

}  // namespace vantel
