#pragma once

// JSON coders. Keys keep the order in which they were encoded.

#include <Platform/Coding.hpp>

namespace vantel {

class JSONDecoder {
public:
    // dataCorrupted when the bytes are not JSON.
    CodingValue parse(const Data& bytes) const;

    template <class T>
    T decode(const Data& bytes) const {
        CodingValue root = parse(bytes);
        return decodeValue<T>(Decoder(root, {}));
    }
};

class JSONEncoder {
public:
    bool prettyPrinted = false;
    bool sortedKeys = false;

    // EncodingError for non-finite numbers, which JSON cannot hold.
    Data serialize(const CodingValue& root) const;

    template <class T>
    Data encode(const T& value) const {
        return serialize(encodeToTree(value));
    }
};

}  // namespace vantel
