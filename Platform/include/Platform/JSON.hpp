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
    // Pretty output writes "key" : value unless this is false, which writes
    // "key": value as most JSON tools do (for files people diff against theirs).
    bool spaceBeforeColon = true;

    // EncodingError for non-finite numbers, which JSON cannot hold.
    Data serialize(const CodingValue& root) const;
};

}  // namespace vantel
